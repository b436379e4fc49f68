;; Labels and colours from records, and texts and legends made of them.
;;
;; The module gives (gis:labels feature) and (gis:colours feature), the dialogs; (gis:set-labels feature lines height
;; "PIXELS") and (gis:set-colours feature field division count) without them; (gis:make-texts feature layer height),
;; (gis:update-texts feature) and (gis:draw-legend feature point height layer); (gis:annotation), lists of a feature,
;; the counts of its labels, colours and texts, and the height that new texts have unless another is given; and
;; (gis:refresh-annotation t), which reads all records again.
;;
;;   GIS-LABELS        what the labels of features say
;;   GIS-COLOURS       by which field entities are coloured
;;   GIS-MAKETEXTS     makes texts of the labels of a feature
;;   GIS-UPDATETEXTS   brings such texts in step with the records
;;   GIS-LEGEND        draws the legend of the colours of a feature
;;   GIS-REFRESH       reads the records behind labels and colours again

(defun gis:ask-height (standard / height)
  (initget 6)
  (cond ((setq height (getreal (strcat "\nHeight of texts <" (rtos standard 2 2) ">: "))))
        (standard)))

;; The name of a feature of which one of the counts of (gis:annotation) is not 0; asked for where there are several,
;; until it is one of them. nil for none.
(defun gis:ask-annotated (place missing / features names name)
  (foreach one (gis:annotation)
    (if (> (nth place one) 0) (setq features (append features (list (car one))))))
  (cond ((not features) (prompt missing) nil)
        ((= (length features) 1) (car features))
        (t (setq names (car features))
           (foreach feature (cdr features) (setq names (strcat names ", " feature)))
           (while (not name)
             (setq name (strcase (getstring t (strcat "\nFeature (" names ") <" (car features) ">: "))))
             (cond ((= name "") (setq name (car features)))
                   ((not (member name features))
                    (prompt (strcat "\n" name " is none of them."))
                    (setq name nil))))
           name)))

(defun gis:ask-texts (feature / layer)
  (setq layer (getstring t (strcat "\nLayer <" feature "-LABELS>: ")))
  (gis:make-texts feature layer (gis:ask-height (nth 4 (assoc feature (gis:annotation))))))

(defun gis:ask-legend (feature / at)
  (if (setq at (getpoint "\nUpper left corner of the legend: "))
    (gis:draw-legend feature at (gis:ask-height (getvar "TEXTSIZE")))))

(defun c:gis-labels (/ feature)
  (if (setq feature (gis:labels)) (gis:ask-texts feature))
  (princ))

(defun c:gis-colours (/ feature)
  (if (setq feature (gis:colours)) (gis:ask-legend feature))
  (princ))

(defun c:gis-maketexts (/ feature)
  (gis:refresh-annotation)
  (if (setq feature (gis:ask-annotated 1 "\nNothing is labelled: run GIS-LABELS.")) (gis:ask-texts feature))
  (princ))

(defun c:gis-updatetexts () (gis:update-texts) (princ))

(defun c:gis-legend (/ feature)
  (gis:refresh-annotation)
  (if (setq feature (gis:ask-annotated 2 "\nNothing is coloured: run GIS-COLOURS.")) (gis:ask-legend feature))
  (princ))

(defun c:gis-refresh (/ shown)
  (gis:refresh-annotation t)
  (foreach one (gis:annotation)
    (if (> (+ (nth 1 one) (nth 2 one)) 0)
      (prompt (setq shown (strcat "\n" (car one) ": " (itoa (nth 1 one)) " labels, " (itoa (nth 2 one)) " colours.")))))
  (if (not shown) (prompt "\nNothing is labelled or coloured."))
  (princ))

(princ)
