#!/usr/bin/env bash
# Sets up the machine, builds Tarnwick and runs every test.
# Usage: scripts/test.sh [--sanitize]   (--sanitize: under AddressSanitizer + UBSan)
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
scripts/build.sh "$@"

dir=build
[ "${1:-}" = "--sanitize" ] && dir=build-sanitize
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
ctest --test-dir "$dir" --output-on-failure --parallel "$(nproc)" --timeout 300
