#!/usr/bin/env bash
# Builds the libraries of the Windows tool chain from Debian's source packages: OpenSSL 3 and
# qtbase 5.15, cross-compiled with Debian's mingw-w64. About 25 minutes on 2 cores, 3 GB on disk
# while it runs.
#
# Usage: build_sdk.sh <folder>
#   <folder>      gets qt5/, openssl/ and symbols/ when everything is built; nothing is left there otherwise
#   <folder>.work is where it happens; what was finished there is not built again after a failure
#   <folder>.log  has the output of every step
# MIRAVEL_JOBS sets how many compilers run at a time.
set -euo pipefail

project=$(cd "$(dirname "$0")/../.." && pwd)
target=$(realpath -m "${1:?usage: build_sdk.sh <folder>}")
work=$target.work
log=$target.log
jobs=${MIRAVEL_JOBS:-$(nproc)}
triplet=x86_64-w64-mingw32
stage=$work/stage

say() {
    printf '%s windows-sdk: %s\n' "$(date +%H:%M:%S)" "$1" | tee -a "$log"
}

# step <name> <command>...: runs it once, its output in the log.
step() {
    local name=$1 started=$SECONDS
    shift
    if [[ -e $work/$name.done ]]; then
        say "$name: done before"
        return
    fi
    say "$name"
    # Not as a condition: bash would not stop at a failing command inside.
    local status
    set +e
    (set -e; "$@") >>"$log" 2>&1 </dev/null
    status=$?
    set -e
    if [[ $status -ne 0 ]]; then
        say "$name failed; the last lines of $log:"
        tail -n 25 "$log" >&2
        exit 1
    fi
    touch "$work/$name.done"
    say "$name: $((SECONDS - started)) s"
}

# Source packages are read through a list of our own, so that the system's lists stay as they are.
# It has the same hosts as the system's: each of its entries for this release, as a source entry.
source_list() {
    local codename
    codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
    mkdir -p "$work/apt/lists/partial" "$work/apt/parts"
    python3 "$project/scripts/windows/source_entries.py" "$codename" >"$work/apt/sources.list"
    "${apt[@]}" update
}

# Needs no root: downloads are only unpacked. _apt may not enter a private folder.
apt=(apt-get -q
     -o "Dir::Etc::SourceList=$work/apt/sources.list" -o "Dir::Etc::SourceParts=$work/apt/parts"
     -o "Dir::State::Lists=$work/apt/lists" -o "Dir::Cache::PkgCache=" -o "Dir::Cache::SrcPkgCache="
     -o "Debug::NoLocking=true" -o "APT::Sandbox::User=$(id -un)")

fetch_toolkit() {
    cd "$work"
    rm -rf qtbase
    "${apt[@]}" source --download-only qtbase-opensource-src
    dpkg-source --no-check -x qtbase-opensource-src_*.dsc qtbase
}

# Some mirrors cannot serve the names of Debian's own part, with their "~": then it is the
# release that Debian packages, without Debian's patches on top.
fetch_openssl() {
    cd "$work"
    rm -rf openssl openssl_*
    if "${apt[@]}" source --download-only openssl; then
        dpkg-source --no-check -x openssl_*.dsc openssl
    else
        echo "Debian's patches of OpenSSL cannot be had; building the unpatched release"
        mkdir openssl
        tar -xf openssl_*.orig.tar.gz -C openssl --strip-components=1
    fi
}

# The builds below call the compiler by its plain name, whichever flavour that means here.
compiler_names() {
    local tool
    mkdir -p "$work/bin"
    for tool in gcc g++; do
        printf '#!/bin/sh\nexec %s-%s-posix "$@"\n' "$triplet" "$tool" >"$work/bin/$triplet-$tool"
        chmod +x "$work/bin/$triplet-$tool"
    done
}

# The folders that are named here get built in. On a user's machine they must be none that everybody
# may write to: a configuration of OpenSSL's own can name libraries to load. There are no modules to be
# loaded either.
build_openssl() {
    cd "$work/openssl"
    ./Configure mingw64 --cross-compile-prefix="$triplet-" shared no-tests no-autoload-config \
        no-module --prefix="C:/Program Files/OpenSSL" --openssldir=ssl
    make -j"$jobs" build_libs
    mkdir -p "$stage/openssl/bin" "$stage/openssl/lib64" "$stage/openssl/include/openssl"
    cp lib{crypto,ssl}-3-x64.dll "$stage/openssl/bin/"
    cp lib{crypto,ssl}{.dll,}.a "$stage/openssl/lib64/"
    cp include/openssl/*.h "$stage/openssl/include/openssl/"
}

# Left out: what the program does not use (OpenGL, D-Bus, SQL, printing), and pen tablets, whose
# header Debian's source package does not carry.
configure_toolkit() {
    rm -rf "$work/qt-build"
    mkdir -p "$work/qt-build"
    cd "$work/qt-build"
    ../qtbase/configure -xplatform win32-g++ -device-option "CROSS_COMPILE=$triplet-" \
        -opensource -confirm-license -release -shared -prefix "$stage/qt5" \
        -nomake examples -nomake tests -no-pch \
        -no-opengl -no-feature-vulkan -no-feature-direct2d -no-dbus -no-icu \
        -no-feature-tabletevent -no-feature-printer \
        -no-feature-sql -no-sql-sqlite -no-sql-mysql -no-sql-psql -no-sql-odbc \
        -qt-zlib -qt-pcre -qt-libpng -qt-libjpeg -qt-freetype -qt-harfbuzz \
        -openssl-runtime -I "$stage/openssl/include"
}

build_toolkit() {
    cd "$work/qt-build"
    make -j"$jobs"
    make install
}

# The names of functions are kept, for crash dumps.
strip_libraries() {
    local library
    mkdir -p "$stage/symbols"
    while read -r library; do
        "$triplet-objcopy" --only-keep-debug "$library" "$stage/symbols/$(basename "$library").debug"
    done < <(find "$stage" -name '*.dll')
    find "$stage" -name '*.dll' -exec "$triplet-strip" --strip-unneeded {} +
}

check_result() {
    local file missing=0
    for file in openssl/bin/lib{ssl,crypto}-3-x64.dll openssl/include/openssl/ssl.h \
        qt5/bin/{moc,rcc,uic} qt5/bin/Qt5{Core,Gui,Network,Widgets,Test}.dll \
        qt5/plugins/platforms/q{windows,offscreen,minimal}.dll \
        qt5/plugins/imageformats/q{gif,ico,jpeg}.dll qt5/plugins/styles/qwindowsvistastyle.dll \
        qt5/lib/cmake/Qt5Widgets/Qt5WidgetsConfig.cmake; do
        if [[ ! -e $stage/$file ]]; then
            echo "missing: $file"
            missing=1
        fi
    done
    return $missing
}

mkdir -p "$work"
: >"$log"
say "building in $work, log in $log; expect about 25 minutes on 2 cores"
"$project/scripts/windows/setup.sh" --sdk
step compiler-names compiler_names
export PATH="$work/bin:$PATH"
step source-list source_list
step openssl-source fetch_openssl
step toolkit-source fetch_toolkit
step openssl-build build_openssl
step toolkit-configure configure_toolkit
step toolkit-build build_toolkit
step strip strip_libraries
step check check_result
step openssl-folders "$project/scripts/windows/folder.py" openssl "$stage/openssl/bin/libcrypto-3-x64.dll"
rm -rf "$target"
mv "$stage" "$target"
rm -rf "$work"
say "ready in $target after $((SECONDS / 60)) min $((SECONDS % 60)) s"
