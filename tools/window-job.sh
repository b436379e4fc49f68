#!/usr/bin/env bash
# A person's whole job in the window, with real mouse and key events on a screen of its own: open the sample
# drawing, zoom to a point, prompt for it from the menu, fill the sheet, see the link and the record, save, and
# open the drawing again. Then the files are read, and what is not as it should be ends the script with 1.
#
#   tools/window-job.sh [--bin FOLDER] [--job FOLDER] [--dpi N] [--size WxH] [--dark] [--pictures FOLDER]
#
# What the arguments mean stands in window-screen.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/window-screen.sh

open_window "$job/survey.dxf"
await "survey.dxf"
pause 1
picture window-drawing
find_middle

# --- The job -----------------------------------------------------------------------------------------------

# Point 74 is a tree. The wheel brings it nearer by a last step.
look_at "1631073.2976,480639.8444" 340
xdotool mousemove "$middle_x" "$middle_y"
for _ in 1 2 3 4; do xdotool click 4; done
pause

xdotool key alt+g
pause 1
picture window-menu
press s
click_middle
await "GIS Smart Prompting"

# The list of species opens by its arrow; Enter moves from one value to the next.
click_at 935 81
picture window-list
press Down
press Return
click_at 600 107  # the cell below
type_line "14"
type_line "42.5"
picture window-sheet
click_at -137 -22  # OK
await "survey.dxf"
press Return  # no further entity
pause 1
"$bin/jet" sql "$job/output.mdb" "SELECT PT_ID, SPECIES, DBH, TWICE FROM TREE" >"$work/records"
cat "$work/records"
grep -q "74.*RED OAK.*14.*85" "$work/records" || fail "the record of point 74 is not in the database"

# Its properties show the link and the record.
click_middle
picture window-link

# --- Saving, and opening again -----------------------------------------------------------------------------

press ctrl+s
pause 1
grep -q "ZGEO_GIS_2000" "$job/survey.dxf" || fail "the link is not in the saved drawing"
[ -e "$job/survey.dxf.bak" ] || fail "the version before the save is not kept"
# A second window may look at the drawing only.
"$bin/hostcad" "$job/survey.dxf" >"$work/second.log" 2>&1 &
second=$!
await "survey.dxf .read-only."
kill "$second" && wait "$second" 2>/dev/null || true
await "survey.dxf"
press ctrl+o
await "Select File"
type_line "$job/survey.dxf"
await "survey.dxf"
pause 1
look_at "1631073.2976,480639.8444" 200
click_middle
picture window-reopened

# What the drawing says when a program without a window opens it.
cat >"$work/look.lsp" <<'LISP'
(setq set (ssget "X" '((0 . "INSERT") (-3 ("ZGEO_GIS_2000")))))
(princ (strcat "linked: " (itoa (sslength set)) "\n"))
(princ (link-record (list (strcat folder "template.mdb") (strcat folder "output.mdb") "TREE" "PT_ID" "74")))
LISP
sed -i "1i(setq folder \"$job/\")" "$work/look.lsp"
"$bin/hostcad-batch" --drawing "$job/survey.dxf" "$work/look.lsp" >"$work/look.log" 2>&1 || true
grep -q "linked: 1" "$work/look.log" || { cat "$work/look.log"; fail "the saved drawing has not one link"; }

press ctrl+q
pause 1
kill -0 "$window" 2>/dev/null && fail "the window does not close"
window=""
echo "Done: point 74 is linked to its record, in the drawing and in the database."
