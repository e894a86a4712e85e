#!/usr/bin/env bash
# Saves a picture of every state of the conversation to build/conversation/*.png, for looking at.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh release conversationshots
exec env LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen \
    FONTCONFIG_FILE="$PWD/tools/desktop/fonts.conf" \
    build/release/bin/conversationshots build/conversation
