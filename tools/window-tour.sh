#!/usr/bin/env bash
# A tour of the window with real mouse and key events: what meets a person on the first day is done once, and a
# picture taken of each stage, to be looked at. What a file or the title of a window can tell is checked.
#
#   tools/window-tour.sh [--crash] [--bin FOLDER] [--job FOLDER] [--dpi N] [--size WxH] [--dark] [--pictures FOLDER]
#
# --crash also waits the five minutes after which a changed drawing is kept, and kills the window. What the other
# arguments mean stands in window-screen.sh. 800x600 shows whether all dialogs fit.
set -euo pipefail
cd "$(dirname "$0")/.."
crash=""
if [ "${1:-}" = --crash ]; then
    crash=yes
    shift
fi
. tools/window-screen.sh

mkdir -p "$job/office"
jet() { "$bin/jet" sql "$job/$1" "$2"; }
tree="1631073.2976,480639.8444"  # point 74

# --- Beginning ---------------------------------------------------------------------------------------------

open_window
await "Unnamed drawing"
picture 01-start
press alt+f
picture 02-file-menu
press Escape Escape
press alt+h
press b
await "About"
picture 03-about
press Escape
await "Unnamed drawing"
press ctrl+o
await "Select File"
picture 04-open
echo "Dear Sir, this is a letter." >"$job/letter.dxf"
type_line "$job/letter.dxf"
await "Drawing"
picture 05-no-drawing
press Return
await "Unnamed drawing"
press ctrl+o
await "Select File"
type_line "$job/survey.dxf"
await "survey.dxf"
pause 1
find_middle

# --- Menus, help, what is not there ------------------------------------------------------------------------

press alt+g
picture 06-gis-menu
press y
picture 07-for-programs
press Escape Escape Escape
type_line "GIS-TITLES"
type_line "(car 5)"
type_line "(getpoint \"Where? \")"
press Escape
picture 08-command-line
press F1
await "README.md"
picture 09-guide
press Escape
await "survey.dxf"

# --- Settings, the chooser, file boxes ---------------------------------------------------------------------

type_line "GIS-SETTINGS"
await "GIS Settings"
press Tab
picture 10-settings
press alt+t
await "New or Existing File"
picture 11-chooser
press Escape
await "GIS Settings"
press Escape
await "survey.dxf"
type_line "COMPACTDATABASE"
await "Compact"
type_line "$job/template.mdb"
await "Compact and Repair"
picture 12-success
press Return
await "survey.dxf"

# --- The editor --------------------------------------------------------------------------------------------

type_line "GIS-EDITOR"
await "Define Template"
pause 1
for key in Down Down Down Right Down Return; do press $key; done
picture 13-editor
picture_of_window 13-editor
click_at 350 117  # the first attribute, and on to its values
press Right
press Right
press alt+v
await "List Values"
press Down
picture 13-list-values
picture_of_window 13-list-values
press alt+s
await "Special codes"
press Down
picture 13-special-codes
picture_of_window 13-special-codes
press Escape
await "List Values"
press Escape
await "Define Template"
press Escape
await "Alert"
picture 14-editor-left
press alt+y
await "survey.dxf"

# --- Entities, smart prompting -----------------------------------------------------------------------------

look_at "$tree" 340
click_middle
press Delete
press ctrl+z
picture 15-undone
click_middle
xdotool key F9
await "GIS Smart Prompting"
pause 1
picture 16-sheet
press Down
type_line "14"
type_text "12"
press Tab Tab
press ctrl+z
picture 17-undone-cell
press F4
press Tab
picture 18-sheet-focus
press Escape
await "survey.dxf"
# The job itself, by script: what the sheet does stands in window-job.sh.
cat >"$work/link.lsp" <<LISP
(load "$PWD/samples/features.lsp")
(load "$PWD/samples/entities.lsp")
(ui:answer 134 '(cell 2 1 "RED OAK") '(cell 2 2 "14") '(click "OK"))
(sample:prompt "$job/template.mdb" "$job/output.mdb" (sample:point "74") "74" "TREE")
LISP
"$bin/hostcad-batch" --drawing "$job/survey.dxf" --save "$job/office/linked.dxf" "$work/link.lsp" \
    >"$work/link.log" 2>&1 || { cat "$work/link.log"; fail "the drawing is not linked"; }

# --- Other databases, a moved job --------------------------------------------------------------------------

type_line "GIS-SLOT"
type_line "2"
type_line "$job/other.mdb"
press ctrl+o
await "Unsaved"
picture 19-unsaved
press alt+n
await "Select File"
type_line "$job/office/linked.dxf"
await "Databases of the drawing"
picture 20-other-databases
press alt+y
await "linked.dxf"
picture 21-current-databases
grep -q "gisoutfile=$job/output.mdb" "$work/user/gps.ini" || fail "the databases are not made current"
mv "$job/output.mdb" "$job/template.mdb" "$job/office/"
look_at "$tree" 340
click_middle
picture 22-moved
press F9
await "GIS Smart Prompting - Entity has GIS Data"
picture 23-moved-sheet
press Escape
await "linked.dxf"

# --- Saving and leaving ------------------------------------------------------------------------------------

type_line "POINT"
type_line "$tree"
press alt+f
press d
await "Save as PDF"
picture 24-pdf
press Return
await "linked.dxf"
[ -s "$job/office/linked.pdf" ] || fail "there is no PDF"
press ctrl+shift+s
press Return
await "Save Drawing As"
type_line "/sys/survey.dxf"
await "Save Drawing"
picture 25-not-saved
press Escape
await "linked.dxf"
press ctrl+q
pause 1
if kill -0 "$window" 2>/dev/null; then
    await "Unsaved"
    picture 26-leaving
    press alt+n
    pause 1
fi
kill -0 "$window" 2>/dev/null && fail "the window does not close"
open_window
await "Unnamed drawing"
pause 1
picture 27-start-again
press ctrl+q
window=""

# --- After a crash -----------------------------------------------------------------------------------------

if [ -n "$crash" ]; then
    open_window "$job/survey.dxf"
    await "survey.dxf"
    type_line "POINT"
    type_line "$tree"
    pause 310
    kill -9 "$window"
    open_window
    await "Unsaved Work"
    picture 28-after-a-crash
    press alt+y
    await "survey.dxf"
    picture 29-recovered
    kill "$window"
    window=""
fi
echo "Done."
