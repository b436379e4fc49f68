#!/usr/bin/env bash
# Looks through C++ files with clang-tidy: the checks and the rules of names are in .clang-tidy.
#
# usage: tools/tidy.sh [COMMIT]         what differs from a commit (HEAD when none is named), and files not yet added
#        tools/tidy.sh --all [FOLDER]   everything, or all of a folder
#
# A header is looked through with the files that include it. Ends with 1 when anything was found.
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/setup.sh
packages+=" clang-tidy"
install_missing
# Clang cannot read the headers that another compiler has parsed.
build=build/tidy
cmake --preset dev -B "$build" -DNORVANE_PRECOMPILED=OFF >/dev/null

changed() {
    git diff --name-only --diff-filter=d "$1" -- '*.cpp' '*.h'
    git ls-files --others --exclude-standard -- '*.cpp' '*.h'
}

# The sources among files and, for each header among them, the sources that include it.
sources_of() {
    local file
    while read -r file; do
        case $file in
            *.h) grep -rlF --include='*.cpp' "#include \"$file\"" platform module hostcad product tests bench fuzz || true ;;
            *) echo "$file" ;;
        esac
    done
}

if [ "${1:-}" = --all ]; then
    files=$(find "${2:-.}" -path ./build -prune -o -name '*.cpp' -print | sed 's#^\./##')
else
    files=$(changed "${1:-HEAD}" | sources_of)
fi
# What the preset does not build cannot be looked through.
built=$(grep -oP '"file": "\K[^"]+' "$build/compile_commands.json" | sed "s#^$PWD/##")
files=$(sort -u <<<"$files" | grep -Fxf <(echo "$built") || true)
[ -n "$files" ] || { echo "Nothing to look through."; exit 0; }

echo "Looking through $(wc -l <<<"$files") files ..."
log=build/tidy.log
xargs -P "$(nproc)" -n 1 clang-tidy -p "$build" --quiet --extra-arg=-Wno-unknown-warning-option \
    <<<"$files" >"$log" 2>/dev/null || true
# A header's findings come with each source that includes it. What is laid to a header of a library is
# memory that Qt takes over from its caller.
findings=$(grep -E '^[^ ]+:[0-9]+:[0-9]+: (warning|error):' "$log" | grep -v '^/usr/' |
    sed -E "s#^$PWD/##; s#^$build/layers/[^/]+/##" | sort -u || true)
[ -z "$findings" ] || { echo "$findings"; exit 1; }
echo "Nothing found."
