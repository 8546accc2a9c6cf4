#!/usr/bin/env bash
# Installs what is missing, builds vlx-gallery and writes the gallery into gallery-out/.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target vlx-gallery -j2
./build/apps/gallery/vlx-gallery --output "${1:-gallery-out}"
