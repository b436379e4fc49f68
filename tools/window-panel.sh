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
. tools/window-linked.sh

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
