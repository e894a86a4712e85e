#!/usr/bin/env bash
# Builds and runs the benchmarks: bench.sh [NAME...]; all of them when none is named. The table is
# also written to build/bench/results.json.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh bench miravel_bench
# The fonts of the tests, so that texts are as wide, and as dear, on every machine.
exec env LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen \
    FONTCONFIG_FILE="$PWD/tools/desktop/fonts.conf" \
    build/bench/bin/miravel_bench build/bench/results.json "$@"
