#!/usr/bin/env bash
# A whole flashing run without a board: tarnwick-cli flashes a demo PlatformIO build into a
# simulated ESP32 whose serial line runs at real speed. Expects a finished build (scripts/build.sh).
set -euo pipefail
cd "$(dirname "$0")/.."

source scripts/simboard.sh
start_simboard esp32 --pace

echo "Simulated ESP32 on $port; demo build in $work/project"
echo
build/TarnwickCLI/tarnwick-cli flash --test-device --port "$port" --target esp:auto "$work/project"
