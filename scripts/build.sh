#!/usr/bin/env bash
# Configures and builds Tarnwick. Usage: scripts/build.sh [--sanitize]
# The normal build goes to build/, the sanitizer build to build-sanitize/.
set -euo pipefail
cd "$(dirname "$0")/.."

dir=build
flags=(-DTARNWICK_SANITIZE=OFF)
if [ "${1:-}" = "--sanitize" ]; then
  dir=build-sanitize
  flags=(-DTARNWICK_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug)
fi

# ccache makes rebuilds and other checkouts of the same sources cheap; it is optional.
command -v ccache >/dev/null && flags+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S . -B "$dir" -G Ninja "${flags[@]}" >/dev/null
cmake --build "$dir" --parallel "$(nproc)"
