# Sourced: the environment in which Windows programs of ours run under Wine. Sets wine_environment.

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
wine_prefix=$project/build/wine-prefix
wine_locales=$project/build/wine-locales

wine_environment=(
    "WINEPREFIX=$wine_prefix"
    WINEARCH=win64
    "WINEDLLOVERRIDES=mscoree,mshtml=" # else the first start offers to download them
    "WINEDEBUG=${WINEDEBUG:--all}"
    "FONTCONFIG_FILE=$project/tools/desktop/fonts.conf"
    LC_ALL=zh_CN.UTF-8 # code page 936, as on the users' machines
    "LOCPATH=$wine_locales" # where that locale is, whatever this system has
)
