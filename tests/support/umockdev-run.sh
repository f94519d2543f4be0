#!/bin/sh
# Runs a test program under umockdev's preload, which fakes sysfs and uevents. Under the
# sanitizers the preload is loaded before the ASan runtime, which ASan must be told to accept,
# and GLib's type system keeps allocations until the process ends.
here=$(cd "$(dirname "$0")" && pwd)
export ASAN_OPTIONS="${ASAN_OPTIONS:+$ASAN_OPTIONS:}verify_asan_link_order=0"
export LSAN_OPTIONS="${LSAN_OPTIONS:+$LSAN_OPTIONS:}suppressions=$here/umockdev.supp"
exec umockdev-wrapper "$@"
