#!/usr/bin/env bash
# Configures and builds one preset: build.sh PRESET [TARGET...]; all targets when none is named.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
scripts/setup.sh
# A configured tree reconfigures itself when a build file changes.
if [[ ! -f build/$preset/build.ninja ]]; then
    cmake --preset "$preset"
fi
cmake --build --preset "$preset" -j"$(nproc)" ${1+--target "$@"}
