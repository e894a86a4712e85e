#!/usr/bin/env bash
# Tries random changes of our sources, 200 by default, and names those that no test notices:
# mutants.sh [--count N] [--seed N] [--near]. MUTANTS=n says how many, too.
set -euo pipefail
cd "$(dirname "$0")/.."

source scripts/packages.sh
scripts/setup.sh
install_missing_packages lld # each change is linked to many tests
# Others use the machine; this takes hours.
exec nice -n 19 /usr/bin/python3 -B scripts/mutants/run.py --count "${MUTANTS:-200}" "$@"
