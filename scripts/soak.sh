#!/usr/bin/env bash
# Builds what a soak needs and runs it: soak.sh [--minutes N], 10 by default.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh release Miravel soakassistant demoservice
PYTHONPATH=tools:tests/support exec /usr/bin/python3 -B scripts/run_soak.py "$@"
