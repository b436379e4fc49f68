;; Entities for the tests of exports, linked to records of the database in outp$ by the template in tmpl$.

(regapp "ZGEO_GIS_2000")
(entmake '((0 . "BLOCK") (2 . "SRVPNO1") (70 . 2) (10 0.0 0.0 0.0)))
(entmake '((0 . "ENDBLK")))

;; Extended data of a link; nil for no feature.
(defun linked (feature key)
  (if feature
    (list (list -3 (list "ZGEO_GIS_2000" '(1002 . "{") (cons 1000 tmpl$) (cons 1000 outp$) (cons 1000 feature)
                         '(1000 . "PT_ID") (cons 1000 key) '(1002 . "}"))))))

;; A link of these strings alone.
(defun linked-by (strings)
  (list (list -3 (cons "ZGEO_GIS_2000" (mapcar '(lambda (s) (cons 1000 s)) strings)))))

(defun made (groups data)
  (if (entmake (append groups data)) (entlast) (progn (princ "\nnot made: ") (princ groups) nil)))

(defun attribute (tag text)
  (entmake (list '(0 . "ATTRIB") '(10 0.0 0.0 0.0) '(40 . 1.0) (cons 1 text) (cons 2 tag) '(70 . 0))))

;; A survey point: its attributes are pairs of tag and text.
(defun point (at attributes data)
  (entmake (append (list '(0 . "INSERT") '(2 . "SRVPNO1") '(66 . 1) (cons 10 at)) data))
  (foreach pair attributes (attribute (car pair) (cdr pair)))
  (entmake '((0 . "SEQEND")))
  (entlast))

;; A light polyline through vertices of x, y and, where there is one, a bulge.
(defun polyline (closed elevation vertices data)
  (made (append (list '(0 . "LWPOLYLINE") '(100 . "AcDbEntity") '(100 . "AcDbPolyline") (cons 90 (length vertices))
                      (cons 70 (if closed 1 0)) (cons 38 elevation))
                (apply 'append (mapcar '(lambda (v) (list (list 10 (car v) (cadr v))
                                                          (cons 42 (if (caddr v) (caddr v) 0.0))))
                                       vertices)))
        data))

(defun line (from to data) (made (list '(0 . "LINE") (cons 10 from) (cons 11 to)) data))

;; An old polyline: flags as in group 70, vertices of x, y, z and flags.
(defun old-polyline (flags vertices data)
  (entmake (append (list '(0 . "POLYLINE") '(66 . 1) '(10 0.0 0.0 0.0) (cons 70 flags)) data))
  (foreach v vertices
    (entmake (list '(0 . "VERTEX") (list 10 (car v) (cadr v) (caddr v)) (cons 70 (if (cadddr v) (cadddr v) 0)))))
  (entmake '((0 . "SEQEND")))
  (entlast))

;; Everything of some types in one set.
(defun all (types) (ssget "X" (list (cons 0 types))))
