"""A configuration of OpenSSL's own that somebody has left on the machine: nothing of it is read."""

from __future__ import annotations

import os
import shutil
import subprocess
import unittest
from pathlib import Path
from typing import Mapping

from desktop.assistant import Assistant
from desktop.project import BUILD
from desktop.testcase import DesktopTest
from windowsmachine import INSTALL_S, WindowsMachine, windows_path

QUESTION = "客户端的服务器地址怎么填"
PLANTED = BUILD / "tests/planted.dll"
NAME = "openssl.cnf"
# Where OpenSSL builds have been seen to look: the folder that is built into this one, which only
# administrators may make, and others, which any user may.
FOLDERS = ("Program Files/OpenSSL/ssl", "opt/win/openssl/ssl", "usr/local/ssl")


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

    def https_works_and_nothing_is_loaded(self, environment: Mapping[str, str]) -> None:
        """In the program and in the doctor, which an administrator runs."""
        service = self.start_service(https=True)
        marked = {"MIRAVEL_MARKER": windows_path(self.marker), **environment}
        assistant = self.enterContext(Assistant(self.installation, self.display, runner=self.machine,
                                                environment=marked))
        assistant.wait_for_greeting()
        assistant.ask(QUESTION)
        assistant.wait_for_answer(QUESTION)
        self.assertIn("scheme=https", service.log.text())
        folder = self.installation.program.parent
        doctor = subprocess.run(["wine", folder / "doctor.exe", windows_path(folder)], check=False,
                                env={**self.machine.environment(os.environ), **marked},
                                stdin=subprocess.DEVNULL, capture_output=True, timeout=INSTALL_S)
        self.assertEqual(0, doctor.returncode, doctor.stdout.decode("gbk", errors="replace"))
        self.assertFalse(self.marker.exists(), "the planted library was loaded")
        self.close_cleanly(assistant)

    def test_configurations_in_folders_are_not_read(self) -> None:
        places = [self.machine.drive / folder / NAME for folder in FOLDERS]
        places.append(self.installation.program.parent / NAME)
        for place in places:
            place.parent.mkdir(parents=True, exist_ok=True)
            place.write_text(self.configuration(), encoding="ascii")
        self.https_works_and_nothing_is_loaded({})

    def test_configuration_named_by_the_environment_is_not_read(self) -> None:
        """As installers of other programs set it for the whole machine."""
        file = self.folder / NAME
        file.write_text(self.configuration(), encoding="ascii")
        shutil.copy(PLANTED, self.folder)
        folder = windows_path(self.folder)
        self.https_works_and_nothing_is_loaded({"OPENSSL_CONF": windows_path(file),
                                                "OPENSSL_MODULES": folder, "OPENSSL_ENGINES": folder})

    def test_planted_library_would_have_left_its_mark(self) -> None:
        """Else the test above could not fail."""
        environment = self.machine.environment({**os.environ,
                                                "MIRAVEL_MARKER": windows_path(self.marker)})
        subprocess.run(["wine", "rundll32", f"{windows_path(PLANTED)},touch"], env=environment,
                       check=True, timeout=60)
        self.assertTrue(self.marker.exists())


if __name__ == "__main__":
    unittest.main()
