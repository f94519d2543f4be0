#!/usr/bin/env bash
# Takes the help's pictures: the window driven through its main states against a simulated
# ESP32, under a virtual display.
# Usage: scripts/screenshots.sh                   every language, into Assets/screenshots/LANGUAGE
#        scripts/screenshots.sh [--dark] FOLDER    the language of LANGUAGE (or LANG) into FOLDER,
#                                                  with --dark under the dark palette
# QT_SCALE_FACTOR is passed on, so the same script shows other scales. Expects a finished build
# (scripts/build.sh).
set -euo pipefail
cd "$(dirname "$0")/.."

options=()
if [ "${1:-}" = "--dark" ]; then
  options=(--dark)
  shift
fi

# One tour against a board of its own, which goes when the tour has ended.
tour() {
  (
    source scripts/simboard.sh
    start_simboard esp32 --pace
    xvfb-run -a -s "-screen 0 1400x900x24" \
      build/Tarnwick/tarnwick --screenshots "$1" "${options[@]}" --test-device "$port" \
      "$work/project"
  )
}

if [ $# -gt 0 ]; then
  tour "$1"
else
  for language in en nl de fr es; do
    LANGUAGE=$language tour "Assets/screenshots/$language"
  done
fi
