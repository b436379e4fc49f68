(entmake '((0 . "BLOCK") (2 . "T") (70 . 2) (10 1 0 0)))
(entmake '((0 . "ATTDEF") (10 2 0 0) (40 . 0.2) (1 . "OAK") (3 . "") (2 . "S") (70 . 0)))
(entmake '((0 . "ENDBLK"))) (command "_.INSERT" "T" "_R" 45 "1,2" 2 "" "ELM") (entget (entnext (entlast)))
