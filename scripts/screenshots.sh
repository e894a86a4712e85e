#!/usr/bin/env bash
# Saves every state of every window at 100 and 200 %, here and, where the tool chain is ready, under
# Wine, and makes one page of them for looking at: build/screenshots/index.html.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh release windowshots conversationshots
systems=(linux)
if scripts/windows/sdk.sh --ready; then
    scripts/windows/build.sh windowshots conversationshots
    scripts/windows/wine_prefix.sh
    systems+=(wine)
else
    echo "screenshots: no ready Windows tool chain, so the pictures under Wine are left out"
fi
# The system's own interpreter: the imaging library is installed for that one.
PYTHONPATH=tools exec /usr/bin/python3 -B scripts/make_screenshots.py "${systems[@]}"
