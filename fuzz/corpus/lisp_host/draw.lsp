(command "_.LINE" "0,0" "@5<90" '(3 4) "_U" "_C") (command "_.CIRCLE" "1,1" "_D" 4) (command "_.POINT" pause)
(command "_.PLINE" "0,0" "_W" 0.5 1 "_A" "_S" "1,1" "2,0" "_CE" "3,0" "4,0" "_D" 90 "5,5" "_L" "_L" 3 "_CL")
(command "_.TEXT" "_J" "_MC" "5,6" 2.5 90 "LOT") (command "_.LIST" "ALL" "" "_.ERASE" "L" "" "_.U" "_.REDO")
