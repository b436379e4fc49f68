(regapp "APP") (setq e (entmakex '((0 . "LINE") (10 0 0 0) (11 1 1 0) (-3 ("APP" (1000 . "x") (1070 . 5) (1010 1 2 3) (1004 . "00FF"))))))
(entmod (subst '(8 . "L") (assoc 8 (entget e '("*"))) (entget e '("*")))) (entdel e) (entdel e)
(setq s (ssget "X" '((-4 . "<or") (0 . "LINE") (-4 . ">=") (40 . 1.0) (-4 . "or>")))) (ssadd e s) (ssname s 0) (ssmemb e s)
(tblnext "LAYER" t) (tblsearch "BLOCK" "X") (handent "1F") (entnext) (ssget "F" '((0 0) (1 1)))
