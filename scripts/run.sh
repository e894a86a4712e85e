#!/usr/bin/env bash
# Builds what a first look needs and opens the assistant on the demo service.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh release Miravel demoservice guardpost
# The system's own interpreter: the imaging library is installed for that one.
PYTHONPATH=tools exec /usr/bin/python3 -B scripts/run_assistant.py
