#!/usr/bin/env bash
# Cross-builds the folder for a Windows machine, build/windows/bin, and checks it.
# build.sh [TARGET...]: builds these too; "all" has the test programs.
set -euo pipefail
cd "$(dirname "$0")/../.."

scripts/windows/setup.sh
scripts/windows/sdk.sh
# A configured tree reconfigures itself when a build file changes, but keeps the flags that it began
# with.
if [[ ! -f build/windows/build.ninja || cmake/windows-mingw.cmake -nt build/windows/CMakeCache.txt ]]; then
    cmake --fresh --preset windows
fi
cmake --build --preset windows -j"$(nproc)" --target Miravel doctor "$@"
scripts/windows/folder.py complete build/windows/bin
