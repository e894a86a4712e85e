"""Where things are in the source and build trees."""

from __future__ import annotations

import os
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("MIRAVEL_BUILD_DIR", SOURCE / "build/release")).resolve()

# The Windows build runs under Wine; the service it talks to is this system's.
ON_WINE = (BUILD / "bin/Miravel.exe").exists()
PROGRAM = BUILD / ("bin/Miravel.exe" if ON_WINE else "bin/Miravel")
DEMO_SERVICE = (SOURCE / "build/release" if ON_WINE else BUILD) / "bin/demoservice"
# Of this system, where it is built; the channel is the same.
GUARD_POST = DEMO_SERVICE.with_name("guardpost")
DOCTOR = BUILD / ("bin/doctor.exe" if ON_WINE else "bin/doctor")
CONFORMANCE = BUILD / ("tools/conformance.exe" if ON_WINE else "bin/conformance")
GATEWAY_LIBRARY_NAME = "KorVpnTool.dll" if ON_WINE else "libKorVpnTool.so"
# The program writes its log in the encoding of its system.
LOG_ENCODING = "gbk" if ON_WINE else "utf-8"
SLOWNESS = 3 if ON_WINE else 1
KNOWLEDGE = SOURCE / "tools/demoservice/knowledge.json"
LICENCE_TEXT = SOURCE / "resources/OpenSourceLicense.txt"
LOCAL_LIBRARY = SOURCE / "resources/LocalQA"
FONTS = SOURCE / "tools/desktop/fonts.conf"
TASKLIST = SOURCE / "tools/desktop/tasklist"

_INHERITED = ("PATH", "HOME", "ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS")


def base_environment() -> dict[str, str]:
    """What every started process gets: the same locale and fonts on every machine."""
    kept = {name: os.environ[name] for name in _INHERITED if name in os.environ}
    # The font cache outlives one run: building it takes seconds.
    return {**kept, "LC_ALL": "C.UTF-8", "FONTCONFIG_FILE": str(FONTS),
            "XDG_CACHE_HOME": str(BUILD / "cache")}
