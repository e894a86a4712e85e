#!/usr/bin/env bash
# Installs what the Windows build and its tests need on Debian 12, and only what is missing.
# With --sdk also what building the tool chain's libraries from source needs, with --package what
# making the packages and testing them needs.
set -euo pipefail
here=$(dirname "$0")
source "$here/../packages.sh"

packages=(
    g++-mingw-w64-x86-64-posix # the compiler; std::thread and std::mutex need the posix flavour
    cmake
    ninja-build
    ccache
    python3  # checks the finished folder
    xz-utils # unpacks a ready tool chain
    wine     # runs the result
    wine64
    xvfb
    openbox  # Wine waits for a window manager
    xdotool
    locales  # the users' locale
)
if [[ ${1:-} == --sdk ]]; then
    packages+=(
        dpkg-dev        # unpacks Debian's source packages
        build-essential # the toolkit's own build tools run here
        perl            # OpenSSL's and the toolkit's build scripts
    )
fi
if [[ ${1:-} == --package ]]; then
    packages+=(
        qttools5-dev-tools # compiles the translations
        wixl           # makes the installation package
        msitools       # writes its tables
        faketime       # under a fixed clock
        python3-pefile # reads versions of programs
        osslsigncode   # signs, in a test
        openssl        # makes the certificate for that test
    )
fi
install_missing_packages "${packages[@]}"
