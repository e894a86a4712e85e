"""The real program only reads the registry: what is in it before and after, and which of its two views
counts."""

from __future__ import annotations

import os
import shutil
import unittest
from pathlib import Path
from typing import Mapping

from desktop.assistant import Assistant
from desktop.programlog import ProgramLog
from desktop.project import LOG_ENCODING
from desktop.testcase import DesktopTest
from desktop.wine import WinePrefix
from desktop.wineregistry import changes

QUESTION = "客户端的服务器地址怎么填"
KEY = r"HKLM\Software\VDAgent\LogonInfo"
KEY_OF_32_BIT_PROGRAMS = r"HKLM\Software\Wow6432Node\VDAgent\LogonInfo"
VALUE = "iRAIUser"
# What any program changes under Wine.
WINES_OWN = ("user\\Software\\Wine", "SystemCertificates", "Explorer\\User Shell Folders",
             "Explorer\\Shell Folders", "Control\\Class\\{4D36E968", "Control\\Video", "Enum\\DISPLAY",
             "system\\HARDWARE", "Hardware Profiles", "Fontlink", "Fonts")


class FlushedPrefix(WinePrefix):
    """One that can be stopped, which writes its registry into files, by whoever did not start it."""

    def environment(self, base: Mapping[str, str]) -> dict[str, str]:
        # Wine finds what runs in a prefix by these.
        return {name: value for name, value in super().environment(base).items()
                if name not in ("TMPDIR", "XDG_RUNTIME_DIR")}


class WindowsRegistryTest(DesktopTest):
    maxDiff = None

    def setUp(self) -> None:
        super().setUp()
        self.service = self.start_service()
        # A shortcut's start reads the user's name there.
        folder = self.installation.program.parent
        shutil.copytree(self.installation.root / "config", folder / "config")
        os.remove(self.installation.root / "config/Miravel.ini")
        (folder / "log").mkdir()
        self.installation.log = ProgramLog(folder / "log/Miravel.log", LOG_ENCODING)

    def ask_a_question(self, prefix: FlushedPrefix) -> str:
        """Starts, asks and closes in this prefix; the service's line about the question."""
        with Assistant(self.installation, self.display, arguments=(), runner=prefix) as assistant:
            assistant.wait_for_greeting()
            assistant.ask(QUESTION)
            assistant.wait_for_answer(QUESTION)
            self.close_cleanly(assistant)
        return [line for line in self.service.log.lines() if "call=ask" in line][-1]

    def prefix(self, name: str) -> FlushedPrefix:
        return FlushedPrefix(Path(self.folder) / name)

    def test_nothing_is_written(self) -> None:
        prefix = self.prefix("clean")
        prefix.run("reg", "query", r"HKLM\Software\Wine")
        prefix.stop()
        before = prefix.registry()
        self.assertIn('accountId=""', self.ask_a_question(prefix))
        after = prefix.registry()
        found = changes(before, after)
        # Else nothing has been flushed: any program's start leaves its traces there.
        self.assertTrue(found)
        self.assertEqual([], [key for key in found if "vdagent" in key.lower()])
        own = [key for key in found if not any(other.lower() in key.lower() for other in WINES_OWN)]
        self.assertEqual([], own)
        print(f"\n    {len(before)} keys before, {len(after)} after; of Wine's own changed: {found}",
              flush=True)

    def test_value_of_a_32_bit_agent_is_found(self) -> None:
        prefix = self.prefix("other-view")
        prefix.set_registry_text(KEY_OF_32_BIT_PROGRAMS, VALUE, "agent32")
        self.assertIn('accountId="agent32"', self.ask_a_question(prefix))

    def test_value_of_a_64_bit_agent_wins(self) -> None:
        prefix = self.prefix("both-views")
        prefix.set_registry_text(KEY_OF_32_BIT_PROGRAMS, VALUE, "agent32")
        prefix.set_registry_text(KEY, VALUE, "agent64")
        self.assertIn('accountId="agent64"', self.ask_a_question(prefix))


if __name__ == "__main__":
    unittest.main()
