#!/usr/bin/env bash
# Builds for Windows and runs the tests under Wine: test.sh [--packages] [CTEST-ARGUMENT...]
# With --packages those of the packages alone, which otherwise are left out: they take long.
# MIRAVEL_TEST_REPEAT=until-fail:10 looks for tests that fail now and then.
# Ends with what passed, what was skipped inside the tests, and which tests do not run there.
set -euo pipefail
cd "$(dirname "$0")/../.."

which=(-LE package)
targets=(all)
if [[ ${1:-} == --packages ]]; then
    shift
    which=(-L package)
    # What these are about and what they plant; no test program is among them.
    targets=(miravelsetup translations crashing planted)
    scripts/windows/setup.sh --package
fi
scripts/windows/build.sh "${targets[@]}"
# This system's program, to compare with, the service that both talk to, and a look-up that hangs.
scripts/build.sh release Miravel demoservice standinlookup
scripts/windows/wine_prefix.sh
source scripts/windows/wine_environment.sh

# One display for everything, and one Wine server kept between the programs. Both end with this
# script; only the project's own prefix is touched.
display=""
manager=""
compositor=""
ready=$(mktemp)
end() {
    local process
    for process in $manager $compositor $display; do
        kill "$process" 2>/dev/null || true
    done
    env "${wine_environment[@]}" wineserver --kill 2>/dev/null || true
    rm -f "$ready"
}
trap end EXIT

# start_display <number>: false when another server has it. The server could choose a number itself,
# but would then take over one that is in use; one that it is given it locks, or ends at once.
start_display() {
    : >"$ready"
    Xvfb ":$1" -displayfd 3 -noreset -screen 0 1280x1024x24 -nolisten tcp 3>"$ready" 2>/dev/null &
    display=$!
    until [[ -s $ready ]]; do
        kill -0 "$display" 2>/dev/null || return 1
        sleep 0.1
    done
    export DISPLAY=:$1
}
for _ in {1..20}; do
    if start_display "$((100 + RANDOM % 9000))"; then
        break
    fi
done
: "${DISPLAY:?no virtual display could be started}"
# Without a window manager Wine waits seconds for each window, and gives some no keyboard.
openbox --sm-disable >/dev/null 2>&1 &
manager=$!
xcompmgr >/dev/null 2>&1 &
compositor=$!
for _ in {1..100}; do
    if xdotool get_num_desktops >/dev/null 2>&1; then
        break
    fi
    sleep 0.1
done
# A server that is just ending is waited for.
env "${wine_environment[@]}" timeout 30 wineserver --wait || true
env "${wine_environment[@]}" wineserver --persistent || true

results=$PWD/build/windows/test-results.xml
rm -f "$results"
failed=0
# One more try, which the output shows, for what Wine loses now and then, such as the end of a
# connection.
ctest --preset windows --repeat "${MIRAVEL_TEST_REPEAT:-until-pass:2}" \
    -j"${MIRAVEL_TEST_JOBS:-$(nproc)}" --no-tests=error --output-junit "$results" \
    --test-output-size-passed 1048576 "${which[@]}" "$@" || failed=1
/usr/bin/python3 scripts/check_results.py "$results" || failed=1
echo "tests that do not run on Windows:"
cat build/windows/not-on-windows.txt
if [[ ${which[0]} == -LE ]]; then
    echo "the packages have tests of their own: make test-packages"
fi
exit "$failed"
