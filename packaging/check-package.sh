#!/usr/bin/env bash
# Checks a built tarnwick .deb from the outside, as a user's machine meets it: its contents, the
# desktop files with their validators, the udev rules, lintian, then a real installation with the
# installed programs started, and a purge that must leave nothing behind.
# Usage: packaging/check-package.sh build/tarnwick_VERSION_ARCH.deb   (as root)
set -euo pipefail
deb=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "package check: $*" >&2; exit 1; }

dpkg-deb -x "$deb" "$work/root"
dpkg-deb -c "$deb" | awk '{print $6}' | sed 's|^\./|/|' > "$work/contents"
[ "$(dpkg-deb -f "$deb" Package)" = tarnwick ] || fail "the package is not called tarnwick"
for path in /usr/bin/tarnwick /usr/bin/tarnwick-cli /usr/bin/tarnwick-simboard \
  /usr/share/applications/tarnwick.desktop \
  /usr/share/mime/packages/tarnwick.xml \
  /usr/share/icons/hicolor/scalable/apps/tarnwick.svg \
  /usr/share/icons/hicolor/48x48/apps/tarnwick.png \
  /usr/share/icons/hicolor/256x256/apps/tarnwick.png \
  /usr/share/metainfo/org.tarnwick.Tarnwick.metainfo.xml \
  /usr/share/man/man1/tarnwick.1.gz /usr/share/man/man1/tarnwick-cli.1.gz \
  /usr/share/bash-completion/completions/tarnwick-cli \
  /usr/lib/udev/rules.d/60-tarnwick.rules \
  /usr/share/doc/tarnwick/copyright /usr/share/doc/tarnwick/changelog.gz; do
  grep -qx "$path" "$work/contents" || fail "$path is missing"
done
depends=$(dpkg-deb -f "$deb" Depends)
for lib in libqt6widgets6 libudev1 libzip4 libcanberra0 qt6-translations-l10n libgensio4; do
  grep -q "$lib" <<<"$depends" || fail "Depends lacks $lib (computed: $depends)"
done

desktop-file-validate "$work/root/usr/share/applications/tarnwick.desktop"
appstreamcli validate --no-net "$work/root/usr/share/metainfo/org.tarnwick.Tarnwick.metainfo.xml"
rules="$work/root/usr/lib/udev/rules.d/60-tarnwick.rules"
if command -v udevadm >/dev/null && udevadm verify --help >/dev/null 2>&1; then
  udevadm verify "$rules"
else
  # This udev has no verifier: every rule line must be comma-separated KEY op "value" pairs.
  pair='[A-Z_]+(\{[A-Za-z0-9_]+\})?[ ]*(==|!=|\+=|:=|=)[ ]*"[^"]*"'
  grep -vE '^[[:space:]]*(#|$)' "$rules" | grep -vE "^$pair(, $pair)*$" &&
    fail "malformed udev rule above"
  for label in $(grep -oE 'GOTO="[a-z_]+"' "$rules" | sort -u | cut -d'"' -f2); do
    grep -q "LABEL=\"$label\"" "$rules" || fail "udev rules jump to a missing label $label"
  done
fi
lintian --fail-on error --suppress-tags-from-file /dev/null "$deb" | tee "$work/lintian" || fail "lintian found errors"

# Install on this machine (dependencies from the archive), start both programs, then purge.
[ "$(id -u)" -eq 0 ] || fail "installing needs root"
export DEBIAN_FRONTEND=noninteractive
apt-get install -y -qq "$deb" >/dev/null
[ "$(/usr/bin/tarnwick-cli --version)" = "tarnwick-cli $(dpkg-deb -f "$deb" Version)" ] ||
  fail "tarnwick-cli --version: $(/usr/bin/tarnwick-cli --version)"
[ "$(env -u DISPLAY -u WAYLAND_DISPLAY /usr/bin/tarnwick --version)" = "tarnwick $(dpkg-deb -f "$deb" Version)" ] ||
  fail "tarnwick --version: $(/usr/bin/tarnwick --version)"
apt-get purge -y -qq tarnwick >/dev/null
while read -r path; do
  [ -f "$path" ] && fail "$path is still there after removing the package"
done < "$work/contents"
echo "package check: $(basename "$deb") passes"
