# A screen of its own for a job in the window, with real mouse and key events: what the jobs beside this file share.
# Read by them with their arguments; it ends the script with 0 where a program for it is missing.
#
#   --bin FOLDER       where hostcad, hostcad-batch and jet are; build/release/bin without it
#   --job FOLDER       where the drawing and the databases are put; a new folder under /tmp without it
#   --dpi N            of the screen; 96, at which one pixel is one, without it
#   --size WxH         of the screen, in pixels at 96 dpi; 1280x860 without it
#   --dark             with a dark theme of the desktop
#   --pictures FOLDER  takes a picture at each stage

bin=build/release/bin job="" dpi=96 size=1280x860 theme=light pictures=""
while [ $# -gt 0 ]; do
    case $1 in
        --bin) bin=$2 ;;
        --job) job=$2 ;;
        --dpi) dpi=$2 ;;
        --size) size=$2 ;;
        --dark) theme=dark; shift; continue ;;
        --pictures) pictures=$2 ;;
        *) sed -n '/^#   --/s/^# \{0,1\}//p' "${BASH_SOURCE[0]}"; exit 2 ;;
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
mkdir -p -m 700 "$work/user" "$work/run" "$work/config"
if [ "$theme" = dark ]; then
    export XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION=5
    for part in Window Button View Selection Tooltip; do
        case $part in
            View) ground=27,30,32 ;;
            Selection) ground=61,130,190 ;;
            *) ground=42,46,50 ;;
        esac
        printf '[Colors:%s]\nBackgroundNormal=%s\nBackgroundAlternate=35,38,41\n' "$part" "$ground"
        printf 'ForegroundNormal=252,252,252\nForegroundInactive=161,169,177\nForegroundLink=61,174,233\n\n'
    done >"$work/config/kdeglobals"
fi

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

# --- The screen --------------------------------------------------------------------------------------------

width=$((${size%x*} * dpi / 96)) height=$((${size#*x} * dpi / 96))
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

# --- What a person does ------------------------------------------------------------------------------------

fail() {
    echo "Failed: $*"
    import -window root "$job/failed.png" 2>/dev/null && echo "The screen is in $job/failed.png"
    exit 1
}
pause() { sleep "${1:-0.5}"; }
press() { xdotool key --clearmodifiers "$@"; pause; }
type_text() { xdotool type --delay 15 "$1"; }
type_line() { type_text "$1"; xdotool key Return; pause; }
picture() { [ -z "$pictures" ] || import -window root "$pictures/$1-$dpi.png"; }
picture_of_window() { [ -z "$pictures" ] || import -window "$focused" "$pictures/$1-window-$dpi.png"; }
# Waits for a window, and gives it the keyboard: there is no window manager to do so.
await() {
    local id
    id=$(timeout 20 xdotool search --sync --onlyvisible --name "$1" 2>/dev/null | tail -n 1) || true
    [ -n "$id" ] || fail "no window \"$1\""
    xdotool windowfocus "$id" 2>/dev/null || true
    focused=$id
    pause
}
# Clicks at a place of the window with the keyboard, in pixels at 96 dpi; from its right or lower edge where it is
# below 0.
click_at() {
    eval "$(xdotool getwindowgeometry --shell "$focused")"
    [ "$1" -lt 0 ] && X=$((X + WIDTH))
    [ "$2" -lt 0 ] && Y=$((Y + HEIGHT))
    xdotool mousemove $((X + $1 * dpi / 96)) $((Y + $2 * dpi / 96))
    pause 0.3
    xdotool click "${3:-1}"
    pause 1
}
# The middle of the drawing's part of the window: that of its ground.
find_middle() {
    import -window root "$work/screen.png"
    local box
    box=$(convert "$work/screen.png" -fill black +opaque '#1E2228' -fill white -opaque '#1E2228' -format '%@' info:)
    IFS='x+' read -r w h x y <<<"$box"
    middle_x=$((x + w / 2)) middle_y=$((y + h / 2))
}
click_middle() { xdotool mousemove "$middle_x" "$middle_y" && pause 0.3 && xdotool click "${1:-1}" && pause 0.7; }
# Brings a place of the drawing to the middle, and shows so many units round it.
look_at() {
    type_line "ZOOM"
    type_line "C"
    type_line "$1"
    type_line "$2"
}
open_window() {
    "$bin/hostcad" "$@" >"$work/hostcad.log" 2>&1 &
    window=$!
}
