#!/usr/bin/env bash
# The exchange with shape files and the links in bulk, with real mouse and key events: poles are linked by their
# attributes, go out as a shape file, lots come in from one, and the audit mends what a move has broken. A picture is
# taken of each stage, to be looked at; what files can tell is checked.
#
#   tools/window-exchange.sh [--bin FOLDER] [--job FOLDER] [--dpi N] [--size WxH] [--dark] [--pictures FOLDER]
#
# What the arguments mean stands in window-screen.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/window-screen.sh

jet() { "$bin/jet" sql "$job/$1" "$2"; }

# A record for each pole of the drawing, in an output of its own.
cat >"$work/poles.lsp" <<LISP
(load "$PWD/samples/entities.lsp")
(cf:gis_smart_prompting 20 "x" "none" "$job/output.mdb")
LISP
"$bin/hostcad-batch" --drawing "$job/survey.dxf" "$work/poles.lsp" >"$work/poles.log" 2>&1 ||
    { cat "$work/poles.log"; fail "there is no output"; }
jet output.mdb "CREATE TABLE POLE (PT_ID TEXT(50), GIS_KEY TEXT(50), HEIGHT DOUBLE)"
for i in $(seq 40); do
    printf "INSERT INTO POLE VALUES ('P%03d', 'POLE', %d);" "$i" $((20 + i))
done >"$work/poles.sql"
jet output.mdb "$(cat "$work/poles.sql")"

open_window "$job/survey.dxf"
await "survey.dxf"
pause 1

# --- Links from blocks -------------------------------------------------------------------------------------

press alt+g
picture 01-menu
press Escape Escape
type_line "GIS-LINKS"
type_line "ALL"
press Return
await "Create GIS Links"
picture 02-links
press Down Down
press Tab
press Down
picture 03-attribute
click_at 183 323  # the first key
click_at 555 94   # the table, and the second key
click_at 183 351
picture 04-keys
press alt+o
pause 1
await "survey.dxf"
picture 05-linked

# --- Out -----------------------------------------------------------------------------------------------------

type_line "GIS-EXPORT"
await "Export to SHP"
type_line "$job/out.shp"
pause 1
type_line "ALL"
press Return
await "Export"
picture 06-export
press space
press Return
pause 1
picture 07-exported
[ -s "$job/out_5_UNKNOWN.shp" ] || fail "the areas are not exported"

# --- In ------------------------------------------------------------------------------------------------------

await "survey.dxf"
type_line "GIS-IMPORT"
await "Import SHP File"
picture 08-import
press alt+s
pause 1
await "^Open$"
picture 09-import-box
type_line "$job/out_5_UNKNOWN.shp"
await "Import SHP File"
press alt+y
type_text "FROM_SHP"
press Tab
picture 10-import-filled
press Return
pause 2
await "survey.dxf"
picture 11-imported
jet output.mdb "SELECT COUNT(*) FROM UNKNOWN" >"$work/rows" || fail "the table is not made"
grep -q '^68$' "$work/rows" || fail "not all rows came: $(cat "$work/rows")"

# --- Audit, areas, query -------------------------------------------------------------------------------------

mv "$job/output.mdb" "$job/moved.mdb"
type_line "GIS-AUDIT"
type_line "ALL"
press Return
await "Audit"
picture 12-audit
press Escape
pause 1
picture 13-audit-left
press alt+y
pause 1
await "survey.dxf"
mv "$job/moved.mdb" "$job/output.mdb"
type_line "GIS-POLYLINKS"
type_line "Text"
type_line "ALL"
press Return
pause 2
picture 14-areas
press Escape
pause 1
await "survey.dxf"
type_line "GIS-AREACHECK"
type_line "ALL"
press Return
press Return
pause 1
picture 14-area-check
press alt+n
await "survey.dxf"
type_line "GIS-REPORT"
press Return
await "Report of links"
type_line "$job/links.csv"
pause 1
picture 14-report
grep -q "^Problem," "$job/links.csv" || fail "there is no report of the links"
press alt+n
pause 0.5
await "survey.dxf"
type_line "GIS-QUERY"
type_line "Number"
type_line "74"
pause 1
picture 15-query
press Escape
press Escape
await "survey.dxf"
type_line "GIS-POINTS"
pause 1
picture 16-points
press Escape
press Escape
await "survey.dxf"
press ctrl+q
await "Unsaved"
press alt+n
pause 1
kill -0 "$window" 2>/dev/null && fail "the window does not close"
window=""
echo "Done."
