#!/usr/bin/env bash
# What records say on the plan, with real mouse and key events: labels and colours with their legend, a selection by a
# condition that is kept, links taken off and brought back, a new record that undo leaves behind, texts made of labels,
# and all of it after saving and opening again. A picture is taken of each stage, to be looked at; what files can tell is
# checked.
#
#   tools/window-labels.sh [--bin FOLDER] [--job FOLDER] [--dpi N] [--size WxH] [--dark] [--pictures FOLDER]
#
# What the arguments mean stands in window-screen.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/window-screen.sh
. tools/window-linked.sh

open_window "$job/survey.dxf"
await "survey.dxf"
pause 2
find_middle

# --- Labels --------------------------------------------------------------------------------------------------

press alt+g
press r
picture 01-menu
press l
await "Labels from Records"
pause 1
picture 02-labels
type_text 'UPPER(SPECIES) & '
pause 1
picture 03-unfinished
press Return
pause 1
picture 04-refused
type_text '" " & DBH'
press alt+2
type_text '"No " & PT_ID'
pause 1
picture 05-preview
press Return
await "survey.dxf"
pause 1
picture 06-labelled

# --- Colours -------------------------------------------------------------------------------------------------

type_line "GIS-COLOURS"
await "Colours from Records"
press alt+e
type_text "DBH"
press alt+d
type_text "Natural"
pause 1
picture 07-colours
press Return
await "survey.dxf"
look_at "1631073.2976,480639.8444" 200
pause 1
picture 08-coloured

# --- Selection by condition ----------------------------------------------------------------------------------

type_line "GIS-CONDITIONS"
await "Select by Condition"
type_text "DBH > 30 AND SPECIS = 'red maple'"
press alt+o
pause 1
picture 09-fault
press ctrl+a
type_text "DBH > 30 AND SPECIES = 'red maple'"
press alt+o
pause 1
picture 10-counted
press alt+k
await "Keep the Condition"
type_text "Large maples"
picture 11-name
press Return
await "Select by Condition"
picture 12-kept
press alt+s
await "survey.dxf"
pause 1
picture 13-selected

# --- Links off, and on again ---------------------------------------------------------------------------------

type_line "GIS-UNLINK"
await "^Unlink$"
picture 14-unlink
press Escape
await "survey.dxf"
pause 1
picture 15-unlinked
press ctrl+z
pause 1
picture 16-linked-again

# --- A new record that undo leaves behind --------------------------------------------------------------------

look_at "1631000,480700" 100
type_line "POINT"
type_line "1631000,480700"
press Escape
press ctrl+shift+r
pause 1
await "survey.dxf"
find_middle
click_middle
press ctrl+shift+r
press alt+n
await "GIS Smart Prompting"
pause 1
press Down
type_line "14"
picture 17-sheet
click_at -137 -22  # OK
await "survey.dxf"
pause 1
[ "$(jet output.mdb "SELECT count(*) FROM TREE")" = $((records + 1)) ] || fail "no record is new"
press Escape
press ctrl+z
pause 1
press ctrl+shift+r
picture 17-left-behind
press alt+u
await "Erase new records"
picture 17-question
press alt+y
await "survey.dxf"
pause 1
[ "$(jet output.mdb "SELECT count(*) FROM TREE")" = "$records" ] || fail "the new record stays"
press ctrl+shift+r
press Escape

# --- Texts, and the drawing opened again ---------------------------------------------------------------------

type_line "GIS-MAKETEXTS"
press Return Return
pause 1
picture 18-texts
type_line "GIS-LEGEND"
type_line "1631000,480700"
press Return
pause 1
picture 19-legend
press ctrl+s
pause 2
press ctrl+o
await "Select File"
type_line "$job/survey.dxf"
await "survey.dxf"
pause 2
picture 20-reopened

cat >"$work/look.lsp" <<'LISP'
(foreach one (gis:annotation) (princ (strcat "texts: " (itoa (nth 3 one)) "\n")))
(foreach one (gis:conditions) (princ (strcat "kept: " (car one) ", " (cadr one) ", " (caddr one) "\n")))
LISP
"$bin/hostcad-batch" --drawing "$job/survey.dxf" "$work/look.lsp" >"$work/look.log" 2>&1 || true
grep -q "kept: Large maples, TREE, DBH > 30 AND SPECIES = 'red maple'" "$work/look.log" ||
    { cat "$work/look.log"; fail "the condition is not in the drawing"; }
grep -q "texts: [1-9]" "$work/look.log" || { cat "$work/look.log"; fail "the texts are not in the drawing"; }
echo "Done. The job is in $job."
