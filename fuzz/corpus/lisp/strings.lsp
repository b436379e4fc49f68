(vl-string-trim " " (vl-string-translate "abc" "xyz" (substr "é€abc" 2 3)))
(angtos (angtof "N45d30'15\"E" 4) 1 6) (distof "1'-5 1/2\"" 4) (rtos 1e300 4 8)
(vl-list->string (vl-string->list "\t\"\\")) (wcmatch "a1" "[~b-d]#,@*") (read "'(a . b)")
