# Sourced by the demo scripts: a simulated board in the background for as long as the script
# runs. `start_simboard BOARD [OPTION…]` starts tarnwick-simboard with a demo build for the board
# in "$work/project" and sets `port` to its pseudo-terminal; the board and the work folder go
# when the script ends. Expects a finished build (scripts/build.sh).

work=$(mktemp -d)
sim=
cleanup() {
  [ -n "$sim" ] && kill "$sim" 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT

start_simboard() {
  # The board prints its terminal once the demo build is written: that line is the signal.
  build/Simulator/tarnwick-simboard "$@" --demo-folder "$work/project" >"$work/port" &
  sim=$!
  for _ in $(seq 50); do
    [ -s "$work/port" ] && break
    sleep 0.1
  done
  port=$(head -n 1 "$work/port")
  if [ -z "$port" ]; then
    echo "The simulated board did not start." >&2
    exit 1
  fi
}
