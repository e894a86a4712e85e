"""What is in the files of a release, as their own tables tell."""

from __future__ import annotations

import hashlib
import json
import os
import re
import shutil
import subprocess
import tempfile
import time
import unittest
import zipfile
from pathlib import Path

from desktop.project import BUILD, SOURCE
from packages import PackageError, make_packages, package_in, rows

PACKAGING = SOURCE / "packaging/windows"
CERTIFICATE_DAYS = "2"
SIGNER = "Miravel test"
SHARED_RIGHTS = "D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1301bf;;;BU)"


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory(prefix="miravel-package-")))
        cls.release = cls.folder / "release"
        make_packages(BUILD, cls.release)
        cls.version = re.search(r"VERSION (\d+\.\d+\.\d+)",
                                (SOURCE / "CMakeLists.txt").read_text(encoding="utf-8"))[1]

    def table(self, name: str) -> list[list[str]]:
        return rows(package_in(self.release), name)

    def one(self, pattern: str) -> Path:
        [found] = self.release.glob(pattern)
        return found

    def folder_files(self) -> set[str]:
        """The folder of the build, and what lies beside it."""
        built = {path.relative_to(BUILD / "bin").as_posix()
                 for path in (BUILD / "bin").rglob("*") if path.is_file()}
        library = {f"LocalQA/{path.name}" for path in (SOURCE / "resources/LocalQA").glob("*.txt")}
        translations = {f"translations/{path.stem}.qm"
                        for path in (SOURCE / "translations").glob("Miravel_*.ts")}
        return built | library | translations | {"config/Miravel.sample.ini", "config/OpenSourceLicense.txt"}

    def test_folder_package_and_zip_hold_the_same_files(self) -> None:
        folders = {row[0]: row[2].split("|")[-1] for row in self.table("Directory")}
        component = {row[0]: row[2] for row in self.table("Component")}
        packaged = set()
        for row in self.table("File"):
            folder = component[row[1]]
            name = row[2].split("|")[-1]
            packaged.add(name if folder == "INSTALLFOLDER" else f"{folders[folder]}/{name}")
        self.assertEqual(self.folder_files(), packaged)
        with zipfile.ZipFile(self.one("*-portable.zip")) as archive:
            zipped = {name for name in archive.namelist() if not name.endswith("/")}
            self.assertEqual({f"Miravel/{name}" for name in self.folder_files()}, zipped)
            self.assertEqual((BUILD / "bin/Miravel.exe").read_bytes(),
                             archive.read("Miravel/Miravel.exe"))
            self.assertIn("Miravel/log/", archive.namelist())

    def test_second_making_later_elsewhere_gives_the_same_bytes(self) -> None:
        build = self.folder / "other place/build"
        for name in ("bin", "setup", "symbols", "translations"):
            shutil.copytree(BUILD / name, build / name)
        for name in ("CMakeCache.txt", "Miravel.sample.ini"):
            shutil.copy(BUILD / name, build / name)
        time.sleep(1.1)  # the clock is what may not get in
        again = self.folder / "again"
        make_packages(build, again, environment={"TZ": "Asia/Shanghai"})
        sums = (self.release / "SHA256SUMS").read_text()
        self.assertEqual(sums, (again / "SHA256SUMS").read_text())
        print("\n" + sums)

    def test_bytes_do_not_tell_where_the_checkout_lies(self) -> None:
        """Whether a compiler cache has handed the sources over by their relative paths or not."""
        command = subprocess.run(["ninja", "-C", BUILD, "-t", "commands", "bin/Miravel.exe"], check=True,
                                 capture_output=True, text=True).stdout.splitlines()[-1]
        libraries = [word for word in command.split() if word.endswith("libQt5Core.a")]
        self.assertEqual(["imports/libQt5Core.a"], libraries)  # sorted by path, which orders the imports
        symbols = BUILD / "symbols/Miravel.exe.debug"
        paths = subprocess.run(["strings", "-a", symbols], check=True, capture_output=True,
                               text=True).stdout.splitlines()
        self.assertIn("app/startup", paths)
        libraries_place = (BUILD.parent / "windows-sdk").resolve()
        found = {path for path in paths
                 if path.startswith(("../", f"{SOURCE}/", f"{libraries_place}/"))}
        self.assertEqual(set(), found)

    def test_clock_that_cannot_be_set_at_first_is_tried_again(self) -> None:
        """Killed runs leave names behind that keep faketime from starting."""
        stand_in = self.folder / "stand-in/faketime"
        stand_in.parent.mkdir()
        tried = self.folder / "tried"
        stand_in.write_text(f'#!/bin/sh\nif [ -e {tried} ]; then exec {shutil.which("faketime")} "$@"; fi\n'
                            f'touch {tried}\necho "faketime: shm_open: File exists" >&2\nexit 1\n',
                            encoding="ascii")
        stand_in.chmod(0o755)
        again = self.folder / "after-a-try"
        make_packages(BUILD, again, environment={"PATH": f"{stand_in.parent}:{os.environ['PATH']}"})
        self.assertTrue(tried.exists())
        self.assertEqual((self.release / "SHA256SUMS").read_text(), (again / "SHA256SUMS").read_text())

    def test_sums_are_those_of_the_files(self) -> None:
        lines = (self.release / "SHA256SUMS").read_text().splitlines()
        self.assertEqual({path.name for path in self.release.iterdir()} - {"SHA256SUMS"},
                         {line.split("  ")[1] for line in lines})
        for line in lines:
            expected, name = line.split("  ")
            self.assertEqual(expected, hashlib.sha256((self.release / name).read_bytes()).hexdigest())

    def test_one_version_everywhere(self) -> None:
        self.assertTrue(all(self.version in path.name for path in self.release.iterdir()
                            if path.name != "SHA256SUMS"))
        self.assertIn(["ProductVersion", self.version], self.table("Property"))
        with zipfile.ZipFile(self.one("*-portable.zip")) as archive:
            self.assertIn(f"version={self.version}\r\n",
                          archive.read("Miravel/config/Miravel.sample.ini").decode())
        versions = {row[2].split("|")[-1]: row[4] for row in self.table("File")}
        self.assertEqual(self.version + ".0", versions["Miravel.exe"])
        resource = subprocess.run(["strings", "-el", BUILD / "bin/Miravel.exe"], check=True,
                                  capture_output=True, text=True).stdout
        for text in ("CompanyName", "Ostrel", "LegalCopyright", self.version):
            self.assertIn(text, resource)

    def test_product_code_follows_from_the_version(self) -> None:
        other = self.folder / "other"
        make_packages(BUILD, other, "1.0.1")
        codes = [dict(rows(package_in(folder), "Property")) for folder in (self.release, other)]
        self.assertNotEqual(codes[0]["ProductCode"], codes[1]["ProductCode"])
        self.assertEqual(codes[0]["UpgradeCode"], codes[1]["UpgradeCode"])

    def test_every_shipped_translation_can_be_asked_for(self) -> None:
        languages = {path.stem.split("_")[1] for path in (SOURCE / "translations").glob("Miravel_*.ts")}
        self.assertEqual({f"Miravel_{language}.qm" for language in languages},
                         {row[3] for row in self.table("DuplicateFile")})
        conditions = {row[0]: row[4] for row in self.table("Component")}
        accepted = (PACKAGING / "setup/rolloutvalues.cpp").read_text(encoding="utf-8")
        for language in languages:
            self.assertEqual(f'TRANSLATION="{language}"', conditions[f"Translation_{language}"])
            self.assertRegex(accepted, rf'values\.translation, {{.*"{language}"')

    def test_every_user_may_write_where_the_program_does(self) -> None:
        """The only place to see it: Wine does not know this table."""
        rights = {row[1]: row[3] for row in self.table("MsiLockPermissionsEx")}
        self.assertEqual({"LOGFOLDER": SHARED_RIGHTS, "GIFFOLDER": SHARED_RIGHTS}, rights)
        self.assertLessEqual({"LOGFOLDER", "GIFFOLDER"}, {row[0] for row in self.table("CreateFolder")})

    def test_library_that_the_package_runs_is_hardened_and_needs_only_the_system(self) -> None:
        text = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", BUILD / "setup/miravelsetup.dll"],
                              check=True, capture_output=True, text=True).stdout
        for protection in ("HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"):
            self.assertIn(protection, text)
        needed = {name.lower() for name in re.findall(r"DLL Name: (\S+)", text)}
        self.assertLessEqual(needed, {"advapi32.dll", "kernel32.dll", "msi.dll", "msvcrt.dll", "user32.dll",
                                      "userenv.dll", "wtsapi32.dll"})

    def test_nothing_restarts_the_machine_or_ends_a_program_by_force(self) -> None:
        properties = dict(self.table("Property"))
        self.assertEqual("ReallySuppress", properties["REBOOT"])
        self.assertEqual("Disable", properties["MSIRESTARTMANAGERCONTROL"])

    def test_copies_are_asked_to_close_once(self) -> None:
        """By the old version where there is one: it goes first."""
        conditions = {row[0]: row[1] for row in self.table("InstallExecuteSequence")}
        self.assertEqual("NOT WIX_UPGRADE_DETECTED", conditions["CloseRunning"])

    def test_settings_and_logs_are_no_files_of_the_package(self) -> None:
        names = {row[2].split("|")[-1] for row in self.table("File")}
        self.assertFalse({"Miravel.ini", "Miravel.log"} & names)
        removed = {row[2]: row[3] for row in self.table("RemoveFile")}
        # Properties that are empty unless REMOVEDATA=1.
        self.assertTrue(all(folder.startswith("REMOVE") for folder in removed.values()), removed)
        conditions = {row[0]: row[1] for row in self.table("InstallExecuteSequence")}
        for action in ("SetREMOVECONFIG", "SetREMOVELOG", "SetREMOVELOCALQA"):
            self.assertIn('REMOVEDATA="1"', conditions[action])
            self.assertIn("NOT UPGRADINGPRODUCTCODE", conditions[action])

    def test_old_version_goes_first_and_repair_writes_every_file(self) -> None:
        sequence = {row[0]: int(row[2]) for row in self.table("InstallExecuteSequence")}
        self.assertEqual(sequence["InstallInitialize"] + 1, sequence["RemoveExistingProducts"])
        self.assertLess(sequence["SetAnswersAside"], sequence["RemoveFiles"])
        self.assertGreater(sequence["PutAnswersBack"], sequence["InstallFiles"])
        self.assertEqual("amus", dict(self.table("Property"))["REINSTALLMODE"])

    def test_every_public_property_is_documented(self) -> None:
        text = (SOURCE / "docs/deployment.md").read_text(encoding="utf-8")
        tables = (PACKAGING / "package/tables.py").read_text(encoding="utf-8")
        names = re.findall(r'"([A-Z]+)"', tables.split("PUBLIC_PROPERTIES = (")[1].split(")")[0])
        self.assertGreater(len(names), 10)
        used = "".join(path.read_text(encoding="utf-8")
                       for path in (SOURCE / "tests/packaging").glob("test_*.py"))
        used += (SOURCE / "tests/packaging/installationtest.py").read_text(encoding="utf-8")
        for name in names:
            self.assertIn(f"| `{name}` |", text)
            self.assertRegex(used, rf'"{name}"|{name}=', f"{name} is in no test")

    def test_list_of_parts_names_every_library_with_its_licence(self) -> None:
        document = json.loads(self.one("*.cdx.json").read_text(encoding="utf-8"))
        self.assertEqual("CycloneDX", document["bomFormat"])
        components = [document["metadata"]["component"], *document["components"]]
        listed = [file["name"] for component in components for file in component.get("components", [])]
        self.assertEqual(sorted(self.folder_files()), sorted(listed))
        for component in components:
            self.assertTrue(component["licenses"], component["name"])
            self.assertTrue(component["version"], component["name"])
        versions = {component["name"]: component["version"] for component in components}
        self.assertEqual("5.15.8", versions["Qt"])
        print("\n" + ", ".join(f"{name} {version}" for name, version in versions.items()))

    def test_symbols_of_the_program_are_kept_and_not_shipped(self) -> None:
        with zipfile.ZipFile(self.one("*-symbols.zip")) as archive:
            size = archive.getinfo("Miravel.exe.debug").file_size
        self.assertGreater(size, 1 << 20)
        sections = subprocess.run(["x86_64-w64-mingw32-objdump", "-h", BUILD / "bin/Miravel.exe"],
                                  check=True, capture_output=True, text=True).stdout
        self.assertNotIn(".debug", sections)


