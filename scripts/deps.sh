#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the GUI need.
# Runs apt-get only when something is missing, so repeated calls are quick.
set -euo pipefail
PKGS=(cmake ninja-build g++ pkg-config qt6-base-dev qt6-base-dev-tools libgl-dev
      libgtest-dev libgmock-dev libgif-dev libbenchmark-dev libfftw3-dev libsqlite3-dev libjpeg62-turbo-dev
      clang libclang-rt-dev xvfb xauth ccache clang-format
      librsvg2-bin dpkg-dev file desktop-file-utils appstream shared-mime-info libglib2.0-bin)
missing=()
for p in "${PKGS[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ "${#missing[@]}" -gt 0 ]; then
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  echo "Installing: ${missing[*]}"
  $SUDO apt-get update
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y "${missing[@]}"
fi
