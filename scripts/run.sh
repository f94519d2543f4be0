#!/usr/bin/env bash
# Sets up the machine, builds Tarnwick and starts it. Arguments are handed to the program, for
# example a product file or --test-device PATH (see `build/Tarnwick/tarnwick --help`).
# Without a display the command-line demo runs instead: a whole flashing run of tarnwick-cli
# against a simulated ESP32.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh

flags=()
command -v ccache >/dev/null && flags+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S . -B build -G Ninja "${flags[@]}" >/dev/null

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "No display found (DISPLAY and WAYLAND_DISPLAY are empty): showing the command-line demo"
  echo "instead. Start Tarnwick from a desktop session to see the window."
  echo
  echo "Building tarnwick-cli and the simulated board…"
  cmake --build build --parallel "$(nproc)" --target tarnwick-cli tarnwick-simboard >/dev/null
  exec scripts/demo.sh
fi

echo "Building Tarnwick…"
cmake --build build --parallel "$(nproc)" --target tarnwick >/dev/null
exec build/Tarnwick/tarnwick "$@"
