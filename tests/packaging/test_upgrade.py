"""An older version is replaced while copies of it run, and a newer one is not replaced by it."""

from __future__ import annotations

import os
import signal
import time
import unittest
from dataclasses import dataclass
from pathlib import Path

from desktop.assistant import Assistant
from desktop.project import BUILD
from installationtest import CLIENT, PATIENCE_MS, STANDALONE, InstallationTest, keys_left
from packages import GONE_SINCE, make_packages, older_build, package_in
from startedcopy import StartedCopy
from windowsmachine import windows_path

OLD_VERSION = "0.9.0"
NEXT_VERSION = "1.0.1"
# Beyond ASCII, with a blank, and not where the package would put it by itself.
OTHER_FOLDER = r"C:\Program Files\云 桌面\Miravel"
OWN_ANSWER = "own answer"


@dataclass(frozen=True)
class Layout:
    """Where an installation lies, and how its program is started."""

    program: str
    data: str
    properties: tuple[str, ...]
    arguments: tuple[str, ...]
    asked_for: tuple[str, ...]
    """Files that only the properties bring."""


ALONE = Layout(STANDALONE, STANDALONE, (), (), ())
BESIDE_CLIENT = Layout(CLIENT + r"\Miravel", CLIENT, ("LAYOUT=client", f"CLIENTFOLDER={CLIENT}\\", "TRANSLATION=en"),
                       ("--Type=vdi",), ("Miravel_en.qm",))


class UpgradeTest(InstallationTest):
    maxDiff = None

    def package_of(self, version: str) -> Path:
        """A package of another version: the older one has other files too."""
        folder = Path(self.shared.name) / version
        if not folder.exists():
            is_old = version == OLD_VERSION
            make_packages(older_build(folder.with_suffix(".build")) if is_old else BUILD, folder, version)
        return package_in(folder)

    def test_life_of_an_installation_on_its_own(self) -> None:
        self.start_machine()
        self.installation_lives(ALONE)

    def test_life_of_an_installation_beside_the_client(self) -> None:
        self.start_machine()
        config = self.machine.place(CLIENT) / "config"
        config.mkdir(parents=True)
        (config / "CommonTerminal.ini").write_text("[RemLastUser]\nlastuser=demo\n", encoding="ascii")
        self.installation_lives(BESIDE_CLIENT)

    def installation_lives(self, layout: Layout) -> None:
        """Installed, used, replaced while it runs, used again, not replaced by an older one, removed."""
        self.start_service()
        files_before = self.machine.files()
        registry_before = self.machine.registry()
        assistant = self.old_version_is_used(layout)
        copy = self.running_copy_is_upgraded(layout, assistant)
        self.question_is_answered(assistant, layout.program)
        self.downgrade_is_refused(layout)
        self.assertTrue(copy.alive, "a refused installation leaves the running copy alone")
        assistant.ask_to_close()
        copy.wait()
        self.remove()
        self.machine.stop()
        data = self.machine.place(layout.data).relative_to(self.machine.drive).as_posix()
        left = self.machine.files() - files_before
        print("    left behind: " + ", ".join(sorted(left)))
        self.assertEqual({"config/Miravel.ini", "log/Miravel.log", "3.txt"},
                         {name.removeprefix(f"{data}/").rpartition("LocalQA/")[2] for name in left
                          if (self.machine.drive / name).is_file()})
        self.assertEqual([], keys_left(registry_before, self.machine.registry()))

    def old_version_is_used(self, layout: Layout) -> Assistant:
        """Installs the older version and leaves a copy of it running."""
        self.install(*layout.properties, *self.service_properties(),
                     package=self.package_of(OLD_VERSION))
        folder = self.machine.place(layout.program)
        self.assertTrue((folder / Path(GONE_SINCE).relative_to("bin")).exists())
        self.assertFalse((folder / "doctor.exe").exists())
        assistant = self.assistant(layout.program, layout.data + r"\log", *layout.arguments)
        self.question_is_answered(assistant, layout.program)
        return assistant

    def running_copy_is_upgraded(self, layout: Layout, assistant: Assistant) -> StartedCopy:
        """The copy that runs afterwards."""
        folder = self.machine.place(layout.program)
        own = folder / "LocalQA/3.txt"
        own.write_text(OWN_ANSWER, encoding="ascii")
        settings = self.machine.place(layout.data) / "config/Miravel.ini"
        before = settings.read_bytes()
        assistant.log.mark()
        begun = time.monotonic()
        self.install()
        took = time.monotonic() - begun
        copy = self.copy_started_again(assistant, layout.program)
        for argument in layout.arguments:
            self.assertIn(argument, copy.command_line)
        print(f"    upgraded in {took:.1f} s; the copy ended with 0 and runs again: {copy.command_line}")
        self.assertEqual({*self.packaged_program_files(), *layout.asked_for},
                         {name for name in self.program_files(layout.program)
                          if not name.startswith(("log/", "gif/", "config/"))})
        self.assertEqual(OWN_ANSWER, own.read_text("ascii"))
        self.assertEqual(before, settings.read_bytes())
        return copy

    def downgrade_is_refused(self, layout: Layout) -> None:
        old = self.package_of(OLD_VERSION)
        files = self.program_files(layout.program)
        status, text = self.installer("/i", windows_path(old))
        self.assertNotEqual(0, status)
        # Wine does not log the text of a condition, so it is read from the package.
        self.assertIn("LaunchConditions。返回值 0", text)
        told = self.told_by("NOT WIX_DOWNGRADE_DETECTED OR Installed", old)
        self.assertIn("不能用旧版本替换", told)
        self.assertIn("A newer version of Miravel is installed", told)
        print(f"    {told}")
        self.assertEqual(files, self.program_files(layout.program))

    def products(self) -> int:
        """How many versions the system lists as installed."""
        return sum("CurrentVersion\\Uninstall\\" in key and '"DisplayName"="Miravel"' in values
                   for key, values in self.machine.registry().items())

    def test_copy_that_does_not_close_is_left_alone_after_ten_seconds(self) -> None:
        """When the same version comes again, and from one patch level to the next."""
        self.start_machine()
        self.start_service()
        self.install(f"INSTALLFOLDER={OTHER_FOLDER}", *self.service_properties())
        assistant = self.assistant(OTHER_FOLDER, OTHER_FOLDER + r"\log")
        assistant.wait_for_greeting()
        pid = assistant.process.pid
        os.kill(pid, signal.SIGSTOP)
        try:
            waited = self.waited_for(0, self.install())
            text = self.install(package=self.package_of(NEXT_VERSION))
        finally:
            os.kill(pid, signal.SIGCONT)
        self.assertTrue(PATIENCE_MS <= waited < 2 * PATIENCE_MS, waited)
        self.assertNotIn("asked to close", text, "the version before has asked already")
        self.assertTrue(assistant.alive, "nothing is ended by force")
        self.assertFalse(self.machine.place(STANDALONE).exists(), "the folder is the one before")
        self.assertLessEqual(self.packaged_program_files(), self.program_files(OTHER_FOLDER))
        self.machine.stop()
        self.assertEqual(1, self.products(), "one version is installed")


if __name__ == "__main__":
    unittest.main()
