#!/usr/bin/env bash
# Installs the Debian 12 packages Brenlow builds, tests and runs with. Run as root.
set -euo pipefail
packages=(
  build-essential cmake pkg-config g++
  libsqlite3-dev libmariadb-dev mariadb-server
  qt6-base-dev libgl1-mesa-dev
  googletest libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev
  poppler-utils dpkg-dev
  libcairo2-dev libfontconfig-dev fonts-dejavu-core
  libxlsxwriter-dev libfreexl-dev libminizip-dev libexpat1-dev
  python3-xlrd python3-openpyxl python3-xlwt
  clang libclang-rt-14-dev clang-format
)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  if [ "$(id -u)" -ne 0 ]; then
    echo "Missing packages: ${missing[*]} (run as root to install them)" >&2
    exit 1
  fi
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
