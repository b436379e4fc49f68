#!/usr/bin/env bash
# The panel of records, with real mouse and key events: it is opened beside the drawing, filtered by a condition that is
# picked from what is offered, rows and entities are selected together, a value is changed and taken back, and a record is
# erased. A picture is taken of each stage, to be looked at; what files can tell is checked. With ENTITIES=100000 the same
# is done on a drawing of so many linked points.
#
#   tools/window-panel.sh [--bin FOLDER] [--job FOLDER] [--dpi N] [--size WxH] [--dark] [--pictures FOLDER]
#
# What the arguments mean stands in window-screen.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/window-screen.sh
entities=${ENTITIES:-0}

jet() { "$bin/jet" sql "$job/$1" "$2"; }
value() { jet output.mdb "SELECT $1 FROM TREE WHERE PT_ID = '$2'"; }

# --- The records, and the links to them ----------------------------------------------------------------------

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

open_window "$job/survey.dxf"
await "survey.dxf"
pause 2

# --- By keyboard ---------------------------------------------------------------------------------------------

press ctrl+shift+r
pause 2
if [ "$entities" -gt 20000 ]; then
    await "^Index$"
    picture 01-index
    press alt+y
    pause 3
    await "survey.dxf"
fi
picture 02-open
press ctrl+shift+r
type_text "species = 'red maple' and d"
pause 1
picture 03-offers
press Down Return
type_text " > 40"
pause 1
press Return
pause 1
picture 04-filtered
press shift+Down shift+Down
pause 1
picture 05-rows
press alt+z
pause 2
picture 06-zoomed

# A value is changed, and its row written when it is left.
press shift+Tab
press Home Right Right Right Right
row=$(jet output.mdb "SELECT PT_ID FROM TREE WHERE SPECIES = 'RED MAPLE' AND DBH > 40" | sed -n 1p)
before=$(value DBH "$row")
type_text "99"
press Return
pause 1
picture 07-changed
changed=$(jet output.mdb "SELECT count(*) FROM TREE WHERE DBH = 99")
[ "$changed" = 1 ] || fail "no value is changed ($changed)"
press ctrl+z
pause 1
[ "$(jet output.mdb "SELECT count(*) FROM TREE WHERE DBH = 99")" = 0 ] || fail "Ctrl+Z takes nothing back"
[ "$(value DBH "$row")" = "$before" ] || fail "another value comes back"
picture 08-undone
press Escape

# --- A command, and an erased record -------------------------------------------------------------------------

type_line "LINE"
pause 1
picture 09-resting
press Escape
press ctrl+shift+r
press alt+l
press ctrl+a
type_text "leaning"
pause 2
press Return
press alt+r
await "Erase"
picture 10-question
press Escape
pause 1
await "survey.dxf"
picture 11-end
echo "Done. The job is in $job."
