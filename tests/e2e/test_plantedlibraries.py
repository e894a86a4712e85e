"""Libraries that somebody left in the folder from which the program is started, or in a folder of
the search path for commands, are never loaded."""

from __future__ import annotations

import contextlib
import os
import shutil
import unittest
from pathlib import Path

from desktop.assistant import Assistant
from desktop.installation import free_port
from desktop.testcase import DesktopTest

PLANTED = Path(os.environ["MIRAVEL_PLANTED_LIBRARY"])

LIBRARIES = (
    "KorVpnTool", "KorVpnTool.so", "libKorVpnTool.so",
    "libssl.so", "libssl.so.1.1", "libssl.so.3", "libcrypto.so", "libcrypto.so.1.1",
    "libcrypto.so.3", "libz.so.1", "libQt5Core.so.5", "libQt5Network.so.5", "libQt5Widgets.so.5",
    "libQt5DBus.so.5", "libQt5XcbQpa.so.5", "libxcb.so.1",
)
PLUGINS = (
    "platforms/libqxcb.so", "platforms/libqoffscreen.so", "platformthemes/libqgtk3.so",
    "platforminputcontexts/libcomposeplatforminputcontextplugin.so",
    "platforminputcontexts/libibusplatforminputcontextplugin.so",
    "xcbglintegrations/libqxcb-glx-integration.so", "imageformats/libqgif.so",
    "imageformats/libqjpeg.so", "imageformats/libqico.so", "iconengines/libqsvgicon.so",
    "styles/libqplanted.so", "bearer/libqconnmanbearer.so", "accessible/libqplanted.so",
)
TEXT = "客户端的服务器地址怎么填"


class PlantedLibrariesTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        self.marker = self.folder / "loaded"
        self.planted = self.folder / "planted"
        plugins = [f"{folder}{name}" for name in PLUGINS for folder in ("", "plugins/")]
        for name in (*LIBRARIES, *plugins):
            (self.planted / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(PLANTED, self.planted / name)

    def start(self, folder: Path, path: str) -> Assistant:
        """The program as a caller starts it who is in a folder."""
        with contextlib.chdir(folder):
            return self.start_assistant({"PATH": path, "PLANTED_TELLS": str(self.marker)})

    def use(self, assistant: Assistant) -> None:
        """Everything that loads a library: the window, the gateway's tool, TLS, pictures."""
        assistant.wait_for_log("can not ping, try kor", "get no korinfo when connect vd")
        self.start_service(https=True)
        assistant.ask(TEXT)
        assistant.wait_for_log("version:")
        assistant.wait_for_log("nSize_Recom:")

    def mapped(self, assistant: Assistant) -> str:
        return Path(f"/proc/{assistant.process.pid}/maps").read_text(encoding="utf-8")

    def test_nothing_planted_is_loaded(self) -> None:
        self.installation.use_service(free_port())
        assistant = self.start(self.planted, f"{self.planted}:.:{os.environ['PATH']}")
        self.use(assistant)
        self.assertNotIn(str(self.planted), self.mapped(assistant))
        self.assertFalse(self.marker.exists())
        self.close_cleanly(assistant)

    def test_the_planted_library_tells_when_it_is_loaded(self) -> None:
        """Beside the program, where the gateway's tool belongs: so the other test can fail."""
        self.installation.use_service(free_port())
        shutil.copy(PLANTED, self.installation.program.parent / "libKorVpnTool.so")
        assistant = self.start(self.folder, os.environ["PATH"])
        assistant.wait_for_log("can not ping, try kor", "get no korinfo when connect vd")
        self.assertTrue(self.marker.exists())
        self.close_cleanly(assistant)


if __name__ == "__main__":
    unittest.main()
