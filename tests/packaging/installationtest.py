"""What the tests of installations share: a machine, a demo service with https, the packages, and the
installation's steps, which are printed."""

from __future__ import annotations

import re
import tempfile
import unittest
from pathlib import Path
from types import SimpleNamespace

from desktop.assistant import Assistant
from desktop.demoservice import DemoService
from desktop.display import Display
from desktop.installation import KEY, SECRET, TENANT, encoded, free_port
from desktop.programlog import ProgramLog
from desktop.project import BUILD, LOG_ENCODING, SOURCE
from desktop.waiting import wait_until
from desktop.wineregistry import Registry, changes
from packages import make_packages, package_in, rows
from startedcopy import StartedCopy, running_copies
from windowsmachine import WindowsMachine, windows_path

# Its answer has a moving picture.
QUESTION = "如何更新桌面客户端？"
STANDALONE = r"C:\Program Files\Miravel"
CLIENT = r"C:\云桌面 client"
# How long running copies are waited for.
PATIENCE_MS = 10000
# What using any program changes under Wine, and the installer's own lists, which stay when they are
# empty.
NOT_THE_PACKAGES = ("Classes\\Installer\\", "Installer\\UpgradeCodes", "Control\\Class\\{4D36E968",
                    "Installer\\UserData", "Installer\\Folders", "Explorer\\User Shell Folders",
                    "Explorer\\Shell Folders", "user\\Software\\Wine",
                    "SystemCertificates")
# What the packages' own actions have to say.
_SAID = re.compile(r"^(Miravel: .*|.*(?:只能是|必须是|无法|中没有).*)$", re.MULTILINE)


