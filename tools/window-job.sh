#!/usr/bin/env bash
# A person's whole job in the window, with real mouse and key events on a screen of its own: open the sample
# drawing, zoom to a point, prompt for it from the menu, fill the sheet, see the link and the record, save, and
# open the drawing again. Then the files are read, and what is not as it should be ends the script with 1.
#
#   tools/window-job.sh [--bin FOLDER] [--job FOLDER] [--dpi N] [--pictures FOLDER]
#
# --bin       where hostcad and hostcad-batch are; build/release/bin without it
# --job       where the drawing and the databases are put; a new folder under /tmp without it
# --dpi       of the screen; 96, at which one pixel is one, without it
# --pictures  takes a picture at each stage
set -euo pipefail
cd "$(dirname "$0")/.."

bin=build/release/bin job="" dpi=96 pictures=""
while [ $# -gt 0 ]; do
    case $1 in
        --bin) bin=$2 ;;
        --job) job=$2 ;;
        --dpi) dpi=$2 ;;
        --pictures) pictures=$2 ;;
        *) sed -n '2,12s/^# \{0,1\}//p' "$0"; exit 2 ;;
    esac
    shift 2
done
for program in Xvfb xdotool convert import; do
    command -v "$program" >/dev/null && continue
    echo "Skipped: $program is missing (packages xvfb, xdotool, imagemagick)."
    exit 0
done
bin=$(cd "$bin" && pwd)
[ -n "$job" ] || job=$(mktemp -d /tmp/window-job-XXXXXX)
mkdir -p "$job" ${pictures:+"$pictures"}
job=$(cd "$job" && pwd)
work=$(mktemp -d /tmp/window-job-XXXXXX)
rm -f "$job"/{survey.dxf,template.mdb,output.mdb}
cp samples/survey.dxf "$job/"

export NORVANE_USER_DIR=$work/user XDG_CONFIG_HOME=$work/config XDG_RUNTIME_DIR=$work/run HOME=$job
export QT_QPA_PLATFORM=xcb QT_IM_MODULE=compose LC_ALL=C.UTF-8
export QT_SCALE_FACTOR=$(awk "BEGIN { print $dpi / 96 }")
unset WAYLAND_DISPLAY
mkdir -p -m 700 "$work/user" "$work/run"

# --- The template, as the scripts of the samples make it ---------------------------------------------------

cat >"$work/template.lsp" <<LISP
(load "$PWD/samples/features.lsp")
(ui:answer 146 '(click "Select Template MDB File") '(click "Exit"))
(ui:answer 149 '(click "New Access 2000 Format"))
(ui:file "$job/template.mdb")
(cf:gis_smart_prompting 7)
(sample:fill-template "$job/template.mdb")
(cf:gis_smart_prompting 2 2 "$job/output.mdb")
LISP
"$bin/hostcad-batch" --drawing "$job/survey.dxf" "$work/template.lsp" >"$work/template.log" 2>&1 ||
    { cat "$work/template.log"; exit 1; }

# --- The screen and the window -----------------------------------------------------------------------------

width=$((1280 * dpi / 96)) height=$((860 * dpi / 96))
for display in $(seq 90 120); do
    [ -e "/tmp/.X11-unix/X$display" ] || break
done
Xvfb ":$display" -screen 0 "${width}x${height}x24" -nolisten tcp >"$work/xvfb.log" 2>&1 &
screen=$!
window=""
finish() {
    [ -n "$window" ] && kill "$window" 2>/dev/null
    kill "$screen" 2>/dev/null
    wait 2>/dev/null
    rm -rf "$work"
}
trap finish EXIT
export DISPLAY=":$display"
for _ in $(seq 50); do
    [ -e "/tmp/.X11-unix/X$display" ] && break
    sleep 0.1
done

fail() {
    echo "Failed: $*"
    import -window root "$job/failed.png" 2>/dev/null && echo "The screen is in $job/failed.png"
    exit 1
}
pause() { sleep "${1:-0.5}"; }
press() { xdotool key --clearmodifiers "$@"; pause; }
type_line() { xdotool type --delay 15 "$1"; xdotool key Return; pause; }
picture() { [ -z "$pictures" ] || import -window root "$pictures/$1-$dpi.png"; }
# Waits for a window, and gives it the keyboard: there is no window manager to do so.
await() {
    local id
    id=$(timeout 20 xdotool search --sync --onlyvisible --name "$1" 2>/dev/null | tail -n 1) || true
    [ -n "$id" ] || fail "no window \"$1\""
    xdotool windowfocus "$id" 2>/dev/null || true
    focused=$id
    pause
}
# The middle of the drawing's part of the window: that of its ground.
find_middle() {
    import -window root "$work/screen.png"
    local box
    box=$(convert "$work/screen.png" -fill black +opaque '#1E2228' -fill white -opaque '#1E2228' -format '%@' info:)
    IFS='x+' read -r w h x y <<<"$box"
    middle_x=$((x + w / 2)) middle_y=$((y + h / 2))
}

"$bin/hostcad" "$job/survey.dxf" >"$work/hostcad.log" 2>&1 &
window=$!
await "survey.dxf"
pause 1
picture window-drawing
find_middle

# --- The job -----------------------------------------------------------------------------------------------

# Point 74 is a tree. The wheel brings it nearer by a last step.
type_line "ZOOM"
type_line "C"
type_line "1631073.2976,480639.8444"
type_line "340"
xdotool mousemove "$middle_x" "$middle_y"
for _ in 1 2 3 4; do xdotool click 4; done
pause

xdotool key alt+g
pause 1
picture window-menu
press s
xdotool mousemove "$middle_x" "$middle_y" && pause && xdotool click 1
await "GIS Smart Prompting"

# The list of species opens by its arrow; Enter moves from one value to the next.
at_dialog() {
    eval "$(xdotool getwindowgeometry --shell "$focused")"
    [ "$1" -lt 0 ] && X=$((X + WIDTH))
    [ "$2" -lt 0 ] && Y=$((Y + HEIGHT))
    xdotool mousemove $((X + $1 * dpi / 96)) $((Y + $2 * dpi / 96))
    pause 0.3
    xdotool click 1
    pause 1
}
at_dialog 935 81
picture window-list
press Down
press Return
at_dialog 600 107  # the cell below
type_cell() { xdotool type --delay 15 "$1"; press Return; }
type_cell "14"
type_cell "42.5"
picture window-sheet
at_dialog -137 -22  # OK
await "survey.dxf"
pause 1
"$bin/jet" sql "$job/output.mdb" "SELECT PT_ID, SPECIES, DBH, TWICE FROM TREE" >"$work/records"
cat "$work/records"
grep -q "74.*RED OAK.*14.*85" "$work/records" || fail "the record of point 74 is not in the database"

# Its properties show the link and the record.
xdotool mousemove "$middle_x" "$middle_y" && pause 0.3 && xdotool click 1
pause 1
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
type_line "ZOOM"
type_line "C"
type_line "1631073.2976,480639.8444"
type_line "200"
xdotool mousemove "$middle_x" "$middle_y" && pause 0.3 && xdotool click 1
pause 1
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
