"""Installations in places that are not plain: the program starts, asks and answers there too."""

from __future__ import annotations

import os
import subprocess
import unittest

from desktop.installation import Installation
from desktop.testcase import DesktopTest

QUESTION_TEXT = "客户端的服务器地址怎么填"


class PlacesTest(DesktopTest):
    def test_chinese_characters_and_blanks_in_the_path(self) -> None:
        self.installation = Installation(self.folder / "云桌面 客户端" / "Desk Client (1)")
        self.question_is_answered()

    def test_program_folder_that_is_read_only(self) -> None:
        folder = str(self.installation.program.parent)
        reason = self.make_read_only(folder)
        if reason:
            self.skipTest(reason)
        with self.assertRaises(OSError):
            open(os.path.join(folder, "probe"), "wb").close()
        self.question_is_answered()

    def question_is_answered(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_answer(QUESTION_TEXT)
        service.log.wait_for("call=ask", f'question="{QUESTION_TEXT}"')
        self.close_cleanly(assistant)

    def make_read_only(self, folder: str) -> str:
        """Why the folder could not be made read-only; empty when it is. Permissions do not bind the
        administrator, a read-only mount does."""
        if os.geteuid() != 0:
            os.chmod(folder, 0o555)
            self.addCleanup(os.chmod, folder, 0o755)
            return ""
        for options in ("bind", "remount,bind,ro"):
            done = subprocess.run(["mount", "-o", options, folder, folder], capture_output=True,
                                  text=True, check=False)
            if done.returncode != 0:
                return "no read-only folder can be made here: " + done.stderr.strip()
            if options == "bind":
                self.addCleanup(subprocess.run, ["umount", folder], check=True)
        return ""


if __name__ == "__main__":
    unittest.main()
