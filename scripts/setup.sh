#!/usr/bin/env bash
# Installs what the build, the tests and `make run` need on Debian 12, and only what is missing.
# Quick and silent when nothing is: the other commands start with it.
set -euo pipefail
source "$(dirname "$0")/packages.sh"

# One package a line, each with what needs it.
packages=(
    g++                  # the compiler
    cmake                # reads the build description
    ninja-build          # runs the build
    ccache               # makes a rebuild cheap
    qtbase5-dev          # the toolkit, with its readers for PNG, JPEG, GIF and ICO
    libqt5x11extras5-dev # tells whether the screen has a compositor
    qttools5-dev-tools   # collects the texts to translate and compiles translations
    libssl-dev           # the demo service's TLS and signatures; the toolkit loads its libraries too
    zlib1g-dev           # undoes the compression of replies
    libcpp-httplib-dev   # the demo service's HTTP
    nlohmann-json3-dev   # the demo service's JSON
    pkgconf              # tells the build where the HTTP library is
    fonts-noto-cjk       # stands in for the font that the program asks for
    python3              # drives the window in `make run` and in the end-to-end tests
    python3-pil          # reads what the screen shows and writes the pictures
    python3-jsonschema   # checks the schema of the demo service's knowledge
    xvfb                 # a screen for a machine that has none
    xcompmgr             # gives that screen translucent windows
    xdotool              # moves the mouse and presses the keys
    xclip                # carries Chinese text into the input box
    libfaketime          # puts the program's clock forward in the tour and the tests
    openbox              # minimises and restores windows in the tests of the start-up
    at-spi2-core         # the desktop's accessibility service, in a test of what a screen reader reads
    gir1.2-atspi-2.0     # what a screen reader reads through
    python3-gi           # brings that to the test
    dbus-daemon          # the session's bus of that test
    dbus-bin             # asks whether that service is ready
    openssl              # makes the certificate in a test of the demo service
    clang-format         # make format, make format-check
    clang-tidy           # make tidy
)

install_missing_packages "${packages[@]}"
