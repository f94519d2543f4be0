#!/usr/bin/env bash
# Sets up the machine, builds Tarnwick and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
scripts/build.sh

if [ -x build/TarnwickCLI/tarnwick-cli ] && [ -x build/Simulator/tarnwick-simboard ]; then
  exec scripts/demo.sh
fi
echo "Tarnwick is built, but the demo programs are missing; run scripts/test.sh for the tests."
