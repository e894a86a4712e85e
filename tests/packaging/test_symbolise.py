"""Crash dumps are read with the kept symbols."""

from __future__ import annotations

import shutil
import subprocess
import unittest
from pathlib import Path

from desktop.assistant import Assistant
from desktop.project import BUILD, SOURCE
from desktop.testcase import DesktopTest
from windowsmachine import WindowsMachine, windows_path

CRASHING = BUILD / "tests/crashing.exe"
TOOLS = "x86_64-w64-mingw32-"


class SymboliseTest(DesktopTest):
    def symbolised(self, dump: Path, programs: Path, symbols: Path) -> str:
        return subprocess.run(["/usr/bin/python3", "-B", SOURCE / "scripts/windows/symbolise.py", dump,
                               programs, symbols], check=True, capture_output=True, text=True).stdout

    def setUp(self) -> None:
        super().setUp()
        self.machine = WindowsMachine(self.folder, self.display.name)
        self.addCleanup(self.machine.remove)

    def test_crash_is_named_with_function_file_and_line(self) -> None:
        dump = self.folder / "crash.dmp"
        self.machine.run(str(CRASHING), windows_path(dump))
        programs = self.folder / "programs"
        programs.mkdir()
        shutil.copy(CRASHING, programs)
        subprocess.run([TOOLS + "objcopy", "--only-keep-debug", CRASHING,
                        self.folder / "crashing.exe.debug"], check=True)
        subprocess.run([TOOLS + "strip", programs / CRASHING.name], check=True)
        text = self.symbolised(dump, programs, self.folder)
        print("\n".join(text.splitlines()[:6]))
        self.assertRegex(text.splitlines()[0],
                         r"exception 0xc0000005 at crashing\.exe\+0x[0-9a-f]+ "
                         r"functionThatCrashes\(int volatile\*\) at crashing\.cpp:\d+")
        self.assertRegex(text, r"\n    crashing\.exe\+0x[0-9a-f]+ main at crashing\.cpp:\d+")

    def test_real_program_is_named_from_the_symbols_of_its_release(self) -> None:
        self.start_service()
        assistant = self.enterContext(Assistant(self.installation, self.display,
                                                runner=self.machine))
        assistant.wait_for_greeting()
        dump = self.folder / "idle.dmp"
        self.machine.run(str(CRASHING), windows_path(dump), "Miravel.exe")
        text = self.symbolised(dump, BUILD / "bin", BUILD / "symbols")
        self.assertRegex(text, r"Miravel\.exe\+0x[0-9a-f]+ .*\bmain at main\.cpp:\d+")
        self.assertIn("[_ZN16QCoreApplication4execEv]", text)
        print("\n".join(line for line in text.splitlines() if "Miravel.exe" in line))
        assistant.close()


if __name__ == "__main__":
    unittest.main()
