"""The folder for a Windows machine is refused when something in it is not as it must be."""

from __future__ import annotations

import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import pefile

from desktop.project import BUILD, SOURCE

CRYPTO = "libcrypto-3-x64.dll"
PROTECTIONS = {"HIGH_ENTROPY_VA": 0x20, "DYNAMIC_BASE": 0x40, "NX_COMPAT": 0x100}
PROGRAMS = {"Miravel.exe": "Miravel", "doctor.exe": "Miravel doctor"}


def version_resource(program: Path) -> tuple[str, dict[str, str]]:
    """The number that the system compares, and the texts that the explorer shows."""
    with pefile.PE(program) as image:
        fixed = image.VS_FIXEDFILEINFO[0]
        numbers = (fixed.FileVersionMS >> 16, fixed.FileVersionMS & 0xffff,
                   fixed.FileVersionLS >> 16, fixed.FileVersionLS & 0xffff)
        tables = [entry for entry in image.FileInfo[0] if entry.Key == b"StringFileInfo"]
        texts = {key.decode(): value.decode() for table in tables[0].StringTable
                 for key, value in table.entries.items()}
    return ".".join(map(str, numbers)), texts


class FolderTest(unittest.TestCase):
    def setUp(self) -> None:
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory(prefix="miravel-folder-"))) / "bin"
        shutil.copytree(BUILD / "bin", self.folder)

    def check(self) -> subprocess.CompletedProcess[str]:
        return subprocess.run([SOURCE / "scripts/windows/folder.py", "check", self.folder], check=False,
                              capture_output=True, text=True)

    def assert_refused(self, problem: str) -> None:
        done = self.check()
        self.assertEqual(1, done.returncode, done.stdout)
        self.assertIn(f"windows folder: {problem}", done.stderr)

    def replace(self, name: str, old: bytes, new: bytes) -> None:
        """Overwrites a piece of a file, which keeps its length."""
        file = self.folder / name
        data = file.read_bytes()
        self.assertIn(old, data)
        file.write_bytes(data.replace(old, new.ljust(len(old), b"\0")))

    def test_folder_of_the_build_is_accepted(self) -> None:
        done = self.check()
        self.assertEqual(0, done.returncode, done.stderr)

    def test_missing_library(self) -> None:
        (self.folder / "Qt5Network.dll").unlink()
        self.assert_refused("Miravel.exe needs Qt5Network.dll, which is missing")

    def test_file_that_nothing_needs(self) -> None:
        shutil.copy(self.folder / "imageformats/qgif.dll", self.folder / "qold.dll")
        self.assert_refused("qold.dll is there but nothing needs it")

    def test_each_protection_on_each_file(self) -> None:
        originals = {path: path.read_bytes() for path in self.folder.rglob("*.*")}
        self.assertEqual(16, len(originals))
        for protection, bit in PROTECTIONS.items():
            for path, original in originals.items():
                with pefile.PE(data=original, fast_load=True) as image:
                    image.OPTIONAL_HEADER.DllCharacteristics &= ~bit
                    path.write_bytes(image.write())
            complaints = self.check().stderr
            for path in originals:
                with self.subTest(f"{path.name} {protection}"):
                    self.assertIn(f"windows folder: {path.name} does not have {protection}\n", complaints)

    def test_programs_tell_one_version_and_their_maker(self) -> None:
        version = re.search(r"VERSION (\d+\.\d+\.\d+)", (SOURCE / "CMakeLists.txt").read_text())
        assert version is not None
        for name, description in PROGRAMS.items():
            with self.subTest(name):
                number, texts = version_resource(self.folder / name)
                self.assertEqual(version[1] + ".0", number)
                self.assertEqual("Ostrel Technologies Co., Ltd.", texts.pop("CompanyName"))
                self.assertRegex(texts.pop("LegalCopyright"), "^© .*Ostrel")
                self.assertEqual({"FileDescription": description, "FileVersion": version[1],
                                  "InternalName": name.removesuffix(".exe"), "OriginalFilename": name,
                                  "ProductName": "Miravel", "ProductVersion": version[1]}, texts)

    def test_manifest_of_the_program(self) -> None:
        for old, new, problem in (
                (b'level="asInvoker"', b'level="highest"', "asks for other rights than its user's"),
                (b">true</longPathAware>", b"></longPathAware>", "cannot open long paths"),
                (b"{8e0f7a12-", b"{00000000-", "is not made for Windows 10")):
            with self.subTest(problem):
                original = (self.folder / "Miravel.exe").read_bytes()
                self.replace("Miravel.exe", old, new)
                self.assert_refused(f"Miravel.exe {problem}")
                (self.folder / "Miravel.exe").write_bytes(original)

    def test_openssl_that_reads_files_where_any_user_may_write(self) -> None:
        """As the tool chain's first build did."""
        original = (self.folder / CRYPTO).read_bytes()
        for name in (b"OPENSSLDIR", b"ENGINESDIR", b"MODULESDIR"):
            with self.subTest(name.decode()):
                [place] = {line for line in original.split(b"\0") if line.startswith(name + b": ")}
                self.replace(CRYPTO, place, name + b': "C:/opt/win/openssl"')
                self.assert_refused(f"{CRYPTO} names C:/opt/win/openssl, which is not under Program Files")
                (self.folder / CRYPTO).write_bytes(original)


if __name__ == "__main__":
    unittest.main()
