#!/usr/bin/env bash
# Puts our C++ sources into the project's style; with --check only says which are not in it.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
if [[ ${1:-} != --check ]]; then
    exec clang-format -i "${sources[@]}"
fi

failed=0
clang-format --dry-run --Werror "${sources[@]}" || failed=1
# What .editorconfig asks of every text file.
if git grep -nIE '[[:blank:]]$' -- ':!*.patch' ':!fuzz/seeds'; then
    echo "format-check: blanks at the end of these lines" >&2
    failed=1
fi
exit "$failed"
