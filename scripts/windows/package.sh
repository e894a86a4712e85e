#!/usr/bin/env bash
# Builds for Windows and makes every file of the release in build/dist: installation package, portable
# zip, symbols, list of parts, sums. Two builds of one commit give the same bytes.
# MIRAVEL_SIGN_COMMAND names a command that signs the file given to it; see docs/deployment.md.
set -euo pipefail
cd "$(dirname "$0")/../.."

scripts/windows/setup.sh --package
scripts/windows/build.sh miravelsetup translations
/usr/bin/python3 -B packaging/windows/package build/windows build/dist
echo "in build/dist"
