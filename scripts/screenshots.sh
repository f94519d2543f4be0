#!/usr/bin/env bash
# Takes the help's pictures: the window driven through its main states against a simulated
# ESP32, under a virtual display.
# Usage: scripts/screenshots.sh                   every language, into Assets/screenshots/LANGUAGE,
#                                                  and the window at twice the scale with a font
#                                                  half as large again (English and German, the
#                                                  longest texts) into Assets/screenshots/large
#        scripts/screenshots.sh [--dark] [--large] FOLDER
#                                                  the language of LANGUAGE (or LANG) into FOLDER,
#                                                  with --dark under the dark palette, with --large
#                                                  at twice the scale and a 150 % font
# QT_SCALE_FACTOR and QT_FONT_DPI are passed on, so the same script shows other scales. Expects a
# finished build (scripts/build.sh).
set -euo pipefail
cd "$(dirname "$0")/.."

options=()
large=""
while [ $# -gt 0 ]; do
  case "$1" in
  --dark) options+=(--dark) ;;
  --large) large=1 ;;
  *) break ;;
  esac
  shift
done
if [ -n "$large" ]; then
  # As on a screen scaled twice, with the desktop's font at 144 dpi instead of 96.
  export QT_SCALE_FACTOR=2 QT_FONT_DPI=144
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
  # The large pictures are for checking the look, not for the help: only the main window with a
  # product and the station are kept, out of the help's folders.
  scratch=$(mktemp -d)
  trap 'rm -rf "$scratch"' EXIT
  for language in en de; do
    LANGUAGE=$language QT_SCALE_FACTOR=2 QT_FONT_DPI=144 tour "$scratch/$language"
    mkdir -p "Assets/screenshots/large/$language"
    cp "$scratch/$language/window-product.png" "$scratch/$language/station-finished.png" \
      "Assets/screenshots/large/$language/"
  done
fi