class InstallationTest(unittest.TestCase):
    """One fresh machine for each test."""

    def setUp(self) -> None:
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory(prefix="miravel-test-")))
        self.display = self.enterContext(Display(self.folder / "display"))
        self._logs = 0

    def start_machine(self, *, is_old: bool = False) -> None:
        self.machine = WindowsMachine(self.folder, self.display.name, is_old=is_old)
        self.addCleanup(self.machine.remove)

    def package(self) -> Path:
        """The package of this build, made once for all tests of a program."""
        folder = Path(self.shared.name) / "new"
        if not folder.exists():
            make_packages(BUILD, folder)
        return package_in(folder)

    @classmethod
    def setUpClass(cls) -> None:
        cls.shared = tempfile.TemporaryDirectory(prefix="miravel-packages-")
        cls.addClassCleanup(cls.shared.cleanup)

    def start_service(self) -> None:
        self.service = self.enterContext(DemoService(self.folder / "service", https=True))

    def credentials(self) -> Path:
        """The file with the tenant's key and secret that an administrator hands out."""
        path = self.folder / "credentials.ini"
        path.write_text(f"; secret\r\n[Authorization]\r\ntenantid={TENANT}\r\nxcafirst={encoded(KEY)}\r\n"
                        f"xcasecond={encoded(SECRET)}\r\n", encoding="ascii")
        return path

    def service_properties(self) -> list[str]:
        """What points a new installation to the demo service."""
        return ["SERVICEADDRESS=127.0.0.1", f"SERVICEPORT={self.service.https_port}",
                "SERVICEMODE=https", "LOGLEVEL=DEBUG", f"GUARDPORT={free_port()}",
                f"CREDENTIALSFILE={windows_path(self.credentials())}"]

    def installer(self, *arguments: str) -> tuple[int, str]:
        """Runs the system's installer silently; its exit status and its log, which is printed as far as
        it is ours."""
        self._logs += 1
        log = self.folder / f"installer{self._logs}.log"
        status = self.machine.run("msiexec", *arguments, "/qn", "/l*v", windows_path(log))
        text = log.read_bytes().decode("gbk", errors="replace").replace("\r\n", "\n")
        shown = " ".join(re.sub(r"Z:\\\S+\\", "", argument) for argument in arguments)
        print(f"\n$ msiexec {shown} /qn -> {status}")
        print("".join(f"    {match[1]}\n" for match in _SAID.finditer(text)), end="", flush=True)
        return status, text

    def install(self, *properties: str, package: Path | None = None) -> str:
        status, text = self.installer("/i", windows_path(package or self.package()), *properties)
        self.assertEqual(0, status, text[-3000:])
        return text

    def told_by(self, condition: str, package: Path | None = None) -> str:
        """What the package says when this condition does not hold."""
        return dict(rows(package or self.package(), "LaunchCondition"))[condition]

    def remove(self, *properties: str, package: Path | None = None) -> str:
        status, text = self.installer("/x", windows_path(package or self.package()), *properties)
        self.assertEqual(0, status, text[-3000:])
        return text

    def assistant(self, folder: str, log: str, *arguments: str) -> Assistant:
        """Starts the installed program."""
        installed = SimpleNamespace(
            processes=SimpleNamespace(environment=dict), program=f"{folder}\\Miravel.exe", root=self.folder,
            log=ProgramLog(self.machine.place(log) / "Miravel.log", LOG_ENCODING))
        return self.enterContext(Assistant(installed, self.display, arguments=arguments,
                                           runner=self.machine))

    def running(self, folder: str) -> list[StartedCopy]:
        """The copies of the installed program that run."""
        return running_copies(folder + r"\Miravel.exe", self.folder)

    def copy_started_again(self, assistant: Assistant, folder: str) -> StartedCopy:
        """The copy that an installer has started when the assistant's own had closed; the assistant
        goes on with it."""
        self.assertEqual(0, assistant.process.wait())
        [copy] = wait_until(lambda: self.running(folder), "the program again after the installation")
        assistant.go_on_with(copy)
        return copy

    def waited_for(self, closed: int, log: str) -> int:
        """How long an installation has waited until so many copies had closed, in ms."""
        waited = re.search(rf"Miravel: {closed} closed after (\d+) ms", log)
        self.assertIsNotNone(waited, log[-3000:])
        return int(waited[1])

    def question_is_answered(self, assistant: Assistant, program_folder: str) -> None:
        """Over https, with the log and a moving picture written by the installed copy."""
        assistant.wait_for_greeting()
        assistant.ask(QUESTION)
        assistant.wait_for_answer(QUESTION)
        self.assertIn("question:" + QUESTION, assistant.log.whole())
        asked = [line for line in self.service.log.text().splitlines() if "call=ask" in line]
        self.assertIn("signature=good", asked[-1])
        pictures = list((self.machine.place(program_folder) / "gif").glob("*.gif"))
        self.assertTrue(pictures, "no moving picture was kept")
        print(f"    answered over https; {len(pictures)} moving picture, log "
              f"{assistant.log.path.stat().st_size} bytes", flush=True)

    def shortcuts(self) -> list[str]:
        """The shortcuts to the program in start menus."""
        return [name for name in self.machine.files() if name.endswith("Start Menu/Programs/Miravel.lnk")]

    def program_files(self, folder: str) -> set[str]:
        """What lies in the installed program's folder."""
        root = self.machine.place(folder)
        return {path.relative_to(root).as_posix() for path in root.rglob("*") if path.is_file()}

    def packaged_program_files(self) -> set[str]:
        """What lies in the folder of the build, the local library, and the translations."""
        built = {path.relative_to(BUILD / "bin").as_posix()
                 for path in (BUILD / "bin").rglob("*") if path.is_file()}
        library = {f"LocalQA/{path.name}" for path in (SOURCE / "resources/LocalQA").glob("*.txt")}
        translations = {f"translations/{path.name}" for path in (BUILD / "translations").glob("*.qm")}
        return built | library | translations


def keys_left(before: Registry, after: Registry) -> list[str]:
    """The keys that a removed package has changed."""
    return [key for key in changes(before, after)
            if not any(other in key for other in NOT_THE_PACKAGES)]
