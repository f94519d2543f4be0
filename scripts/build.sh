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

cmake -S . -B "$dir" -G Ninja "${flags[@]}" >/dev/null
cmake --build "$dir" --parallel "$(nproc)"
