#!/usr/bin/env bash
# Runs a command as on a desktop where a screen reader listens: a D-Bus session of its own, the
# AT-SPI accessibility bus and registry on it, a virtual X display, and Qt told to join the bus
# (QT_LINUX_ACCESSIBILITY_ALWAYS_ON: without a screen reader running Qt would stay off it). Home,
# settings and runtime folders are scratch ones, so a program started here meets no other
# instance and leaves nothing behind. Everything it starts ends with it.
# Exits 77 (a skipped test for CTest) only when the bus cannot be had at all.
# Usage: tests/support/accessibility-session.sh COMMAND [ARGUMENT]...
set -euo pipefail

launcher=/usr/libexec/at-spi-bus-launcher
skip() {
  echo "SKIPPED: no accessibility bus: $*" >&2
  exit 77
}

if [ -z "${TARNWICK_ACCESSIBILITY_SESSION:-}" ]; then
  for tool in dbus-run-session dbus-send Xvfb; do
    command -v "$tool" >/dev/null || skip "$tool is missing (scripts/setup.sh installs it)"
  done
  [ -x "$launcher" ] || skip "$launcher is missing (scripts/setup.sh installs at-spi2-core)"
  TARNWICK_ACCESSIBILITY_SESSION=1 exec dbus-run-session -- "$0" "$@"
fi

# Inside the session bus.
scratch=$(mktemp -d "${TMPDIR:-/tmp}/tarnwick-accessibility.XXXXXX")
started=()
finish() {
  for pid in "${started[@]}"; do
    kill "$pid" 2>/dev/null || true
  done
  for pid in "${started[@]}"; do
    wait "$pid" 2>/dev/null || true
  done
  rm -rf "$scratch"
}
trap finish EXIT
trap 'exit 143' TERM INT

export HOME="$scratch/home" XDG_CONFIG_HOME="$scratch/config" XDG_DATA_HOME="$scratch/data"
export XDG_CACHE_HOME="$scratch/cache" XDG_RUNTIME_DIR="$scratch/runtime"
mkdir -p "$HOME" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"

"$launcher" --launch-immediately >"$scratch/launcher.log" 2>&1 &
started+=($!)
# The launcher owns org.a11y.Bus once the accessibility bus is up; give it ten seconds. Asked
# without activating it, so the session bus does not start a second launcher meanwhile.
owned=""
for _ in $(seq 100); do
  owned=$(dbus-send --session --print-reply=literal --reply-timeout=1000 \
    --dest=org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus.NameHasOwner \
    string:org.a11y.Bus 2>/dev/null || true)
  [[ "$owned" == *true* ]] && break
  kill -0 "${started[0]}" 2>/dev/null || break
  sleep 0.1
done
[[ "$owned" == *true* ]] ||
  skip "at-spi-bus-launcher did not start: $(cat "$scratch/launcher.log")"

# The display number is the one Xvfb finds free, so sessions side by side never share one.
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$scratch/display" \
  2>"$scratch/xvfb.log" &
started+=($!)
for _ in $(seq 100); do
  [ -s "$scratch/display" ] && break
  kill -0 "${started[1]}" 2>/dev/null || break
  sleep 0.1
done
[ -s "$scratch/display" ] || skip "Xvfb did not start: $(cat "$scratch/xvfb.log")"
export DISPLAY=":$(tr -d '[:space:]' <"$scratch/display")"

export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
status=0
timeout --kill-after=10 "${TARNWICK_SESSION_SECONDS:-240}" "$@" || status=$?
exit "$status"
