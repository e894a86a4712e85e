#!/usr/bin/env bash
# Runs a program of the Windows build under Wine: wine_run.sh <program.exe> [argument...]
# Used by CTest for every test program.
set -euo pipefail
source "$(dirname "$0")/wine_environment.sh"

sdk=$project/build/windows-sdk
compiler_library() {
    dirname "$(realpath "$(x86_64-w64-mingw32-g++-posix "-print-file-name=$1")")"
}

# Test programs find their libraries as any program does, through the search path.
search=""
for folder in "$sdk/qt5/bin" "$sdk/openssl/bin" "$(compiler_library libstdc++-6.dll)" \
    /usr/x86_64-w64-mingw32/lib; do
    search+="Z:${folder//\//\\};"
done
wine_environment+=("WINEPATH=$search")

# Wine keeps the toolkit's variables to itself unless they come with this prefix.
wine_environment+=(WINEQT_FORCE_STDERR_LOGGING=1) # else test results go to a debugger
for name in $(compgen -e QT_ || true); do
    wine_environment+=("WINE$name=${!name}")
done

# The first program starts Wine's own services, which keep its output open after it has ended:
# whoever reads a pipe to its end would wait for them.
output=$(mktemp)
trap 'rm -f "$output"' EXIT
status=0
env "${wine_environment[@]}" wine "$@" >"$output" 2>&1 || status=$?
cat "$output"
exit "$status"
