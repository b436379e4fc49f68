;; The main job on the sample drawing: from nothing to records and links. Dialogs are answered by the script;
;; what each of them showed is printed as text.

(setq folder   (getenv "NORVANE_DEMO")
      template (strcat folder "template.mdb")
      output   (strcat folder "output.mdb"))

(load "features.lsp")
(load "entities.lsp")

(defun say (text) (princ (strcat "\n" text "\n")))

;; 1. GIS Settings: a new template; the output database is made when it is first needed.
(say "GIS Settings makes the template database.")
(ui:answer 146 '(click "Select Template MDB File") '(show) '(click "Exit"))
(ui:answer 149 '(click "New Access 2000 Format"))
(ui:file template)
(cf:gis_smart_prompting 7)
(sample:fill-template template)
(princ (strcat "Features defined: TREE " (itoa (cf:gis_smart_prompting 21 template "TREE"))
               ", TREE12 " (itoa (cf:gis_smart_prompting 21 template "TREE12")) "\n"))

;; 2. Smart prompting. The output database is made by the first call.
(defun prompt-for (entity key description)
  (sample:prompt template output entity key description))

(defun tell (what result)
  (princ (strcat what ": " (if (= result 1) "saved" "not saved") "\n")))

(say "Point 3, described as TREE12, opens the feature TREE.")
(ui:answer 134 '(show) '(cell 2 1 "RED OAK") '(cell 2 2 "14") '(cell 2 3 "42.5") '(click "OK"))
(tell "point 3" (prompt-for (sample:point "3") "3" "TREE12"))

(say "The same point again: the record comes back and is edited.")
(ui:answer 134 '(show) '(cell 2 2 "15") '(cell 2 12 "crown thinned") '(click "OK"))
(tell "point 3" (prompt-for (sample:point "3") "3" "TREE12"))

(say "Point 17 is a tree too.")
(ui:answer 134 '(cell 2 2 "9") '(cell 2 5 "FAIR") '(click "OK"))
(tell "point 17" (prompt-for (sample:point "17") "17" "TREE"))

(say "Control point CP1 becomes a pole with a generated key; a required value is missing at first.")
(ui:answer 134 '(cell 2 1 "P-100") '(click "OK") '(cell 2 5 "35") '(click "OK"))
(tell "point CP1" (prompt-for (sample:point "CP1") "#AUTO#" "POLE"))

(say "Lot 5 is a parcel, with the entity's handle as its key.")
(ui:answer 134 '(cell 2 1 "5") '(cell 2 2 "O'Neil, J.") '(cell 2 4 "0.234") '(click "OK"))
(setq lot (sample:lot 4))
(tell "lot 5" (prompt-for lot (cdr (assoc 5 (entget lot))) "PARCEL"))

(say "Point A101 is cancelled.")
(ui:answer 134 '(cell 2 2 "12") '(click "Cancel"))
(tell "point A101" (prompt-for (sample:point "A101") "A101" "TREE"))

(say "What the dialogs showed:")
(foreach line (ui:log) (princ line) (princ "\n"))
(princ)
