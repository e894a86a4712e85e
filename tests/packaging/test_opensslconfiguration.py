"""A configuration of OpenSSL's own that somebody has planted where any user may write: nothing of it is read."""

from __future__ import annotations

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from desktop.assistant import Assistant
from desktop.project import BUILD, SOURCE
from desktop.testcase import DesktopTest
from windowsmachine import WindowsMachine, windows_path

QUESTION = "客户端的服务器地址怎么填"
PLANTED = BUILD / "tests/planted.dll"
# Where OpenSSL builds have been seen to look and any user may make a folder.
FOLDERS = ("opt/win/openssl/ssl", "usr/local/ssl")


class OpenSslConfigurationTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        self.machine = WindowsMachine(self.folder, self.display.name)
        self.addCleanup(self.machine.remove)
        self.marker = self.folder / "loaded"

    def configuration(self) -> str:
        library = windows_path(PLANTED).replace("\\", "\\\\")
        return ("openssl_conf = start\n[start]\nproviders = providers\nengines = engines\n"
                "[providers]\nplanted = planted\ndefault = default\n[default]\nactivate = 1\n"
                f"[planted]\nmodule = {library}\nactivate = 1\n"
                f"[engines]\nplanted = engine\n[engine]\ndynamic_path = {library}\ninit = 1\n")

    def test_planted_configuration_loads_nothing_while_https_works(self) -> None:
        places = [self.machine.drive / folder / "openssl.cnf" for folder in FOLDERS]
        places.append(self.installation.program.parent / "openssl.cnf")
        for place in places:
            place.parent.mkdir(parents=True, exist_ok=True)
            place.write_text(self.configuration(), encoding="ascii")
        service = self.start_service(https=True)
        assistant = self.enterContext(Assistant(
            self.installation, self.display, runner=self.machine,
            environment={"MIRAVEL_MARKER": windows_path(self.marker)}))
        assistant.wait_for_greeting()
        assistant.ask(QUESTION)
        assistant.wait_for_answer(QUESTION)
        self.assertIn("scheme=https", service.log.text())
        self.assertFalse(self.marker.exists(), "the planted library was loaded")
        self.close_cleanly(assistant)

    def test_planted_library_would_have_left_its_mark(self) -> None:
        """Else the test above could not fail."""
        environment = self.machine.environment({**os.environ,
                                                "MIRAVEL_MARKER": windows_path(self.marker)})
        subprocess.run(["wine", "rundll32", f"{windows_path(PLANTED)},touch"], env=environment,
                       check=True, timeout=60)
        self.assertTrue(self.marker.exists())

    def test_folder_with_such_a_library_is_refused(self) -> None:
        """As the tool chain's first build was: with a folder in it that any user may make."""
        folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        library = folder / "libcrypto-3-x64.dll"
        data = (BUILD / "bin/libcrypto-3-x64.dll").read_bytes()
        good = b'OPENSSLDIR: "C:/Program Files/OpenSSL/ssl"'
        self.assertIn(good, data)
        bad = b'OPENSSLDIR: "C:/opt/win/openssl/ssl"'
        library.write_bytes(data.replace(good, bad.ljust(len(good), b"\0")))
        done = self.check_folder_of(library)
        self.assertEqual(1, done.returncode)
        self.assertIn("C:/opt/win/openssl/ssl, which is not under Program Files", done.stderr)
        shutil.copy(BUILD / "bin/libcrypto-3-x64.dll", library)
        self.assertEqual(0, self.check_folder_of(library).returncode)

    def check_folder_of(self, library: Path) -> subprocess.CompletedProcess[str]:
        return subprocess.run([SOURCE / "scripts/windows/folder.py", "openssl", library], check=False,
                              capture_output=True, text=True)


if __name__ == "__main__":
    unittest.main()
