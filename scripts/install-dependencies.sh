#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what building, testing and running Corvane need, from Debian's packages, only when missing.
set -euo pipefail

packages=(
  cmake ninja-build g++ pkg-config git ca-certificates python3 jq
  qt6-base-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
  libgit2-dev libsimdjson-dev libbenchmark-dev
  clang libclang-rt-14-dev
  unicode-data ccache
  fonts-dejavu-core
  xvfb openbox xdotool x11-utils
  openssl libssl-dev
  openssh-server openssh-client
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done

if ((${#missing[@]})); then
  echo "Installing: ${missing[*]}" >&2
  if [ "$(id -u)" -ne 0 ]; then
    echo "These packages are missing and installing them needs root: ${missing[*]}" >&2
    exit 1
  fi
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
