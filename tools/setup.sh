# Sourced by ./run and ./test: installs what a fresh Debian 12 machine lacks, and builds a preset.

packages="g++ clang-format cmake ninja-build pkg-config libsqlite3-dev sqlite3 libjpeg-dev libpng-dev libgif-dev libisal-dev libfreexl-dev
liborcus-dev libgtest-dev qt6-base-dev python3 python3-ezdxf python3-pyshp mdbtools unixodbc-dev odbc-postgresql libsqliteodbc
postgresql poppler-utils"

# Only what is missing, and nothing at all when everything is there.
install_missing() {
    local missing=()
    for package in $packages; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "Please install as root: ${missing[*]}" >&2; return 1; }
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq >/dev/null
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# Other people's readers of the files that we write, as npm packages in build/node. Without a network the tests
# that ask them are skipped.
install_readers() {
    local folder=$PWD/build/node readers="shapefile@0.6.6 mdb-reader@3.2.0"
    export NODE_PATH=$folder/node_modules
    [ "$(cat "$folder/installed" 2>/dev/null)" = "$readers" ] && return 0
    mkdir -p "$folder"
    # shellcheck disable=SC2086
    if timeout 180 npm install --prefix "$folder" --no-save --no-package-lock --no-audit --no-fund $readers \
        >"$folder/npm.log" 2>&1; then
        echo "$readers" >"$folder/installed"
    else
        echo "The npm packages $readers cannot be had; the tests that ask them are skipped."
    fi
}

# Reads what a build says and shows how many of its steps are done: in one line on a terminal, in a line a minute
# elsewhere.
show_progress() {
    local line told=$SECONDS step='^\[([0-9]+)/([0-9]+)\]' is_terminal=""
    [ -t 1 ] && is_terminal=yes
    while IFS= read -r line; do
        [[ $line =~ $step ]] || continue
        if [ -n "$is_terminal" ]; then
            printf '\r\033[K%s of %s steps are done' "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
        elif ((SECONDS - told >= 60)); then
            told=$SECONDS
            echo "${BASH_REMATCH[1]} of ${BASH_REMATCH[2]} steps are done"
        fi
    done
    [ -z "$is_terminal" ] || printf '\r\033[K'
}

# build_preset PRESET [CMAKE-ARGUMENT ...]
build_preset() {
    local preset=$1 launcher=()
    shift
    if command -v ccache >/dev/null; then
        launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
        # It does not keep what includes precompiled headers without these.
        export CCACHE_SLOPPINESS=pch_defines,time_macros
    fi
    local log=build/$preset.log
    mkdir -p build
    if ! { cmake --preset "$preset" "${launcher[@]}" "$@" &&
        NINJA_STATUS="[%f/%t] " cmake --build --preset "$preset"; } 2>&1 | tee "$log" | show_progress; then
        tail -n 60 "$log" >&2
        echo "The build has failed; all of its output is in $log." >&2
        return 1
    fi
}
