#!/usr/bin/env bash
# A whole flashing run without a board: tarnwick-cli flashes a demo PlatformIO build into a
# simulated ESP32 whose serial line runs at real speed. Expects a finished build (scripts/build.sh).
set -euo pipefail
cd "$(dirname "$0")/.."

work=$(mktemp -d)
sim=
cleanup() {
  [ -n "$sim" ] && kill "$sim" 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT

simboard=build/Simulator/tarnwick-simboard
[ -x "$simboard" ] || simboard=build/tests/support/tarnwick-simboard
"$simboard" esp32 --pace --demo-folder "$work/project" >"$work/port" &
sim=$!
for _ in $(seq 50); do
  [ -s "$work/port" ] && break
  sleep 0.1
done
port=$(head -n 1 "$work/port")

echo "Simulated ESP32 on $port; demo build in $work/project"
echo
build/TarnwickCLI/tarnwick-cli flash --test-device --port "$port" --target esp:auto "$work/project"
