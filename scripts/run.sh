#!/usr/bin/env bash
# Sets up the machine, builds what the demo runs and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh

# Only the two programs the demo uses, not every test and benchmark; the build talks to a log
# file, which is shown only when the build fails.
mkdir -p build
log=build/run-build.log
flags=()
command -v ccache >/dev/null && flags+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
echo "Building tarnwick-cli and tarnwick-simboard (log: $log)…"
if ! { cmake -S . -B build -G Ninja "${flags[@]}" &&
       cmake --build build --parallel "$(nproc)" --target tarnwick-cli tarnwick-simboard; } >"$log" 2>&1; then
  cat "$log" >&2
  echo "The build failed; the log above is also in $log." >&2
  exit 1
fi

exec scripts/demo.sh
