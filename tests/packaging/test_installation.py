"""The package on a machine of its own: both layouts installed, used, installed again and removed."""

from __future__ import annotations

import unittest

from desktop.project import BUILD, SOURCE
from installationtest import CLIENT, PATIENCE_MS, STANDALONE, InstallationTest, keys_left
from windowsmachine import windows_path

DUMPS = r"LocalDumps\Miravel.exe"
ENGLISH = "Miravel_en.qm"
CONFIG = {"config/Miravel.ini", "config/Miravel.sample.ini", "config/OpenSourceLicense.txt"}


class StandaloneTest(InstallationTest):
    maxDiff = None

    def test_installed_used_installed_again_and_removed(self) -> None:
        self.start_machine()
        self.start_service()
        files_before = self.machine.files()
        registry_before = self.machine.registry()

        self.install(*self.service_properties())
        self.assertEqual(self.packaged_program_files() | CONFIG, self.program_files(STANDALONE))
        folder = self.machine.place(STANDALONE)
        for name in ("log", "gif"):
            self.assertTrue((folder / name).is_dir(), name)
        self.assertEqual(1, len(self.shortcuts()))
        assistant = self.assistant(STANDALONE, STANDALONE + r"\log")
        self.question_is_answered(assistant, STANDALONE)
        self.assertEqual(0, self.machine.run(STANDALONE + r"\doctor.exe", STANDALONE, "--shortcut"))

        own = folder / "LocalQA/3.txt"
        own.write_text("own answer", encoding="ascii")
        settings = folder / "config/Miravel.ini"
        settings.write_text(settings.read_text("ascii") + "; mine\n", encoding="ascii")
        text = self.install("SERVICEADDRESS=other.example")
        self.assertLess(self.waited_for(1, text), PATIENCE_MS)
        copy = self.copy_started_again(assistant, STANDALONE)
        assistant.wait_for_window()
        self.assertTrue(settings.read_text("ascii").endswith("; mine\n"))
        self.assertNotIn("other.example", settings.read_text("ascii"))
        self.assertEqual("own answer", own.read_text("ascii"))
        self.assertEqual(self.packaged_program_files() | CONFIG,
                         {name for name in self.program_files(STANDALONE)
                          if not name.startswith(("log/", "gif/"))})

        text = self.remove()
        self.assertLess(self.waited_for(1, text), PATIENCE_MS)
        copy.wait()
        self.machine.stop()
        left = self.machine.files() - files_before
        place = "Program Files/Miravel"
        self.assertEqual({place, f"{place}/config", f"{place}/config/Miravel.ini", f"{place}/log",
                          f"{place}/log/Miravel.log", f"{place}/LocalQA", f"{place}/LocalQA/3.txt"}, left)
        self.assertEqual([], keys_left(registry_before, self.machine.registry()))
        print("    left behind: " + ", ".join(sorted(left)))

    def test_old_system_is_refused_in_both_languages(self) -> None:
        self.start_machine(is_old=True)
        before = self.machine.files()
        status, text = self.installer("/i", windows_path(self.package()))
        self.assertNotEqual(0, status)
        # Wine does not log the text of a condition, so it is read from the package.
        self.assertIn("LaunchConditions。返回值 0", text)
        told = self.told_by("VersionNT64 AND VersionNT >= 603")
        self.assertIn("Miravel 需要 64 位 Windows 10 或更高版本", told)
        self.assertIn("Miravel needs a 64-bit Windows 10 or later", told)
        self.assertEqual(before, self.machine.files())

    def test_values_that_cannot_be_used_are_refused(self) -> None:
        self.start_machine()
        before = self.machine.files()
        wrong = {"LAYOUT": "middle", "LOGLEVEL": "WARNING", "SERVICEPORT": "70000",
                 "SERVICEADDRESS": "a|b", "SERVICEMODE": "ftp", "GUARDPORT": "0", "TRANSLATION": "de",
                 "CREDENTIALSFILE": r"C:\nowhere.ini", "LOCALQAFOLDER": r"C:\nowhere"}
        for name, value in wrong.items():
            with self.subTest(name):
                status, text = self.installer("/i", windows_path(self.package()), f"{name}={value}")
                self.assertNotEqual(0, status)
                self.assertRegex(text, rf"{name} (must|cannot)|{name} 中没有|无法读取 {name}")
                self.assertEqual(before, self.machine.files())


class ClientTest(InstallationTest):
    maxDiff = None

    def test_installed_used_and_removed_with_its_data(self) -> None:
        self.start_machine()
        self.start_service()
        client = self.machine.place(CLIENT)
        (client / "config").mkdir(parents=True)
        (client / "config/CommonTerminal.ini").write_text("[RemLastUser]\nlastuser=demo\n",
                                                          encoding="ascii")
        files_before = self.machine.files()
        registry_before = self.machine.registry()
        answers = self.folder / "answers"
        answers.mkdir()
        (answers / "0.txt").write_text("from the roll-out", encoding="ascii")

        self.install("LAYOUT=client", f"CLIENTFOLDER={CLIENT}\\", "CRASHDUMPS=1", "TRANSLATION=en",
                     f"LOCALQAFOLDER={windows_path(answers)}", *self.service_properties())
        program = CLIENT + r"\Miravel"
        self.assertEqual(self.packaged_program_files() | {ENGLISH}, self.program_files(program))
        self.assertEqual((BUILD / "translations" / ENGLISH).read_bytes(),
                         (client / "Miravel" / ENGLISH).read_bytes())
        self.assertEqual("from the roll-out",
                         (client / "Miravel/LocalQA/0.txt").read_text(encoding="ascii"))
        shipped = SOURCE / "resources/LocalQA/1.txt"
        self.assertEqual(shipped.read_bytes(), (client / "Miravel/LocalQA/1.txt").read_bytes())
        self.assertEqual({"CommonTerminal.ini", *(name.split("/")[1] for name in CONFIG)},
                         {path.name for path in (client / "config").iterdir()})
        self.assertEqual([], self.shortcuts())
        assistant = self.assistant(program, CLIENT + r"\log", "--Type=vdi")
        self.question_is_answered(assistant, program)
        self.assertEqual(0, assistant.close())
        self.machine.stop()
        dumps = [key for key in self.machine.registry() if key.endswith(DUMPS)]
        self.assertEqual(1, len(dumps))
        values = self.machine.registry()[dumps[0]]
        self.assertIn('"DumpCount"=dword:00000005', values)
        self.assertTrue(any("LOCALAPPDATA" in value for value in values), values)

        self.install("TRANSLATION=zh")
        self.assertNotIn(ENGLISH, self.program_files(program))
        self.assertIn(f"translations/{ENGLISH}", self.program_files(program))

        self.remove("REMOVEDATA=1")
        self.machine.stop()
        self.assertEqual(set(), self.machine.files() - files_before)
        self.assertEqual(set(), files_before - self.machine.files())
        self.assertEqual([], keys_left(registry_before, self.machine.registry()))


if __name__ == "__main__":
    unittest.main()
