;; Title blocks of a whole folder of drawings.
;;
;;   hostcad-batch title-blocks.lsp job.lsp
;;
;; where job.lsp says, for example,
;;
;;   (sample:fill-folder "/office/job/" "TITLE" "JOBNO" "" "/office/job/titles.csv")

;; Fills the title blocks of each drawing of a folder by the keys that they have, and saves the drawings. settings: the
;; file of links, "" for the person's own. The report has a line a drawing: its path, how many blocks there are, were
;; updated, had no record, had no key, and the keys without a record. The number of drawings that were filled.
(defun sample:fill-folder (folder block key settings report / out told filled)
  (setq out (open report "w") filled 0)
  (write-line "Drawing,Blocks,Updated,Without record,Without key,Missing keys" out)
  (foreach drawing (gis:drawings folder)
    (command "_.OPEN" drawing)
    (setq told (gis:fill-titles block key "" settings))
    (write-line (sample:title-line drawing told) out)
    (if told
      (progn (command "_.QSAVE")
             (setq filled (1+ filled)))))
  (close out)
  filled)

;; A text as a value of a CSV file.
(defun sample:csv-value (text / value at letter)
  (setq value "\"" at 0)
  (while (<= (setq at (1+ at)) (strlen text))
    (setq letter (substr text at 1)
          value (strcat value (if (= letter "\"") "\"\"" letter))))
  (strcat value "\""))

(defun sample:title-line (drawing told / line keys)
  (setq line (sample:csv-value drawing) keys "")
  (if (null told)
    (strcat line ",no links,,,,")
    (progn
      (foreach count (list (nth 0 told) (nth 1 told) (nth 2 told) (nth 3 told))
        (setq line (strcat line "," (itoa count))))
      (foreach missing (nth 4 told)
        (setq keys (strcat keys missing " ")))
      (strcat line "," (sample:csv-value keys)))))
