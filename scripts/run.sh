#!/usr/bin/env bash
# Sets up the machine, builds Tarnwick and starts it. Arguments are handed to the program, for
# example a product file or --test-device PATH (see `build/Tarnwick/tarnwick --help`).
# Without a USB board the window starts with a simulated board plugged in (and a demo product
# when there is none yet), so there is something to flash at once. Without a display the
# command-line demo runs instead: a whole flashing run of tarnwick-cli against a simulated ESP32.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh

# Only the programs that are started, not every test and benchmark; the build talks to a log
# file, which is shown only when the build fails.
build() {
  mkdir -p build
  local log=build/run-build.log
  local flags=()
  command -v ccache >/dev/null && flags+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  if ! { cmake -S . -B build -G Ninja "${flags[@]}" &&
         cmake --build build --parallel "$(nproc)" --target "$@"; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "The build failed; the log above is also in $log." >&2
    exit 1
  fi
}

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "No display found (DISPLAY and WAYLAND_DISPLAY are empty): showing the command-line demo"
  echo "instead. Start Tarnwick from a desktop session to see the window."
  echo
  echo "Building tarnwick-cli and tarnwick-simboard (log: build/run-build.log)…"
  build tarnwick-cli tarnwick-simboard
  exec scripts/demo.sh
fi

echo "Building Tarnwick (log: build/run-build.log)…"
build tarnwick

# USB serial boards appear as ttyUSB (behind an adapter chip) or ttyACM (USB CDC) devices.
arguments=("$@")
if ! compgen -G '/dev/ttyUSB*' >/dev/null && ! compgen -G '/dev/ttyACM*' >/dev/null &&
   [[ " $* " != *" --test-device"* && " $* " != *" --simulated-board"* ]]; then
  echo "No USB board found: Tarnwick starts with a simulated board plugged in"
  echo "(Help ▸ Try with a Simulated Board plugs in more, and pulls them out again)."
  # First, so that a "--" among the arguments cannot make it a file name.
  arguments=(--simulated-board "$@")
fi
exec build/Tarnwick/tarnwick "${arguments[@]}"
