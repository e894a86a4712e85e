"""The doctor names what is wrong with an installation, and finds nothing wrong with a good one."""

from __future__ import annotations

import contextlib
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from typing import Iterator

from desktop.console import Console, native
from desktop.demoservice import DemoService
from desktop.installation import LOOPBACK, SECRET, Installation, default_settings, encoded, free_port
from desktop.project import DOCTOR, GATEWAY_LIBRARY_NAME, ON_WINE

PATIENCE_S = 120.0

# Keys that the program does well without.
OPTIONAL = {"Log/level", "Version/version", "SysEnvironment/EnvType"}

# A key, a value that it cannot have, and what the doctor says of it.
MALFORMED = (
    ("IpAndPort/mserverip", "", "is empty"),
    ("IpAndPort/mserverip", "http://127.0.0.1", "is no host name or address"),
    ("IpAndPort/mserverhttpsport", "https", "is no whole number"),
    ("IpAndPort/mserverhttpsport", "0", "is 0, not between 1 and 65535"),
    ("IpAndPort/mserverhttpsport", "65536", "is 65536, not between 1 and 65535"),
    ("ihttpInfo/iHttpMode", "http", "is no whole number"),
    ("Authorization/tenantid", "", "is empty"),
    ("Authorization/xcafirst", "not base64!", "is not Base64"),
    ("Authorization/xcafirst", encoded("密钥"), "is not Base64 of a text in ASCII"),
    ("url/hoturl", "robot/v1/hot-questions", "is no path of a service"),
    ("url/askquesturl", "", "is empty"),
    ("url/itreporturl", "it.example/report", "is no address"),
    ("HotRecommendation/recommendSize", "0", "is 0, not between 1"),
    ("ProblemAssociation/recommendSize", "22", "is 22, not between 1 and 21"),
    ("QuestAndAnw/channelId", "three", "is no whole number"),
    ("SysguardPort/port1", "-1", "is -1, not between 1 and 65535"),
    ("Log/level", "LOUD", "is no level"),
)

# What the service does wrong in which call, and what the doctor says of it.
FAULTS = (
    ("hot", "error", None, "hot questions: the service refuses"),
    ("hot", "broken-json", None, "hot questions: the reply is no JSON object"),
    # How much of the reply has arrived decides what is said of it.
    ("hot", "drop", None, "hot questions: "),
    ("hot", "no-answer", None, "hot questions: no reply within 1 s"),
    ("ask", "http", 500, "an answer: InternalServerError"),
    ("ask", "empty", None, "an answer: "),
    ("ask", "empty-reply", None, "an answer: the reply is empty"),
    ("association", "truncate", None, "suggestions: "),
)


# What the registry holds, on Windows; elsewhere a settings file of its name in the program's folder.
AGENT = "Software\\VDAgent\\LogonInfo"
VPN_CLIENT = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Ostrel NORVIK VPN"

# The first bytes of a library of Windows that is made for 32 bits.
LIBRARY_OF_32_BITS = (b"MZ".ljust(0x3c, b"\0") + (0x40).to_bytes(4, "little")
                      + b"PE\0\0" + (0x014c).to_bytes(2, "little")).ljust(1024, b"\0")

# The fonts of a machine that has none.
NO_FONTS = """<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig><dir>{folder}</dir><cachedir>{folder}</cachedir></fontconfig>
"""

NOBODY = "65534"


