#!/usr/bin/env bash
# Runs every test on a build that counts and reports which of our own lines and branches were reached:
# coverage.sh [CTEST-ARGUMENT...]. The report is build/coverage/report/index.html; the last line is the
# summary. Fails when a test fails or fewer lines are reached than are kept.
set -euo pipefail
cd "$(dirname "$0")/.."

# Per cent of the lines of the program's own sources.
lines_kept=98

source scripts/packages.sh
scripts/setup.sh
install_missing_packages gcovr # reads what the compiler's counters have written

# What an earlier run has counted counts no more.
if [[ -d build/coverage ]]; then
    find build/coverage -name '*.gcda' -delete
fi
failed=0
scripts/test.sh coverage "$@" || failed=1

report=build/coverage/report
mkdir -p "$report"
gcovr --root . --object-directory build/coverage -j "$(nproc)" \
    --filter 'app/' --filter 'service/' --filter 'localchannel/' --filter 'locallibrary/' \
    --filter 'ui/' --exclude-throw-branches --exclude-unreachable-branches \
    --html-details "$report/index.html" --json-summary "$report/summary.json" build/coverage
/usr/bin/python3 -B scripts/coverage_summary.py "$report/summary.json" "$lines_kept" || failed=1
exit "$failed"
