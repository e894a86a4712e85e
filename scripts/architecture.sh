#!/usr/bin/env bash
# Draws docs/images/architecture.svg from docs/architecture.dot. An arrow that follows from others
# (a room that is used through another one as well) is left out of the picture.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_missing_packages graphviz
tred docs/architecture.dot | dot -Tsvg >docs/images/architecture.svg
