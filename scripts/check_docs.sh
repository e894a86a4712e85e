#!/usr/bin/env bash
# Checks the documents: their links and paths, and every command in them, which is run.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh release Miravel demoservice guardpost conformance tst_apppaths translations
for test in tests/docs/test_*.py; do
    python3 -B "$test"
done
# The system's own interpreter: the imaging library is installed for that one.
PYTHONPATH=tools exec /usr/bin/python3 -B scripts/check_docs.py
