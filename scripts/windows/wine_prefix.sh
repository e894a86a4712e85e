#!/usr/bin/env bash
# Makes the project's own Wine prefix, build/wine-prefix, when there is none yet: 64 bit, and with
# a host font in place of the one that the program asks for.
set -euo pipefail
source "$(dirname "$0")/wine_environment.sh"

stand_in="Noto Sans CJK SC"
if [[ -e $wine_prefix/complete ]]; then
    exit 0
fi
rm -rf "$wine_prefix" "$wine_locales"
mkdir -p "$wine_locales"
echo "wine: making $wine_prefix"
localedef -i zh_CN -f UTF-8 "$wine_locales/zh_CN.UTF-8"
run() {
    env -u DISPLAY "${wine_environment[@]}" "$@" </dev/null
}
run wineboot --init 2>/dev/null
for name in "Microsoft YaHei" "Microsoft YaHei UI"; do
    run wine reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "$name" /t REG_SZ /d "$stand_in" /f \
        >/dev/null
done
# Smooth characters, grey ones, as the screen shows them here.
run wine reg add 'HKCU\Control Panel\Desktop' /v FontSmoothing /t REG_SZ /d 2 /f >/dev/null
run wine reg add 'HKCU\Control Panel\Desktop' /v FontSmoothingType /t REG_DWORD /d 1 /f >/dev/null
run wineserver --wait
touch "$wine_prefix/complete"
