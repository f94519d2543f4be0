#!/usr/bin/env bash
# Runs a test beside an Avahi daemon of its own: in new mount, network and PID namespaces, with
# a private /run (so a system D-Bus and the daemon's socket of their own), a pair of virtual
# Ethernet interfaces to announce on, and nothing of the machine's own bus, daemon or network
# touched. Everything started here goes when the namespace's first process ends.
# Usage: mdns-session.sh COMMAND [ARGUMENTS…]; exits 77 (skipped) where namespaces cannot be made.
# COMMAND finds the daemon's process id in TARNWICK_AVAHI_PID, for stopping it.
set -euo pipefail

if [ "${TARNWICK_MDNS_INSIDE:-}" != 1 ]; then
  for tool in unshare dbus-daemon avahi-daemon ip; do
    if ! command -v "$tool" >/dev/null && [ ! -x "/usr/sbin/$tool" ]; then
      echo "SKIP: $tool is not installed (scripts/setup.sh installs it)" >&2
      exit 77
    fi
  done
  if ! unshare --mount --net --pid --fork --mount-proc --propagation private true 2>/dev/null; then
    echo "SKIP: this environment does not allow new mount, network and PID namespaces" >&2
    exit 77
  fi
  export TARNWICK_MDNS_INSIDE=1
  # A /proc of its own too: sanitizers read their threads from it by process id.
  exec unshare --mount --net --pid --fork --kill-child --mount-proc --propagation private "$0" "$@"
fi

export PATH="$PATH:/usr/sbin:/sbin"
# What the machine may not offer (a kernel without virtual Ethernet, a container that forbids
# mounts) skips the test: it says nothing of Tarnwick.
skip() {
  echo "SKIP: $1" >&2
  exit 77
}
mount -t tmpfs -o mode=0755 tarnwick-run /run || skip "no private /run can be mounted here"
ip link set lo up || skip "the loopback interface cannot be brought up here"
ip link add tw0 type veth peer name tw1 2>/dev/null || skip "this kernel offers no virtual Ethernet"
ip addr add 10.217.0.1/24 dev tw0
ip link set tw0 up
ip link set tw1 up

mkdir -p /run/dbus
dbus-daemon --system --nofork --nopidfile 2>/dev/null &
# The daemons announce nothing when ready; their sockets appearing is looked for instead.
wait_for() {
  for _ in $(seq 1 500); do
    [ -S "$1" ] && return 0
    sleep 0.01
  done
  skip "$2 did not start"
}
wait_for /run/dbus/system_bus_socket "the private system bus"
# Root keeps its rights: the daemon's own user and chroot are of no use in a throwaway namespace.
avahi-daemon --no-drop-root --no-chroot --no-rlimits --no-proc-title 2>/dev/null &
export TARNWICK_AVAHI_PID=$!
wait_for /run/avahi-daemon/socket "avahi-daemon"
"$@"
