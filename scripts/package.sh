#!/usr/bin/env bash
# Sets up the machine, builds Tarnwick and makes the Debian package tarnwick_VERSION_ARCH.deb
# in build/. Usage: scripts/package.sh [--check]   (--check: also test the package from outside,
# installing it on this machine and removing it again; needs root)
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
scripts/build.sh >/dev/null
(cd build && cpack -G DEB >/dev/null)
deb=$(ls -t build/tarnwick_*.deb | head -n 1)
echo "$deb"
if [ "${1:-}" = "--check" ]; then
  packaging/check-package.sh "$deb"
fi
