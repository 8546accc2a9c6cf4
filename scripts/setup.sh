#!/usr/bin/env bash
# Installs the Debian packages the project builds with, only when some are missing, so that a
# second run costs a dpkg query and nothing else. `--fuzz` adds clang and its sanitizer and
# libFuzzer runtime, which only scripts/run-fuzz.sh needs.
set -euo pipefail

packages=(
    build-essential cmake pkg-config
    libcairo2-dev libpango1.0-dev fonts-inter fonts-dejavu-core
    libicu-dev nlohmann-json3-dev libcli11-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    libsdl2-dev
)
if [[ ${1:-} == --fuzz ]]; then
    packages+=(clang-14 libclang-rt-14-dev)
fi

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
    if [[ "$status" != "install ok installed" ]]; then
        missing+=("$package")
    fi
done

if ((${#missing[@]} == 0)); then
    exit 0
fi

echo "setup: installing ${missing[*]}"
sudo=""
if [[ $(id -u) -ne 0 ]]; then
    sudo="sudo"
fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
