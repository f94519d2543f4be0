#!/usr/bin/env bash
# Installs every Debian 12 package that building, testing and running Tarnwick needs.
# Safe to run again: packages already present are left alone.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  zlib1g-dev libssl-dev nlohmann-json3-dev uuid-dev libudev-dev
  libgtest-dev libgmock-dev
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -gt 0 ]; then
  sudo_cmd=()
  [ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
  export DEBIAN_FRONTEND=noninteractive
  "${sudo_cmd[@]}" apt-get update -qq
  "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
