;; Finds the entities of the sample drawing that the demonstration works on.

;; The first text of a group among the attributes of a block reference with the given tag; nil without it.
(defun sample:attribute (block tag / entity data found)
  (setq entity (entnext block))
  (while (and entity (not found))
    (setq data (entget entity))
    (cond ((= (cdr (assoc 0 data)) "SEQEND") (setq entity nil))
          ((= (cdr (assoc 2 data)) tag) (setq found (cdr (assoc 1 data))))
          (t (setq entity (entnext entity)))))
  found)

;; The survey point of a number.
(defun sample:point (number / set index block)
  (setq set (ssget "X" '((0 . "INSERT") (2 . "SRVPNO1") (8 . "POINTS"))) index 0)
  (while (and (< index (sslength set)) (not block))
    (if (= (sample:attribute (ssname set index) "PT#") number) (setq block (ssname set index)))
    (setq index (1+ index)))
  block)

;; The closed polyline of a lot, by its place in the drawing.
(defun sample:lot (index)
  (ssname (ssget "X" '((0 . "LWPOLYLINE") (8 . "LOTS"))) index))

;; The northing, easting and elevation of an entity's first point.
(defun sample:coordinates (entity / at)
  (setq at (cdr (assoc 10 (entget entity))))
  (list (float (cadr at)) (float (car at)) (float (if (caddr at) (caddr at) 0.0))))

;; Function code 1 for an entity: its point, and what a survey instrument would add to it.
(defun sample:prompt (template output entity key description)
  (apply 'cf:gis_smart_prompting
    (append (list 1 lspdir$ template output "PT_ID" key)
            (sample:coordinates entity)
            (list entity description 1 34.985123 -80.549321 0.0 6.5 0.02 0.035 "GPS rover 2"))))

;; The entities of the demonstration with their names.
(defun sample:entities ()
  (list (cons "point 3" (sample:point "3"))
        (cons "point 17" (sample:point "17"))
        (cons "point A101" (sample:point "A101"))
        (cons "point CP1" (sample:point "CP1"))
        (cons "lot 5" (sample:lot 4))))
