#!/usr/bin/env bash
# Installs what is missing, then builds and runs every test twice: in a normal build and under
# AddressSanitizer + UndefinedBehaviorSanitizer; between the two it builds and runs the host
# example against the installed package; last, a bounded pass of the fuzz targets. Fails when any
# of them fails.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh

jobs=2
export CTEST_OUTPUT_ON_FAILURE=1

./scripts/check-layering.sh

echo "== normal build: library, tests, benchmarks, gallery"
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$jobs"
ctest --test-dir build -j"$jobs" --timeout 300

echo "== host example: installed package, static and shared, CMake and pkg-config"
./scripts/test-host.sh build

echo "== sanitizer build: AddressSanitizer + UndefinedBehaviorSanitizer"
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DVLX_SANITIZE=ON \
    -DVLX_BUILD_BENCHMARKS=OFF -DVLX_BUILD_APPS=OFF >/dev/null
cmake --build build-asan -j"$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    LSAN_OPTIONS=suppressions="$PWD/tests/lsan.supp" \
    ctest --test-dir build-asan -j"$jobs" --timeout 600

echo "== fuzzing: each target over its seeds plus 20 000 fresh inputs"
./scripts/run-fuzz.sh --ci
