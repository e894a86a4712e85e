#!/usr/bin/env bash
# Builds one preset and runs its tests: test.sh PRESET [CTEST-ARGUMENT...], or, when only some of the
# targets are to be built, test.sh --only PRESET TARGET... -- [CTEST-ARGUMENT...].
# A test that is disabled or did not run counts as a failure; skipped parts are listed with reasons.
set -euo pipefail
cd "$(dirname "$0")/.."

targets=()
if [[ $1 == --only ]]; then
    preset=$2
    shift 2
    while [[ $1 != -- ]]; do
        targets+=("$1")
        shift
    done
else
    preset=$1
fi
shift
scripts/build.sh "$preset" "${targets[@]}"

run=()
# The thread sanitizer of this compiler cannot live with a fully randomised address space.
if [[ $preset == tsan ]] && setarch "$(uname -m)" -R true 2>/dev/null; then
    run=(setarch "$(uname -m)" -R)
fi

results=$PWD/build/$preset/test-results.xml
rm -f "$results"
failed=0
"${run[@]}" ctest --preset "$preset" -j"${MIRAVEL_TEST_JOBS:-$(nproc)}" --no-tests=error \
    --output-junit "$results" --test-output-size-passed 1048576 "$@" || failed=1
/usr/bin/python3 scripts/check_results.py "$results" || failed=1
exit "$failed"
