;; Features from nothing, with the editor of the template: two categories, three features with every type, required
;; values, a list and a special code; then rename, copy, merge, delete, and a feature file out and in again. Last,
;; one of the features is prompted for. What the dialogs showed is printed at the end.
;;
;;     NORVANE_DEMO=/tmp/define/ hostcad-batch samples/define.lsp

(setq folder   (getenv "NORVANE_DEMO")
      template (strcat folder "features.mdb")
      output   (strcat folder "records.mdb")
      file     (strcat folder "hydrant.gis"))

;; Dialogs of the editor: 151 itself, 1511 a name, 1512 a category, 1513 a new database, 1514 a list of values,
;; 1515 a special code.
(defun name (text) (ui:answer 1511 (list 'text 1001 text) '(click "OK")))
(defun category (text) (ui:answer 1512 (list 'pick 1002 text) '(click "OK")))

;; Runs the editor and leaves it; every question is answered with Yes.
(defun edit (steps)
  (apply 'ui:answer (cons 151 (append steps '((menu "Exit")))))
  (cf:gis_smart_prompting 15))

;; 1. A new template with two categories.
(ui:answer 1513 '(click "New Access 2000 Format"))
(ui:file template)
(name "STREET") (name "WATER")
(ui:box "Yes")
(edit '((menu "Template Database/New") (menu "Category/New") (menu "Category/New")))

;; 2. A lamp: a list, a whole number, and a special code that brings its names with it.
(name "LAMP") (name "STEEL") (name "WOOD")
(ui:answer 1514 '(click "Add Value") '(click "Add Value") '(click "OK"))
(ui:box "Yes")
(edit '((pick 1003 "STREET") (click "New Feature")
        (cell 1 1 "POST") (cell 2 1 "Post") (cell 3 1 "") (click "Edit List Values")
        (cell 1 2 "WATTS") (cell 2 2 "Wattage") (cell 4 2 "Yes") (cell 5 2 "Int")
        (cell 1 3 "NORTHING") (key "Ctrl+S")))

;; 3. A hydrant in the other category, with a number; and a copy of the lamp under another name.
(name "HYDRANT") (name "SIGNAL") (category "WATER") (name "BEACON")
(ui:box "Yes")
(edit '((pick 1003 "WATER") (click "New Feature")
        (cell 1 1 "DEPTH") (cell 2 1 "Depth of the valve") (cell 5 1 "Real") (key "Ctrl+S")
        (pick 1003 "LAMP") (menu "Feature/Save As")
        (pick 1003 "SIGNAL") (menu "Feature/Rename")))

;; 4. Both categories become one; the copy goes again.
(category "STREET") (name "WATER")
(ui:box "Yes") (ui:box "Yes")
(edit '((menu "Category/Rename") (pick 1003 "BEACON") (menu "Feature/Delete")))

;; 5. The hydrant goes out to a feature file, is deleted, and comes in again.
(ui:file file) (ui:file file) (category "WATER")
(ui:box "Yes") (ui:box "OK") (ui:box "Yes")
(edit '((double-click 1003 "HYDRANT") (menu "GIS File/Export")
        (menu "Feature/Delete") (menu "GIS File/Import") (key "Ctrl+S")))

;; 6. The sheet uses what was defined.
(setq point (entmakex '((0 . "POINT") (10 1630200.5 480100.25 512.75))))
(ui:answer 134 '(show) '(cell 2 2 "150") '(click "OK"))
(princ (strcat "prompting for a lamp: "
               (if (= 1 (cf:gis_smart_prompting 1 folder template output "PT_ID" "7" 480100.25 1630200.5 512.75 point
                                                "LAMP" 1))
                 "saved" "not saved")
               "\n"))
(foreach feature '("LAMP" "HYDRANT" "BEACON")
  (princ (strcat feature ": " (if (= 1 (cf:gis_smart_prompting 21 template feature)) "defined" "not defined") "\n")))
(if (getenv "NORVANE_SHOW") (foreach line (ui:log) (princ line) (princ "\n")))
(princ)
