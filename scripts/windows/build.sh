#!/usr/bin/env bash
# Cross-builds the folder for a Windows machine, build/windows/bin, and checks it.
# build.sh [TARGET...]: builds these too; "all" has the test programs.
set -euo pipefail
cd "$(dirname "$0")/../.."

scripts/windows/setup.sh
scripts/windows/sdk.sh
# A configured tree reconfigures itself when a build file changes.
if [[ ! -f build/windows/build.ninja ]]; then
    cmake --preset windows
fi
cmake --build --preset windows -j"$(nproc)" --target Miravel "$@"
scripts/windows/folder.py complete build/windows/bin
