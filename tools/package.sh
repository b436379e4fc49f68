#!/usr/bin/env bash
# Makes the Debian package of the release preset, in build/release/package, and has lintian look at it where that is
# installed.
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/setup.sh
packages+=" dpkg-dev file gzip"
install_missing
echo "Building ..."
build_preset release -DBUILD_TESTING=OFF -DNORVANE_BENCH=OFF
rm -f build/release/package/*.deb
(umask 022 && cpack --config build/release/CPackConfig.cmake) >build/package.log 2>&1 ||
    { tail -n 30 build/package.log >&2; exit 1; }
package=$(echo build/release/package/*.deb)
if command -v lintian >/dev/null; then lintian --fail-on error --allow-root "$package"; fi
echo "$package"
