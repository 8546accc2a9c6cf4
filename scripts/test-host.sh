#!/usr/bin/env bash
# Tests the library as a host sees it: installs the static build given as $1 (default build/) and
# a fresh shared build, then for each builds examples/host with CMake (the compiler's default
# language standard) and with pkg-config, runs it and checks its PNG and SVG. Also checks that the
# shared library exports only the public API and that an optional find_package of a missing or
# unusable package reports not-found and configures on.
set -euo pipefail
cd "$(dirname "$0")/.."
static_build=${1:-build}
work=$PWD/build-host
jobs=2
rm -rf "$work"
mkdir -p "$work"
passed=0
failed=0
check() {  # check NAME COMMAND...: runs the command, counts and reports the result
    local name=$1
    shift
    if "$@" >"$work/$name.log" 2>&1; then
        passed=$((passed + 1))
        echo "host: $name ok"
    else
        failed=$((failed + 1))
        echo "host: $name FAILED"
        sed 's/^/    /' "$work/$name.log" | tail -n 30
    fi
}

echo "== host example: install the static build and a shared build"
cmake --install "$static_build" --prefix "$work/static" >/dev/null
# -O2 as in the main build: at -O3 GCC 12 warns falsely (-Wrestrict) about string concatenation.
cmake -S . -B "$work/shared-build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" \
    -DBUILD_SHARED_LIBS=ON \
    -DVLX_BUILD_TESTS=OFF -DVLX_BUILD_BENCHMARKS=OFF -DVLX_BUILD_APPS=OFF >/dev/null
cmake --build "$work/shared-build" -j"$jobs" >/dev/null
cmake --install "$work/shared-build" --prefix "$work/shared" >/dev/null

run_example() {  # run_example BINARY OUTDIR: runs the example and checks what it wrote
    local binary=$1 out=$2
    mkdir -p "$out"
    "$binary" "$out"
    [[ "$(head -c 8 "$out/ramp.png" | od -An -tx1 | tr -d ' \n')" == 89504e470d0a1a0a ]]
    grep -q '<svg' "$out/ramp.svg"
}

cmake_example() {  # cmake_example KIND
    local kind=$1 prefix=$work/$1
    cmake -S examples/host -B "$work/host-$kind" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release
    cmake --build "$work/host-$kind"
    # No -std was chosen by the host: the package's compile feature must have asked for C++20.
    grep -q -- '-std=gnu++20\|-std=c++20' "$work/host-$kind/CMakeFiles/vlx-host.dir/flags.make"
    run_example "$work/host-$kind/vlx-host" "$work/out-cmake-$kind"
}

pkgconfig_example() {  # pkgconfig_example KIND
    local kind=$1 prefix=$work/$1 static_flag=""
    [[ $kind == static ]] && static_flag=--static
    local pcdir
    pcdir=$(dirname "$(find "$prefix" -name VelmarCoreUI.pc | head -n 1)")
    # shellcheck disable=SC2046
    c++ -o "$work/pc-host-$kind" examples/host/main.cpp \
        $(PKG_CONFIG_PATH=$pcdir pkg-config $static_flag --cflags --libs VelmarCoreUI)
    LD_LIBRARY_PATH=$(dirname "$pcdir") run_example "$work/pc-host-$kind" "$work/out-pc-$kind"
}

exported_symbols_are_public() {
    local library
    library=$(find "$work/shared" -name 'libVelmarCoreUI.so.*.*' | head -n 1)
    nm -D --defined-only -C "$library" | cut -c20- >"$work/exports.txt"
    echo "exported symbols: $(wc -l <"$work/exports.txt")"
    # Members of exported classes may mention internal types in their signatures; what must not
    # be exported is anything that lives in vlx::detail or the JSON library.
    ! grep -E '^((typeinfo|typeinfo name|vtable|guard variable) for )?(vlx::detail|nlohmann)::' \
        "$work/exports.txt"
}

optional_package() {  # optional_package NAME EXPECTED [cmake args...]
    local name=$1 expected=$2
    shift 2
    rm -rf "$work/optional-$name"
    cmake -S examples/optional-package -B "$work/optional-$name" "$@" | tee "$work/optional-$name.out"
    grep -q "optional-package: VelmarCoreUI $expected" "$work/optional-$name.out"
    ! grep -q 'leaked' "$work/optional-$name.out"
}

check cmake-static cmake_example static
check cmake-shared cmake_example shared
check pkgconfig-static pkgconfig_example static
check pkgconfig-shared pkgconfig_example shared
check exports exported_symbols_are_public
check optional-missing optional_package missing "not found"
check optional-found optional_package found "found" -DCMAKE_PREFIX_PATH="$work/static"
# A static package whose dependencies cannot be found: not found, and the configure goes on.
check optional-no-dependencies env PKG_CONFIG_LIBDIR=/nonexistent \
    bash -c "$(declare -f optional_package); work=$work; optional_package no-dependencies 'not found' -DCMAKE_PREFIX_PATH=$work/static"

echo "host: $passed passed, $failed failed"
((failed == 0))
