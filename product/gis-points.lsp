;; Points of coordinate files: in the drawing, and at the command line.
;;
;; The module gives (gis:points file range), (gis:write-point ...), (gis:delete-points ...), (gis:next-point ...) and
;; (gis:choose-points folder). A point is a list of name, northing, easting, elevation and description; its elevation
;; is nil where it has none. (gis:import) imports a set of shape files; where it has points that are to be drawn, it
;; gives their file, what links to their records have in common, and their names.

(setq point-block$ "SRVPNO1"
      point-layer$ "POINTS")

;; --- In the drawing --------------------------------------------------------------------------------------

;; The definition of survey points, for drawings that have none: a point with its number, elevation and description
;; beside it, in the present height of texts.
(defun gis:make-point-block (/ height)
  (setq height (getvar "TEXTSIZE"))
  (entmake (list '(0 . "BLOCK") (cons 2 point-block$) '(70 . 2) '(10 0.0 0.0 0.0)))
  (entmake '((0 . "POINT") (8 . "0") (10 0.0 0.0 0.0)))
  (gis:make-point-attribute "PT#" "Point number" (* height 0.8) height)
  (gis:make-point-attribute "ELEV2" "Elevation" (* height -0.5) height)
  (gis:make-point-attribute "DESC2" "Description" (* height -1.8) height)
  (entmake '((0 . "ENDBLK"))))

(defun gis:make-point-attribute (tag question above height)
  (entmake (list '(0 . "ATTDEF") '(8 . "0") (list 10 (* height 0.7) above 0.0) (cons 40 height)
                 '(1 . "") (cons 3 question) (cons 2 tag) '(70 . 0))))

;; The definitions of the attributes of survey points, as lists of groups.
(defun gis:point-attributes (/ entity data found)
  (setq entity (cdr (assoc -2 (tblsearch "BLOCK" point-block$))))
  (while entity
    (setq data (entget entity))
    (if (= (cdr (assoc 0 data)) "ATTDEF")
      (setq found (append found (list data))))
    (setq entity (entnext entity)))
  found)

;; What an attribute of a point says.
(defun gis:point-text (tag point)
  (cond ((= tag "PT#") (car point))
        ((= tag "ELEV2") (if (nth 3 point) (rtos (nth 3 point) 2 2) ""))
        ((= tag "DESC2") (nth 4 point))
        ("")))

;; The extended data that links a point to the record of its name. link: template, output and table.
(defun gis:point-link (link name)
  (list -3 (append '("ZGEO_GIS_2000" (1002 . "{"))
                   (mapcar '(lambda (text) (cons 1000 text)) (append link (list "PT_ID" name)))
                   '((1002 . "}")))))

;; Draws a point by the definitions of its attributes. link: nil for none.
(defun gis:draw-survey-point (point definitions link / at insert offset)
  (setq at (list (nth 2 point) (nth 1 point) (cond ((nth 3 point)) (0.0)))
        insert (list '(0 . "INSERT") '(66 . 1) (cons 8 point-layer$) (cons 2 point-block$) (cons 10 at)))
  ;; A link may have a text that is too long for a drawing.
  (if (not (and link (entmake (append insert (list (gis:point-link link (car point)))))))
    (entmake insert))
  (foreach definition definitions
    (setq offset (cdr (assoc 10 definition)))
    (entmake
      (append
        (list '(0 . "ATTRIB")
              (gis:point-attribute-layer definition)
              (cons 10 (mapcar '+ at offset))
              (cons 1 (gis:point-text (strcase (cdr (assoc 2 definition))) point)))
        (gis:groups definition '(40 2 70 7 41 50 51 72 74))
        ;; The second point of texts that are aligned.
        (if (assoc 11 definition)
          (list (cons 11 (mapcar '+ at (cdr (assoc 11 definition)))))))))
  (entmake (list '(0 . "SEQEND") (cons 8 point-layer$))))

;; Attributes on layer 0 go where their point goes.
(defun gis:point-attribute-layer (definition)
  (if (= (cdr (assoc 8 definition)) "0")
    (cons 8 point-layer$)
    (assoc 8 definition)))

;; The groups of these codes that a list has.
(defun gis:groups (data codes / found)
  (foreach code codes
    (if (assoc code data) (setq found (append found (list (assoc code data))))))
  found)

;; Draws points; gives how many.
(defun gis:draw-points (points)
  (gis:draw-linked-points points nil))

;; The same with links to their records. link: template, output and table; nil for none.
(defun gis:draw-linked-points (points link / definitions)
  (if link (regapp "ZGEO_GIS_2000"))
  (if (and points (not (tblsearch "BLOCK" point-block$)))
    (gis:make-point-block))
  (setq definitions (gis:point-attributes))
  (foreach point points (gis:draw-survey-point point definitions link))
  (length points))

(defun gis:tell-drawn (count)
  (prompt (strcat "\n" (gis:points-counted count) " drawn on " point-layer$ ".")))

(defun gis:points-counted (count)
  (strcat (itoa count) (if (= count 1) " point" " points")))

;; Imports a set of shape files, and draws its points where the user wants that.
(defun c:gis-import (/ import)
  (if (setq import (gis:import))
    (gis:tell-drawn
      (gis:draw-linked-points (gis:points (car import) (caddr import)) (cadr import))))
  (princ))

;; --- At the command line ---------------------------------------------------------------------------------

(defun gis:coordinate-text (value)
  (if value (rtos value 2 3) "none"))

(defun gis:list-points (points)
  (foreach point points
    (prompt (strcat "\n" (car point)
                    "  N " (gis:coordinate-text (nth 1 point))
                    "  E " (gis:coordinate-text (nth 2 point))
                    "  Z " (gis:coordinate-text (nth 3 point))
                    "  " (nth 4 point))))
  (prompt (strcat "\n" (gis:points-counted (length points)) ".")))

;; A range of points from the user: names, rows such as 1-20, or all.
(defun gis:ask-range (question / range)
  (setq range (getstring t (strcat "\n" question " <ALL>: ")))
  (if (= range "") "ALL" range))

;; A number from the user; Enter keeps the one that there is.
(defun gis:ask-coordinate (what old / value)
  (if (not old) (initget 1))
  (setq value (getreal (strcat "\n" what (if old (strcat " <" (rtos old 2 4) ">") "") ": ")))
  (cond (value) (old)))

;; The elevation of a point; N takes it away.
(defun gis:ask-elevation (old / value)
  (initget "None")
  (setq value (getreal (strcat "\nElevation or [None] <" (if old (rtos old 2 4) "None") ">: ")))
  (cond ((= value "None") nil)
        (value)
        (old)))

(defun gis:ask-text (what old / value)
  (setq value (getstring t (strcat "\n" what (if (/= old "") (strcat " <" old ">") "") ": ")))
  (if (= value "") old value))

;; Asks for the values of a point, those that it has standing there, and writes it.
(defun gis:enter-point (file name point / northing easting elevation description written)
  (setq northing (gis:ask-coordinate "Northing" (nth 1 point))
        easting (gis:ask-coordinate "Easting" (nth 2 point))
        elevation (gis:ask-elevation (nth 3 point))
        description (gis:ask-text "Description" (cond ((nth 4 point)) ("")))
        written (apply 'gis:write-point
                  (append (list file name northing easting description) (if elevation (list elevation)))))
  (prompt (if written
            (strcat "\nPoint " written " is written.")
            (strcat "\nPoint " name " is not written."))))

(defun gis:add-point (file / next name)
  (setq next (gis:next-point file)
        name (gis:ask-text "Point" next))
  (if (gis:points file (list name))
    (prompt (strcat "\nPoint " name " is there already: correct it, or take another name."))
    (gis:enter-point file name nil)))

(defun gis:correct-point (file / name point)
  (setq name (getstring t "\nPoint to correct: ")
        point (car (gis:points file (list name))))
  (if point
    (gis:enter-point file (car point) point)
    (prompt (strcat "\nThere is no point " name "."))))

;; Deleted points cannot be had back: the user is asked first.
(defun gis:ask-and-delete-points (file / range points deleted)
  (setq range (getstring t "\nPoints to delete: ")
        points (if (/= range "") (gis:points file range)))
  (cond ((not points) (prompt "\nThere are no such points."))
        ((= (gis:ask "Delete points"
              (strcat "Do you want to delete " (gis:points-counted (length points)) " of\n" file "?") "No")
            "Yes")
         (setq deleted (gis:delete-points file range))
         (prompt (strcat "\n" (gis:points-counted (cond (deleted) (0))) " deleted.")))
        (t (prompt "\nNothing was deleted."))))

;; The form of a file that is to be made.
(defun gis:ask-form (/ form)
  (initget "Numbers nAmes")
  (setq form (getkword "\nPoints of the new file have [Numbers/nAmes] <nAmes>: "))
  (if (= form "Numbers") 0 1))

;; Lists, adds, corrects, deletes and draws the points of a coordinate file.
(defun c:gis-points (/ file choice done new_crdform)
  (setq file (gis:choose-points (getvar "DWGPREFIX")))
  (if (and file (not (findfile file)))
    (setq new_crdform (gis:ask-form)))
  (setq done (not file))
  (while (not done)
    (initget "List Add Correct Delete dRaw eXit")
    (setq choice (getkword (strcat "\n" file ": [List/Add/Correct/Delete/dRaw/eXit] <eXit>: ")))
    (cond ((= choice "List") (gis:list-points (gis:points file (gis:ask-range "Points to list"))))
          ((= choice "Add") (gis:add-point file))
          ((= choice "Correct") (gis:correct-point file))
          ((= choice "Delete") (gis:ask-and-delete-points file))
          ((= choice "dRaw")
           (gis:tell-drawn (gis:draw-points (gis:points file (gis:ask-range "Points to draw")))))
          (t (setq done t))))
  (princ))

(princ)