class SigningTest(unittest.TestCase):
    def setUp(self) -> None:
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory(prefix="miravel-sign-")))

    def signer(self) -> Path:
        """A command that signs the file given to it, with a certificate made here."""
        key, certificate = self.folder / "key.pem", self.folder / "certificate.pem"
        subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", key,
                        "-out", certificate, "-days", CERTIFICATE_DAYS, "-subj", f"/CN={SIGNER}",
                        "-addext", "extendedKeyUsage=codeSigning"], check=True, capture_output=True)
        command = self.folder / "sign.sh"
        command.write_text('#!/bin/sh\nset -e\n'
                           f'osslsigncode sign -certs {certificate} -key {key} -in "$1" -out "$1.signed"\n'
                           'mv "$1.signed" "$1"\n', encoding="ascii")
        command.chmod(0o755)
        return command

    def assert_signed(self, file: Path) -> None:
        done = subprocess.run(["osslsigncode", "verify", "-CAfile", self.folder / "certificate.pem",
                               "-in", file], check=False, capture_output=True, text=True)
        self.assertEqual(0, done.returncode, done.stdout[-1500:])
        self.assertIn(SIGNER, done.stdout)

    def test_programs_libraries_and_package_are_signed(self) -> None:
        release = self.folder / "release"
        make_packages(BUILD, release, environment={"MIRAVEL_SIGN_COMMAND": str(self.signer())})
        package = package_in(release)
        self.assert_signed(package)
        unpacked = self.folder / "unpacked"
        with zipfile.ZipFile(next(release.glob("*-portable.zip"))) as archive:
            archive.extractall(unpacked)
        binaries = [path for path in unpacked.rglob("*") if path.suffix in (".exe", ".dll")]
        self.assertEqual(16, len(binaries))
        for binary in binaries:
            self.assert_signed(binary)
        inside = self.folder / "inside"
        inside.mkdir()
        subprocess.run(["msiextract", "-C", inside, package], check=True, capture_output=True)
        programs = list(inside.rglob("Miravel.exe"))
        self.assertEqual(1, len(programs))
        self.assert_signed(programs[0])
        # Windows asks for the signature of what the package itself runs, too.
        library = self.folder / "miravelsetup.dll"
        library.write_bytes(subprocess.run(["msiinfo", "extract", package, "Binary.setup"], check=True,
                                           capture_output=True).stdout)
        self.assert_signed(library)

    def test_command_that_fails_ends_the_making(self) -> None:
        with self.assertRaisesRegex(PackageError, "the command in MIRAVEL_SIGN_COMMAND could not sign"):
            make_packages(BUILD, self.folder / "release",
                          environment={"MIRAVEL_SIGN_COMMAND": "false"})


if __name__ == "__main__":
    unittest.main()
