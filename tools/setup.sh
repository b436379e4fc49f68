# Sourced by ./run and ./test: installs what a fresh Debian 12 machine lacks, and builds a preset.

packages="g++ clang-format cmake ninja-build pkg-config libsqlite3-dev sqlite3 libgtest-dev qt6-base-dev python3 python3-ezdxf python3-pyshp mdbtools
unixodbc-dev odbc-postgresql libsqliteodbc postgresql"

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

# build_preset PRESET [CMAKE-ARGUMENT ...]
build_preset() {
    local preset=$1 launcher=()
    shift
    command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    local log=build/$preset.log
    mkdir -p build
    if ! { cmake --preset "$preset" "${launcher[@]}" "$@" && cmake --build --preset "$preset"; } >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        echo "The build has failed; all of its output is in $log." >&2
        return 1
    fi
}
