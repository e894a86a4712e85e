"""An older version is replaced while copies of it run, and a newer one is not replaced by it."""

from __future__ import annotations

import os
import re
import signal
import time
import unittest
from pathlib import Path

from desktop.waiting import wait_until
from installationtest import STANDALONE, InstallationTest
from packages import GONE_SINCE, make_packages, older_build, package_in
from windowsmachine import windows_path

OLD_VERSION = "0.9.0"
LOG = STANDALONE + r"\log"
# A copy is given ten seconds; all else that an upgrade does is quick, also on a busy machine.
UPGRADE_S = 110.0


class UpgradeTest(InstallationTest):
    def old_package(self) -> Path:
        folder = Path(self.shared.name) / "old"
        if not folder.exists():
            build = older_build(Path(self.shared.name) / "old-build")
            make_packages(build, folder, OLD_VERSION)
        return package_in(folder)

    def test_upgrade_of_a_running_copy_and_refused_downgrade(self) -> None:
        self.start_machine()
        self.start_service()
        self.install(*self.service_properties(), package=self.old_package())
        folder = self.machine.place(STANDALONE)
        gone = folder / Path(GONE_SINCE).relative_to("bin")
        self.assertTrue(gone.exists())
        self.assertFalse((folder / "doctor.exe").exists())
        own = folder / "LocalQA/3.txt"
        own.write_text("own answer", encoding="ascii")
        settings = (folder / "config/Miravel.ini").read_bytes()
        assistant = self.assistant(STANDALONE, LOG, "--Type", "vdi")
        # Started with a caller type, this copy reads what lies beside its folder: nothing.
        assistant.wait_for_window()

        begun = time.monotonic()
        self.install()
        took = time.monotonic() - begun
        self.assertEqual(0, assistant.process.wait())
        self.assertLess(took, UPGRADE_S)
        wait_until(lambda: self.running(), "the window again after the upgrade")
        self.assertIn("--Type vdi", self.running()[0])
        print(f"    upgraded in {took:.1f} s; the copy ended with 0 and runs again: {self.running()}")
        self.assertFalse(gone.exists())
        self.assertEqual(self.packaged_program_files(),
                         {name for name in self.program_files(STANDALONE)
                          if not name.startswith(("log/", "gif/", "config/"))})
        self.assertEqual("own answer", own.read_text("ascii"))
        self.assertEqual(settings, (folder / "config/Miravel.ini").read_bytes())

        status, text = self.installer("/i", windows_path(self.old_package()))
        self.assertNotEqual(0, status)
        # Wine does not log the text of a condition, so it is read from the package.
        self.assertIn("LaunchConditions。返回值 0", text)
        told = self.told_by("NOT WIX_DOWNGRADE_DETECTED OR Installed", self.old_package())
        self.assertIn("不能用旧版本替换", told)
        self.assertIn("A newer version of Miravel is installed", told)
        print(f"    {told}")
        self.assertTrue((folder / "doctor.exe").exists())
        self.assertTrue(self.running(), "a refused installation leaves the running copy alone")
        self.machine.stop()
        self.assertEqual(1, self.products(), "one version is installed")

    def running(self) -> list[str]:
        """The command lines of the assistants on this machine."""
        found = []
        for process in Path("/proc").iterdir():
            if not process.name.isdigit():
                continue
            try:
                line = (process / "cmdline").read_bytes().replace(b"\0", b" ").decode(errors="replace")
                environment = (process / "environ").read_bytes()
            except OSError:
                continue
            mine = str(self.folder).encode() in environment
            if mine and re.match(r"C:\\Program Files\\Miravel\\Miravel\.exe", line):
                found.append(line.strip())
        return found

    def products(self) -> int:
        """How many versions the system lists as installed."""
        return sum("CurrentVersion\\Uninstall\\" in key and '"DisplayName"="Miravel"' in values
                   for key, values in self.machine.registry().items())

    def test_copy_that_does_not_close_is_left_alone_after_ten_seconds(self) -> None:
        self.start_machine()
        self.start_service()
        self.install(*self.service_properties(), package=self.old_package())
        assistant = self.assistant(STANDALONE, LOG)
        assistant.wait_for_greeting()
        pid = assistant.process.pid
        os.kill(pid, signal.SIGSTOP)
        try:
            begun = time.monotonic()
            _, text = self.installer("/i", windows_path(self.package()))
            took = time.monotonic() - begun
        finally:
            os.kill(pid, signal.SIGCONT)
        waited = re.search(r"0 closed after (\d+) ms", text)
        self.assertIsNotNone(waited, text[-3000:])
        self.assertTrue(10000 <= int(waited[1]) < 15000, waited[1])
        self.assertLess(took, UPGRADE_S)
        print(f"    upgrade went on after {waited[1]} ms and ended after {took:.1f} s")


if __name__ == "__main__":
    unittest.main()
