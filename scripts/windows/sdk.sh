#!/usr/bin/env bash
# Makes build/windows-sdk point at the libraries of the Windows tool chain: a ready one where
# there is one, else one built here from source, which takes about 25 minutes, once.
#
# A ready one is a folder with windows-sdk.tar.xz in it, or with qt5/ and openssl/ themselves:
# $MIRAVEL_WINDOWS_SDK, or shared/windows-sdk beside the checkout.
#
# Usage: sdk.sh           makes the link
#        sdk.sh --ready   only tells, by its exit status, whether there is a ready one
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
# Outside of the checkout, so that a fresh clone builds at once.
cache=${XDG_CACHE_HOME:-$HOME/.cache}/miravel
archive_name=windows-sdk.tar.xz
# The number counts up with each change of what is built, so that no older one is taken. 2: OpenSSL
# names only folders under Program Files and loads no modules.
built=$cache/windows-sdk-built-2

is_unpacked() {
    [[ -e $1/qt5/bin/moc && -e $1/openssl/bin/libssl-3-x64.dll ]]
}

# Where a ready one lies; nothing when there is none.
ready_place() {
    local place
    if [[ -n ${MIRAVEL_WINDOWS_SDK:-} ]]; then
        if ! is_unpacked "$MIRAVEL_WINDOWS_SDK" && [[ ! -e $MIRAVEL_WINDOWS_SDK/$archive_name ]]; then
            echo "windows-sdk: MIRAVEL_WINDOWS_SDK names no tool chain: $MIRAVEL_WINDOWS_SDK" >&2
            exit 1
        fi
        echo "$MIRAVEL_WINDOWS_SDK"
        return
    fi
    place=$project/../shared/windows-sdk
    if is_unpacked "$place" || [[ -e $place/$archive_name ]]; then
        realpath "$place"
    elif is_unpacked "$built"; then
        echo "$built"
    fi
}

# unpack <archive>: into a folder of the cache named after what is in it; prints the folder.
unpack() {
    local sum folder
    sum=$(sha256sum "$1" | cut -c1-16)
    folder=$cache/windows-sdk-$sum
    if ! is_unpacked "$folder"; then
        rm -rf "$folder" "$folder.new"
        mkdir -p "$folder.new"
        tar -xf "$1" -C "$folder.new"
        mv "$folder.new" "$folder"
    fi
    echo "$folder"
}

place=$(ready_place)
if [[ ${1:-} == --ready ]]; then
    [[ -n $place ]]
    exit
fi
if [[ -z $place ]]; then
    echo "windows-sdk: no ready tool chain; building one from Debian's sources."
    echo "windows-sdk: this takes about 25 minutes on 2 cores; the log is $built.log"
    mkdir -p "$cache"
    "$project/scripts/windows/build_sdk.sh" "$built"
    place=$built
elif ! is_unpacked "$place"; then
    place=$(unpack "$place/$archive_name")
fi
mkdir -p "$project/build"
if [[ $(readlink "$project/build/windows-sdk" || true) != "$place" ]]; then
    ln -sfn "$place" "$project/build/windows-sdk"
    echo "windows-sdk: using $place"
fi
