#!/usr/bin/env bash
# The tests under sanitizers: sanitize.sh runs every test under ASan and UBSan and the threaded ones
# under TSan; sanitize.sh --short only the end-to-end tests and the replayed inputs of the fuzzers
# under ASan and UBSan, and the threaded ones under TSan, and builds only what those need.
set -euo pipefail
cd "$(dirname "$0")/.."

if [[ ${1:-} != --short ]]; then
    scripts/test.sh asan
    scripts/test.sh tsan
    exit
fi

scripts/setup.sh
# names <preset> [CTEST-ARGUMENT...]: the tests of a preset.
names() {
    ctest --preset "$1" --show-only "${@:2}" 2>/dev/null | sed -n 's/^ *Test *#[0-9]*: *//p'
}

# Every target that one of the end-to-end tests starts or reads, beside their own programs.
started=(Miravel conformance demoservice guardpost doctor korvpntool miravel_standins translations)
failed=0
for preset in tsan asan; do
    [[ -f build/$preset/build.ninja ]] || cmake --preset "$preset"
done
mapfile -t threaded < <(names tsan)
scripts/test.sh --only tsan "${threaded[@]}" -- || failed=1
mapfile -t programs < <(names asan -L 'e2e|replay' | grep -E '^(tst|replay)_')
scripts/test.sh --only asan "${started[@]}" "${programs[@]}" -- -L 'e2e|replay' || failed=1
exit "$failed"
