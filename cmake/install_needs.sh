#!/usr/bin/env bash
# Installs the Debian packages that the build needs and this machine lacks.
# Usage: install_needs.sh run|test
set -euo pipefail
purpose=${1:-run}

is_debian_12() {
  command -v apt-get >/dev/null &&
    grep -qs '^ID="\?debian"\?$' /etc/os-release &&
    grep -qs '^VERSION_ID="\?12"\?$' /etc/os-release
}

as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "as root, please: $*" >&2
    exit 1
  fi
}

if ! is_debian_12; then
  cat >&2 <<TXT
This script installs packages on Debian 12 only. Elsewhere please install:
  a C++20 compiler, CMake 3.25 or later, Ninja,
  Qt 6.4 or later (Core, Gui, Widgets, Network, PrintSupport), GoogleTest, Google Benchmark,
  and, for the tests, ser2net, pyserial and the locale de_DE.UTF-8 (libasound2 for the tone is
  optional).
TXT
  command -v cmake >/dev/null && command -v ninja >/dev/null && exit 0
  exit 1
fi

packages=(g++ cmake ninja-build qt6-base-dev qt6-qpa-plugins libgl1-mesa-dev libegl1-mesa-dev
          libgtest-dev libbenchmark-dev libasound2-dev fonts-dejavu-core)
# A desktop of this kind alone offers no other way to show windows.
if [ -n "${WAYLAND_DISPLAY:-}" ]; then packages+=(qt6-wayland); fi
if [ "$purpose" = test ]; then packages+=(ser2net python3-serial locales); fi

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
    missing+=("$package")
done
if [ "${#missing[@]}" -gt 0 ]; then
  echo "installing: ${missing[*]}"
  as_root apt-get update -q
  as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q --no-install-recommends "${missing[@]}"
fi

# A locale with a decimal comma, under which the tests run once more.
if [ "$purpose" = test ] && ! locale -a | grep -qiE '^de_DE\.utf-?8$'; then
  as_root localedef -i de_DE -f UTF-8 de_DE.UTF-8
fi
