#!/usr/bin/env bash
# clang-tidy over our own sources, over those named, over those of the program and its tools, or over
# all others: tidy.sh [FILE...|--rooms|--others].
set -euo pipefail
cd "$(dirname "$0")/.."

# The build comes first: sources include what it generates.
scripts/build.sh release

# built <pattern>...: those that this system builds; there is no command line for the others.
built() {
    git ls-files "$@" | while read -r file; do
        if grep -qF "/$file\"" build/release/compile_commands.json; then
            echo "$file"
        fi
    done
}
rooms=(app service localchannel locallibrary ui tools)
case ${1:-} in
    "") places=('*.cpp') ;;
    --rooms) places=("${rooms[@]/%//*.cpp}") ;;
    --others) places=('*.cpp' "${rooms[@]/#/:!}") ;;
    *) places=() ;;
esac
if [[ ${#places[@]} -gt 0 ]]; then
    mapfile -t files < <(built "${places[@]}")
    set -- "${files[@]}"
fi
# How many warnings it has found in the headers of others it says of every file.
printf '%s\0' "$@" | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/release --quiet 2>&1 \
    | { grep -vE '^[0-9]+ warnings? generated\.$' || true; }
