#!/usr/bin/env bash
# clang-tidy over our own sources, or over those named: tidy.sh [FILE...].
set -euo pipefail
cd "$(dirname "$0")/.."

# The build comes first: sources include what it generates.
scripts/build.sh release
if [[ $# -eq 0 ]]; then
    mapfile -t files < <(git ls-files '*.cpp')
    set -- "${files[@]}"
fi
printf '%s\0' "$@" | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/release --quiet
