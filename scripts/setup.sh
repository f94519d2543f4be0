#!/usr/bin/env bash
# Installs every Debian 12 package that building, testing and running Tarnwick needs.
# Safe to run again: packages already present are left alone.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config ccache
  zlib1g-dev libdeflate-dev libzip-dev libssl-dev nlohmann-json3-dev uuid-dev
  libudev-dev libdbus-1-dev umockdev libumockdev-dev libcanberra-dev libgensio-dev ser2net
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev qt6-qpa-plugins qt6-translations-l10n
  libgtest-dev libgmock-dev
  clang libclang-rt-14-dev
  xvfb xauth fonts-dejavu-core shared-mime-info desktop-file-utils appstream
  dbus at-spi2-core python3-pyatspi avahi-daemon iproute2
  help2man lintian dpkg-dev fakeroot file librsvg2-bin
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
