;; Prints the link of each entity of the demonstration, group by group, and the record that it leads to, as the
;; sheet shows it.

(load "entities.lsp")

(defun show-groups (data)
  (foreach group data
    (if (= (type group) 'STR)
      (princ (strcat "  1001 " group "\n"))
      (princ (strcat "  " (itoa (car group)) " " (cdr group) "\n")))))

;; The strings of a link: template, output, feature, key field, key.
(defun link-strings (data / strings)
  (foreach group data
    (if (and (listp group) (= (car group) 1000)) (setq strings (append strings (list (cdr group))))))
  strings)

(defun show-record (entity strings)
  (ui:answer 134 '(show) '(click "Cancel"))
  (sample:prompt (nth 0 strings) (nth 1 strings) entity (nth 4 strings) (nth 2 strings)))

(foreach named (sample:entities)
  (princ (strcat "\n" (car named) ", handle " (cdr (assoc 5 (entget (cdr named)))) ":\n"))
  (setq data (cdr (assoc -3 (entget (cdr named) '("ZGEO_GIS_2000")))))
  (if data
    (progn (show-groups (car data))
           (show-record (cdr named) (link-strings (car data))))
    (princ "  no link\n")))

(princ "\nThe records as the sheet shows them:\n")
(foreach line (ui:log) (princ line) (princ "\n"))
(princ)
