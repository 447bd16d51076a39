#!/usr/bin/env bash
# Installs every build and test dependency from Debian packages. Safe to run again:
# it only calls apt-get when a package is missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  nlohmann-json3-dev libcurl4-openssl-dev libzip-dev zlib1g-dev libcli11-dev libcpp-httplib-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-14-dev
  g++-mingw-w64-x86-64-posix
  zip unzip curl ca-certificates python3
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

if [ "$(id -u)" -ne 0 ]; then
  echo "setup: missing packages: ${missing[*]}" >&2
  echo "setup: run as root (or install them with apt-get) and try again" >&2
  exit 1
fi

echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}"
