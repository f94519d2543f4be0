#!/usr/bin/env bash
# Captures the window's main states against a simulated ESP32, under a virtual display.
# Usage: scripts/screenshots.sh [OUTPUT_FOLDER] (default Assets/screenshots). LANGUAGE, LANG and
# QT_SCALE_FACTOR are passed on, so the same script shows every language and scale.
# Expects a finished build (scripts/build.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
out=${1:-Assets/screenshots}

source scripts/simboard.sh
start_simboard esp32 --pace

xvfb-run -a -s "-screen 0 1400x900x24" \
  build/Tarnwick/tarnwick --screenshots "$out" --test-device "$port" "$work/project"
