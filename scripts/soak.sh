#!/usr/bin/env bash
# Builds what a soak needs and runs it: soak.sh [--preset release|asan|windows] [--minutes N], 10
# minutes of the release build by default. The Windows build runs under Wine. Figures: the folder
# build/soak, or build/soak-PRESET.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=release
if [[ ${1:-} == --preset ]]; then
    preset=$2
    shift 2
fi
case $preset in
release) ;;
asan)
    export ASAN_OPTIONS=detect_stack_use_after_return=1
    export LSAN_OPTIONS=suppressions=$PWD/tests/support/lsan.supp:print_suppressions=0
    export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
    ;;
windows)
    scripts/windows/build.sh soakassistant
    scripts/windows/wine_prefix.sh
    scripts/build.sh release demoservice
    ;;
*)
    echo "soak: unknown preset: $preset" >&2
    exit 2
    ;;
esac
if [[ $preset != windows ]]; then
    scripts/build.sh "$preset" Miravel soakassistant demoservice
fi
MIRAVEL_BUILD_DIR=build/$preset PYTHONPATH=tools:tests/support \
    exec /usr/bin/python3 -B scripts/run_soak.py "$@"
