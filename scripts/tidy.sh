#!/usr/bin/env bash
# clang-tidy over our own sources, over those named, or over those of the program and its tools:
# tidy.sh [FILE...|--rooms].
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
if [[ $# -eq 0 || $1 == --rooms ]]; then
    places=('*.cpp')
    [[ $# -eq 0 ]] || places=(app/'*.cpp' service/'*.cpp' localchannel/'*.cpp' locallibrary/'*.cpp'
                              ui/'*.cpp' tools/'*.cpp')
    mapfile -t files < <(built "${places[@]}")
    set -- "${files[@]}"
fi
# How many warnings it has found in the headers of others it says of every file.
printf '%s\0' "$@" | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/release --quiet 2>&1 \
    | { grep -vE '^[0-9]+ warnings? generated\.$' || true; }
