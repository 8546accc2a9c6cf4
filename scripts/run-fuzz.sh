#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ (clang, ASan + UBSan, in build-fuzz/) and runs them.
#
#   scripts/run-fuzz.sh [seconds] [target…]   each target (default: all) for `seconds` (60)
#   scripts/run-fuzz.sh --ci                  the bounded pass of the test command: every target
#                                             over its seed corpus plus 20 000 fresh inputs (the
#                                             drawing target 2 000, touch 3 000), one line per
#                                             target
#
# Seeds come from fuzz/corpus/<target>/ (never written to); what a run learns goes to
# build-fuzz/corpus/<target>/ (the --ci pass starts from an empty build-fuzz/ci-corpus/ each
# time), findings to build-fuzz/findings/<target>/. Fails when any target
# fails.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

ci=0
seconds=60
if [[ ${1:-} == --ci ]]; then
    ci=1
    shift
elif [[ ${1:-} =~ ^[0-9]+$ ]]; then
    seconds=$1
    shift
fi

all_targets=()
for dir in fuzz/*/; do
    name=$(basename "$dir")
    [[ $name == corpus ]] && continue
    compgen -G "$dir*.cpp" >/dev/null && all_targets+=("$name")
done
targets=("$@")
if ((${#targets[@]} == 0)); then
    targets=("${all_targets[@]}")
fi

./scripts/setup.sh --fuzz
build=$root/build-fuzz
cmake -S fuzz -B "$build" -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
build_targets=()
for target in "${targets[@]}"; do
    build_targets+=(--target "vlx-fuzz-$target")
done
cmake --build "$build" -j2 "${build_targets[@]}" >"$build/build.log" 2>&1 || {
    tail -n 40 "$build/build.log"
    exit 1
}

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
export LSAN_OPTIONS=suppressions=$root/tests/lsan.supp
export TZ=UTC

failed=0
passed_count=0
failed_count=0
for target in "${targets[@]}"; do
    binary=$build/vlx-fuzz-$target
    if [[ ! -x $binary ]]; then
        echo "fuzz: $target: no such target (have: ${all_targets[*]})"
        failed=1
        failed_count=$((failed_count + 1))
        continue
    fi
    corpus=$build/corpus/$target
    findings=$build/findings/$target
    mkdir -p "$corpus" "$findings"
    options=(-timeout=10 -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$findings/")
    [[ -f fuzz/$target.dict ]] && options+=(-dict="fuzz/$target.dict")
    # fuzz/<target>.options adds libFuzzer flags. The date target turns off the per-input leak
    # check: ICU keeps every locale and zone it loads, so each new name looks like a leak and
    # makes libFuzzer scan a 400 MB heap (7× slower); the test suite's leak checking covers dates.
    if [[ -f fuzz/$target.options ]]; then
        read -r -a extra <"fuzz/$target.options"
        options+=("${extra[@]}")
    fi
    seeds=fuzz/corpus/$target
    log=$build/$target.log
    ((ci)) && log=$build/ci-$target.log
    start=$SECONDS
    if ((ci)); then
        count=$(find "$seeds" -type f | wc -l)
        # A fresh working corpus of its own each time, so the pass is the same on every run
        # and what longer runs learned stays.
        corpus=$build/ci-corpus/$target
        rm -rf "$corpus" && mkdir -p "$corpus"
        # The drawing target draws every input into a bitmap and an SVG document, and the touch
        # target runs a window's recognisers and run loop through a few hundred events: each
        # input costs what hundreds of parser inputs do, so they run fewer to stay within a
        # minute.
        fresh=20000
        [[ $target == drawing ]] && fresh=2000
        [[ $target == touch ]] && fresh=3000
        options+=(-runs=$((count + fresh)) -seed=1)
    else
        options+=(-max_total_time="$seconds")
    fi
    if "$binary" "${options[@]}" "$corpus" "$seeds" >"$log" 2>&1; then
        status=ok
        passed_count=$((passed_count + 1))
    else
        status=FAILED
        failed=1
        failed_count=$((failed_count + 1))
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1 || true)
    coverage=$(grep -E '^#[0-9]+.*(DONE|pulse|NEW|REDUCE|INITED)' "$log" | tail -n 1 |
        sed -n 's/.*\(cov: [0-9]* ft: [0-9]*\).*/\1/p' || true)
    echo "fuzz: $target $status (${runs:-?} runs, ${coverage:-no coverage line}, $((SECONDS - start)) s)"
    if [[ $status != ok ]]; then
        grep -E 'ERROR|invariant failed|SUMMARY|Test unit written' "$log" | head -n 8 | sed 's/^/    /'
    fi
done
echo "fuzz: $passed_count passed, $failed_count failed"
exit $failed