class DoctorTest(unittest.TestCase):
    service: DemoService
    console: Console
    as_user: tuple[str, ...] = ()
    doctor = DOCTOR

    @classmethod
    def setUpClass(cls) -> None:
        folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory(prefix="miravel-test-")))
        cls.service = cls.enterClassContext(DemoService(folder, https=True))
        cls.console = cls.enterClassContext(Console(folder))

    def setUp(self) -> None:
        self.private = Path(self.enterContext(tempfile.TemporaryDirectory(prefix="miravel-test-")))
        self.installation = Installation(self.private / "installation")
        self.installation.use_service(self.service.http_port)
        self.folder = self.installation.program.parent
        self.environment: dict[str, str] = {}

    def examine(self, *arguments: str, folder: Path | None = None) -> tuple[int, str]:
        """The doctor's exit status and what it says."""
        return self.console.run(self.doctor, folder or self.folder, *arguments,
                                patience_s=PATIENCE_S, through=self.as_user, **self.environment)

    @contextlib.contextmanager
    def registry(self, key: str, name: str, value: str) -> Iterator[None]:
        """Inside, this value is in the machine's registry."""
        prefix = self.console.prefix
        if prefix is not None:
            prefix.set_registry_text(f"HKLM\\{key}", name, value)
            try:
                yield
            finally:
                prefix.run("reg", "delete", f"HKLM\\{key}", "/f")
            return
        file = self.folder / f"HKEY_LOCAL_MACHINE\\{key}"
        escaped = value.replace("\\", "\\\\")
        file.write_text(f"[General]\n{name}={escaped}\n", encoding="ascii")
        try:
            yield
        finally:
            file.unlink()

    def assert_mend(self, complaint: str, *arguments: str) -> str:
        """The doctor makes this complaint and says what to do about it."""
        status, said = self.examine(*arguments)
        self.assertEqual(1, status, said)
        lines = said.splitlines()
        at = [number for number, line in enumerate(lines)
              if line.startswith("  MEND  ") and complaint in line]
        self.assertTrue(at, said)
        self.assertTrue(lines[at[0] + 1].startswith("        -> "), said)
        return said

    def test_all_is_well(self) -> None:
        status, said = self.examine()
        self.assertEqual(0, status, said)
        self.assertNotIn("MEND", said)
        self.assertNotIn("note", said)
        self.assertTrue(said.endswith("All is well.\n"), said)
        for call in ("hot questions: 40 questions", "suggestions: 10 questions", "an answer: "):
            self.assertIn(call, said)

    def test_https_is_well(self) -> None:
        assert self.service.https_port is not None
        self.installation.use_service(self.service.https_port, https=True)
        status, said = self.examine()
        self.assertEqual(0, status, said)

    def test_shortcut_layout_is_well(self) -> None:
        for name in ("config", "log"):
            shutil.move(self.installation.root / name, self.folder / name)
        status, said = self.examine("--shortcut")
        self.assertEqual(0, status, said)
        self.assertIn("CommonTerminal.ini are not there", said)
        self.assert_mend("Miravel.ini is not there")

    def test_missing_keys_are_named(self) -> None:
        for key in default_settings():
            with self.subTest(key):
                value = self.installation.settings[key]
                self.installation.settings.remove(key)
                status, said = self.examine("--wait", "5")
                self.assertIn(f"{key} is missing: without it ", said)
                self.assertEqual(0 if key in OPTIONAL else 1, status, said)
                self.installation.settings.update({key: value})

    def test_malformed_values_are_named(self) -> None:
        for key, value, complaint in MALFORMED:
            with self.subTest(f"{key}={value}"):
                good = self.installation.settings[key]
                self.installation.settings.update({key: value})
                self.assert_mend(f"{key} {complaint}", "--wait", "5")
                self.installation.settings.update({key: good})

    def test_value_read_as_a_list_is_named(self) -> None:
        file = self.installation.root / "config/Miravel.ini"
        text = file.read_text(encoding="ascii").replace("currentDomain=desktop",
                                                        "currentDomain=desk, top")
        file.write_text(text, encoding="ascii")
        self.assert_mend("QuestAndAnw/currentDomain is read as a list")

    def test_byte_order_mark_is_named(self) -> None:
        file = self.installation.root / "config/Miravel.ini"
        file.write_bytes(b"\xef\xbb\xbf" + file.read_bytes())
        self.assert_mend("begins with a byte-order mark")

    def test_missing_files_are_named(self) -> None:
        root = self.installation.root
        for path, complaint in ((root / "log", "log is not there"),
                                (self.folder / "LocalQA", "LocalQA: 0"),
                                (root / "config", "Miravel.ini is not there")):
            with self.subTest(path.name):
                shutil.rmtree(path)
                self.assert_mend(complaint)

    def test_files_that_may_miss_are_only_noted(self) -> None:
        root = self.installation.root
        for path in (root / "config/OpenSourceLicense.txt", root / "config/CommonTerminal.ini",
                     self.installation.program):
            path.unlink()
        status, said = self.examine()
        self.assertEqual(0, status, said)
        self.assertEqual(3, said.count("\n  note  "), said)

    def test_service_that_fails_is_told_of(self) -> None:
        for call, kind, argument, complaint in FAULTS:
            with self.subTest(f"{call} {kind}"):
                self.service.fault(call, kind, arg=argument)
                self.assert_mend(complaint, "--wait", "1" if kind == "no-answer" else "20")

    def test_suggestions_that_come_too_late_are_told_of(self) -> None:
        self.service.fault("association", "delay", arg=600, times=3)
        self.assert_mend("suggestions: the reply took ")

    def test_wrong_secret_is_told_of_and_never_shown(self) -> None:
        wrong = "wrong-" + SECRET
        self.installation.settings.update({"Authorization/xcasecond": encoded(wrong)})
        said = self.assert_mend("hot questions: AuthenticationRequiredError", "--verbose")
        self.assertIn("The service refuses the signature", said)
        self.assertIn("        | url:http://127.0.0.1", said)
        self.assertNotIn(wrong, said)
        self.assertNotIn(encoded(wrong), said)

    def test_wrong_path_is_told_of(self) -> None:
        self.installation.settings.update({"url/askquesturl": "/robot/v2/answers"})
        said = self.assert_mend("an answer: ContentNotFoundError")
        self.assertIn("correct url/askquesturl", said)

    def test_https_where_http_is_spoken_is_told_of(self) -> None:
        self.installation.settings.update({"ihttpInfo/iHttpMode": "1"})
        said = self.assert_mend("hot questions: ")
        self.assertIn("See whether ihttpInfo/iHttpMode fits", said)

    def test_port_that_nobody_listens_on_is_told_of(self) -> None:
        port = free_port()
        self.installation.use_service(port)
        said = self.assert_mend(f"nothing listens at 127.0.0.1:{port}")
        self.assertNotIn("The service\n", said)

    def test_unknown_name_is_told_of(self) -> None:
        self.installation.settings.update({"IpAndPort/mserverip": "no-such-host.invalid"})
        self.assert_mend("the name no-such-host.invalid is not known here")

    def test_gateway_library_that_cannot_be_loaded_is_told_of(self) -> None:
        (self.private / GATEWAY_LIBRARY_NAME).write_bytes(b"This is no library.")
        search_path = "WINEPATH" if ON_WINE else "LD_LIBRARY_PATH"
        self.environment = {search_path: native(self.private)}
        said = self.assert_mend("KorVpnTool is there but cannot be used: ")
        self.assertIn("Install the 64-bit VPN client anew", said)

    def test_absent_gateway_library_is_well(self) -> None:
        status, said = self.examine()
        self.assertEqual(0, status, said)
        self.assertIn("ok    KorVpnTool is not here", said)

    def test_guard_port_that_another_program_has_is_told_of(self) -> None:
        with socket.socket() as other:
            other.bind((LOOPBACK, 0))
            other.listen()
            port = other.getsockname()[1]
            self.installation.settings.update({"SysguardPort/port1": str(port)})
            what = f"the guard tool's port {port} is "
            if ON_WINE:  # which does not know this system's processes
                status, said = self.examine()
                self.assertEqual(0, status, said)
                self.assertIn(what + "in use, and the system does not tell by whom", said)
            else:
                said = self.assert_mend(what + "taken by ")
                self.assertRegex(said, rf"taken by python3[.0-9]*, process {os.getpid()}\n")
        status, said = self.examine()
        self.assertEqual(0, status, said)
        self.assertIn(f"the guard tool's port {port} is free", said)

    def test_guard_port_of_the_program_itself_is_well(self) -> None:
        if ON_WINE:
            self.skipTest("Wine does not tell whose a port is, not even of its own programs")
        program = self.private / "Miravel-listens"
        shutil.copy(sys.executable, program)
        port = free_port()
        self.installation.settings.update({"SysguardPort/port1": str(port)})
        script = (f"import socket, time; s = socket.create_server(('{LOOPBACK}', {port}));"
                  " print('listens', flush=True); time.sleep(600)")
        with subprocess.Popen([program, "-I", "-c", script], stdout=subprocess.PIPE) as running:
            try:
                assert running.stdout is not None
                running.stdout.readline()
                status, said = self.examine()
            finally:
                running.kill()
        self.assertEqual(0, status, said)
        self.assertIn(f"the guard tool's port {port} is the running program's", said)

    def test_font_is_told_of(self) -> None:
        status, said = self.examine()
        self.assertEqual(0, status, said)
        font = "" if ON_WINE else " is not here, Noto Sans CJK SC stands in for it"
        self.assertIn(f"  ok    the font Microsoft YaHei{font}\n", said)

    @unittest.skipIf(ON_WINE, "the fonts of Wine are this system's too")
    def test_machine_without_a_font_for_chinese_is_told_of(self) -> None:
        fonts = self.private / "fonts"
        fonts.mkdir()
        configuration = self.private / "fonts.conf"
        configuration.write_text(NO_FONTS.format(folder=fonts), encoding="utf-8")
        self.environment = {**self.environment, "FONTCONFIG_FILE": str(configuration)}
        said = self.assert_mend("the font Microsoft YaHei is not here, nor another one for Chinese")
        self.assertIn("To mend: 1\n", said)

    @unittest.skipUnless(ON_WINE, "only Windows comes with the font")
    def test_font_that_is_missing_is_noted(self) -> None:
        prefix = self.console.prefix
        assert prefix is not None
        key, name = r"HKCU\Software\Wine\Fonts\Replacements", "Microsoft YaHei"
        stand_in = prefix.run("reg", "query", key, "/v", name).split("REG_SZ")[1].strip()
        prefix.run("reg", "delete", key, "/v", name, "/f")
        try:
            status, said = self.examine()
        finally:
            prefix.set_registry_text(key, name, stand_in)
        self.assertEqual(0, status, said)
        self.assertRegex(said, "  note  the font Microsoft YaHei is not here, .+ stands in for it\n")

    def test_users_name_is_told_of(self) -> None:
        _, said = self.examine()
        self.assertIn("ok    the user's name in the client's settings: demo.user\n", said)
        self.installation.client_settings.remove("RemLastUser/lastuser")
        status, said = self.examine()
        self.assertEqual(0, status, said)
        self.assertIn("note  there is no user's name in the client's settings\n", said)

    def test_users_name_in_the_registry_is_told_of(self) -> None:
        for name in ("config", "log"):
            shutil.move(self.installation.root / name, self.folder / name)
        status, said = self.examine("--shortcut")
        self.assertEqual(0, status, said)
        self.assertIn("note  there is no user's name in the registry\n", said)
        with self.registry(AGENT, "iRAIUser", "agent.user"):
            status, said = self.examine("--shortcut")
        self.assertEqual(0, status, said)
        self.assertIn("ok    the user's name in the registry: agent.user\n", said)

    def test_vpn_client_of_the_registry_is_told_of(self) -> None:
        _, said = self.examine()
        self.assertIn("ok    the registry names no VPN client", said)
        with self.registry(VPN_CLIENT, "DisplayIcon", native(self.private) + "\\client.exe"):
            status, said = self.examine()
        self.assertEqual(0, status, said)
        self.assertIn("note  the registry says that the VPN client is at ", said)

    @unittest.skipUnless(ON_WINE, "the libraries of Windows are meant")
    def test_libraries_of_32_bits_are_told_of(self) -> None:
        for name in ("KorVpnTool", "toolSDK"):
            (self.private / f"{name}.dll").write_bytes(LIBRARY_OF_32_BITS)
        self.environment = {**self.environment, "WINEPATH": native(self.private)}
        with self.registry(VPN_CLIENT, "DisplayIcon", native(self.private) + "\\client.exe"):
            said = self.assert_mend("KorVpnTool is there but cannot be used: it is made for 32 bits, "
                                    "the program for 64 (")
        self.assertIn("MEND  toolSDK is there but cannot be used: it is made for 32 bits, the program "
                      "for 64 (", said)

    def test_folders_that_the_user_may_not_write_to_are_told_of(self) -> None:
        (self.folder / "gif").mkdir()
        if os.geteuid() == 0 and not ON_WINE:  # who may write everywhere
            self.as_user = ("setpriv", f"--reuid={NOBODY}", "--clear-groups", "--")
            self.doctor = Path(shutil.copy(DOCTOR, self.private))  # the build may be root's alone
            for path in (self.private, self.installation.root / "log", self.folder / "gif"):
                os.chown(path, int(NOBODY), -1)
        for folder, complaint in ((self.installation.root / "log", "log cannot be written to"),
                                  (self.folder / "gif", "gif cannot be written to")):
            with self.subTest(folder.name):
                folder.chmod(0o555)
                self.assert_mend(complaint)
                folder.chmod(0o755)

    def test_wrong_command_lines(self) -> None:
        for arguments in (("--no-such-option",), ("--wait", "0"), ("--wait", "soon"), ("second",)):
            with self.subTest(arguments):
                status, said = self.examine(*arguments)
                self.assertEqual(2, status, said)
        status, said = self.examine(folder=self.folder / "missing")
        self.assertEqual(2, status, said)


if __name__ == "__main__":
    unittest.main()
