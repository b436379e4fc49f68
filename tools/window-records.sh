#!/usr/bin/env bash
# The tools round the records, with real mouse and key events: notes of the field come into the output, a table is
# looked at and changed, title blocks are filled, definitions printed, and a record gets a picture. A picture is taken of
# each stage, to be looked at; what files can tell is checked.
#
#   tools/window-records.sh [--bin FOLDER] [--job FOLDER] [--dpi N] [--size WxH] [--dark] [--pictures FOLDER]
#
# What the arguments mean stands in window-screen.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/window-screen.sh

jet() { "$bin/jet" sql "$job/$1" "$2"; }
tree="1631073.2976,480639.8444"  # point 74

cat >"$job/field.not" <<'NOTES'
PT_ID:4  GIS_FILE:POLE.GIS
Pt Data,480354.5255,1630716.6981,561.761,POLE
HRMS:0.010 VRMS:0.038 FIXED
Owner,CITY OF MONROE
leans to the east

PT_ID:5  GIS_FILE:POLE.GIS
Pt Data,480360.1000,1630720.2000,561.900,POLE
Owner,O'NEIL
NOTES
cat >"$job/field.txt" <<'TEXT'
101,480354.52,1630716.69,561.76,MH
102,480360.10,1630720.20,561.90,MH
TEXT
cat >"$job/jobs.csv" <<'TABLE'
JOBNO,TITLE
04-0136,A TITLE FROM THE OFFICE
TABLE

open_window "$job/survey.dxf"
await "survey.dxf"
pause 1

# --- Notes and text ------------------------------------------------------------------------------------------

type_line "GIS-UTILITIES"
await "Database File Utilities"
picture 01-utilities
press alt+s
await "Save As"
type_line "$job/output.mdb"
await "Database File Utilities"
press alt+n
await "^Open$"
type_line "$job/field.not"
await "Import Note Data"
picture 02-notes
press alt+i
pause 1
picture 03-report
press Escape
await "Import Note Data"
click_at -65 78  # Import ASCII File
await "^Open$"
type_line "$job/field.txt"
await "Import ASCII Data"
picture 03-text
picture_of_window 03-text
press Escape
pause 0.5
await "Import Note Data"
jet output.mdb "SELECT COUNT(*) FROM POLE" | grep -q '^2$' || fail "the notes are not imported"
press alt+t
pause 1
picture 04-table
press Escape
pause 1
await "Import Note Data"
press Escape
await "survey.dxf"

# --- A table -------------------------------------------------------------------------------------------------

type_line "GIS-TABLE"
pause 1
picture 05-choose-table
press Return
pause 1
picture 06-table
press Escape
pause 1
await "survey.dxf"

# --- Title blocks --------------------------------------------------------------------------------------------

type_line "GIS-BLOCKLINKS"
await "Block"
press alt+a
await "^Open$"
type_line "$job/jobs.csv"
await "Block"
picture 07-block-links
press Escape
pause 1
await "survey.dxf"
type_line "GIS-TITLES"
type_line "ALL"
press Return
pause 1
picture 08-titles
press Escape
pause 0.5
await "survey.dxf"

# --- Definitions ---------------------------------------------------------------------------------------------

type_line "GIS-EDITOR"
await "Define Template"
press ctrl+p
pause 1
picture 09-print
press alt+n
pause 1
picture 10-print-all
press Escape
await "Define Template"
press Escape
await "Alert"
press alt+y
await "survey.dxf"

# --- Blocks from records -------------------------------------------------------------------------------------

type_line "GIS-BLOCKS"
pause 1
picture 11-blocks
press Escape
await "survey.dxf"

# --- Pictures ------------------------------------------------------------------------------------------------

find_middle
look_at "$tree" 340
click_middle
press F9
await "GIS Smart Prompting"
pause 1
picture 12-sheet
press Escape
await "survey.dxf"
press ctrl+q
pause 1
if kill -0 "$window" 2>/dev/null; then
    await "Unsaved"
    press alt+n
    pause 1
fi
kill -0 "$window" 2>/dev/null && fail "the window does not close"
window=""
echo "Done."
