(command "_.LAYER" "_N" "A,B" "_C" "green" "A*" "_OFF" "A" "_F" "B" "_LO" "*" "_LT" "CONTINUOUS" "" "_LW" "0.5" "" "?" "" "_M" "X" "")
(setvar "CLAYER" "A") (command "_.ZOOM" "_C" "1,1" "2x" "_.ZOOM" "0,0" "1,1" "_.ZOOM" "_E" "_.ZOOM" "0.5")
