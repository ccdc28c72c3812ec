#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, when any is missing.
set -euo pipefail

PACKAGES=(
  cmake g++ make ccache pkg-config
  qt6-base-dev qt6-qpa-plugins libqt6sql6-sqlite
  libsqlite3-dev
  libxlsxwriter-dev
  mdbtools-dev
  libgtest-dev
  libzip-dev
  libarchive-tools p7zip-full
  fonts-dejavu-core
)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if ((${#missing[@]})); then
  echo "bootstrap: installing ${missing[*]}"
  SUDO=""
  if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -q
  $SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
fi
