#!/usr/bin/env bash
# Brings all C++ files into the project's format; with --check tells which are not in it, with file and line.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=(-i)
[ "${1:-}" = --check ] && mode=(--dry-run -Werror)
if ! command -v clang-format >/dev/null; then
    echo "clang-format is not installed." >&2
    exit 77
fi
find . -path ./build -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 -n 20 -P "$(nproc)" clang-format "${mode[@]}"
