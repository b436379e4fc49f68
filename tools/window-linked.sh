# Records of trees, and a drawing whose points are linked to them: read by the jobs beside this file, behind
# window-screen.sh. The points are those of the sample or, with ENTITIES=100000, so many new ones.

entities=${ENTITIES:-0}

jet() { "$bin/jet" sql "$job/$1" "$2"; }
value() { jet output.mdb "SELECT $1 FROM TREE WHERE PT_ID = '$2'"; }

cat >"$work/links.lsp" <<LISP
(load "$PWD/samples/entities.lsp")
(cf:gis_smart_prompting 20 "x" "none" "$job/output.mdb")
(regapp "ZGEO_GIS_2000")
(defun link-to (key)
  (list -3 (list "ZGEO_GIS_2000" '(1002 . "{") '(1000 . "$job/template.mdb") '(1000 . "$job/output.mdb") '(1000 . "TREE")
                 '(1000 . "PT_ID") (cons 1000 key) '(1002 . "}"))))
(defun number-of (block / part)
  (setq part (entnext block))
  (while (and part (/= (cdr (assoc 2 (entget part))) "PT#")) (setq part (entnext part)))
  (cdr (assoc 1 (entget part))))
(setq points (ssget "X" '((0 . "INSERT") (2 . "SRVPNO1"))) at 0)
(if (> $entities 0)
  (repeat $entities
    (setq at (1+ at))
    (entmake (list '(0 . "POINT") (list 10 (+ 1630000.0 (rem at 400)) (+ 480000.0 (/ at 400)) 0.0) (link-to (itoa at)))))
  (repeat (sslength points)
    (setq block (ssname points at) at (1+ at))
    (entmod (append (entget block) (list (link-to (number-of block)))))))
(command "_.QSAVE")
LISP
"$bin/hostcad-batch" --drawing "$job/survey.dxf" "$work/links.lsp" >"$work/links.log" 2>&1 ||
    { cat "$work/links.log"; fail "there are no links"; }
records=$((entities > 400 ? entities : 400))
number="a.I + 10 * b.I + 100 * c.I + 1000 * d.I + 10000 * e.I + 1"
{
    echo "CREATE TABLE DIGIT (I INTEGER);"
    for digit in $(seq 0 9); do echo "INSERT INTO DIGIT VALUES ($digit);"; done
    echo "CREATE TABLE TREE (PT_ID TEXT(50), GIS_KEY TEXT(50), SPECIES TEXT(60), DBH INTEGER, NOTES TEXT(100));
INSERT INTO TREE SELECT $number, 'TREE', IIF(a.I < 5, 'RED MAPLE', 'WHITE OAK'), 5 + 6 * b.I + c.I, IIF(c.I = 3, 'leaning', '')
FROM DIGIT a, DIGIT b, DIGIT c, DIGIT d, DIGIT e WHERE $number <= $records;
DROP TABLE DIGIT"
} >"$work/records.sql"
jet output.mdb "$(cat "$work/records.sql")" >"$work/jet.log" || { cat "$work/jet.log"; fail "there are no records"; }
