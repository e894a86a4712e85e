#!/usr/bin/env bash
# Builds the fuzzers and runs one after the other, each for FUZZ_SECONDS (60): fuzz.sh [TARGET...];
# all of them when none is named. What they learn is kept in FUZZ_CORPUS (build/fuzz/corpus); an
# input that fails is kept in build/fuzz/found and named. One line for each target at the end.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
seconds=${FUZZ_SECONDS:-60}
corpus=$(realpath -m "${FUZZ_CORPUS:-build/fuzz/corpus}")
found=$root/build/fuzz/found

source scripts/packages.sh
# The compiler, and its run-time libraries: the fuzzer's and the sanitizers'.
install_missing_packages clang libclang-rt-dev
scripts/build.sh fuzz fuzzers

if [[ $# -eq 0 ]]; then
    for source in fuzz/targets/*.cpp; do
        set -- "$@" "$(basename "$source" .cpp)"
    done
fi

scratch=$root/build/fuzz/scratch
rm -rf "$scratch"
mkdir -p "$scratch"
failed=0
table=()
for target; do
    mkdir -p "$corpus/$target" "$found/$target"
    log=$root/build/fuzz/$target.log
    options=(-max_total_time="$seconds" -max_len=4096 -timeout=60 -rss_limit_mb=2560
             -detect_leaks=0 -print_final_stats=1 -artifact_prefix="$found/$target/")
    if [[ -f fuzz/dictionaries/$target.dict ]]; then
        options+=(-dict="$root/fuzz/dictionaries/$target.dict")
    fi
    echo "== $target for $seconds s"
    result=nothing
    # Leaks are looked for where the inputs are replayed: Qt's caches look like leaks after each one.
    env LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen TMPDIR="$scratch" \
        FONTCONFIG_FILE="$root/tools/desktop/fonts.conf" \
        UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ASAN_OPTIONS=detect_leaks=0 \
        nice -n 15 "$root/build/fuzz/bin/${target}_fuzzer" "${options[@]}" \
        "$corpus/$target" "$root/fuzz/seeds/$target" >"$log" 2>&1 || {
        failed=1
        result="an input that fails, see $log"
        grep -aE 'This does not hold|ERROR:|runtime error|SUMMARY|Test unit written' "$log" || true
    }
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    speed=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")
    table+=("$(printf '%-12s %12s runs %8s a second   found: %s' \
        "$target" "${runs:-?}" "${speed:-?}" "$result")")
done
rm -rf "$scratch"
printf '%s\n' "" "${table[@]}"
exit "$failed"
