#!/usr/bin/env bash
# Installs what building korvelctl needs on Debian 12, with --desktop what the desktop program needs too, with --tests
# what building and testing everything needs; does nothing when all of it is there.
set -euo pipefail

packages=(
  g++ cmake ninja-build pkg-config ccache
  libsqlite3-dev libsodium-dev nettle-dev unixodbc-dev tdsodbc libfmt-dev libcli11-dev libsimpleini-dev
)
if [[ ${1:-} == --desktop || ${1:-} == --tests ]]; then
  packages+=(qt6-base-dev qt6-svg-dev libqt6svg6 qt6-translations-l10n fonts-dejavu-core)
fi
if [[ ${1:-} == --tests ]]; then
  packages+=(libgtest-dev libgmock-dev libbenchmark-dev libxml2-dev libsqliteodbc clang-format-14 clang-tidy-14
    clang-16 libclang-rt-16-dev lld-16 xvfb xauth)
fi

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "A instalar: ${missing[*]}" >&2
run() { if [[ $(id -u) -eq 0 ]]; then "$@"; else sudo "$@"; fi; }
run apt-get update -qq
DEBIAN_FRONTEND=noninteractive run apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
