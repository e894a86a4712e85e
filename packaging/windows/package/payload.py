"""The files that a package brings, each with its place on the user's machine."""

from __future__ import annotations

import hashlib
from dataclasses import dataclass
from pathlib import Path

from release import PROJECT

# Folders of the installation by the name that they have in the package's tables, below the
# program's own, as in the layout that stands alone.
FOLDERS = {
    "INSTALLFOLDER": "",
    "PLATFORMS": "platforms",
    "IMAGEFORMATS": "imageformats",
    "STYLES": "styles",
    "LOCALQA": "LocalQA",
    "TRANSLATIONS": "translations",
    "CONFIGFOLDER": "config",
    "LOGFOLDER": "log",
    "GIFFOLDER": "gif",
}
# Made empty: every user of the machine writes there.
SHARED_FOLDERS = ("LOGFOLDER", "GIFFOLDER")
PROGRAM = "Miravel.exe"


@dataclass(frozen=True)
class PackagedFile:
    """One file of the package."""

    source: Path
    folder: str
    """A name of FOLDERS."""
    name: str

    @property
    def place(self) -> str:
        """The place below the program's folder, with forward slashes."""
        below = FOLDERS[self.folder]
        return f"{below}/{self.name}" if below else self.name

    @property
    def key(self) -> str:
        """The name in the package's tables."""
        return "f" + hashlib.md5(self.place.encode()).hexdigest()[:16]

    @property
    def md5(self) -> str:
        return hashlib.md5(self.source.read_bytes()).hexdigest()


def _folder_of(place: str) -> str:
    for folder, below in FOLDERS.items():
        if below == place:
            return folder
    raise SystemExit(f"package: there is no place for files in {place!r}; add it to FOLDERS")


def payload(build: Path) -> list[PackagedFile]:
    """Everything in a finished build's folder of the program, and what lies in the folders beside it,
    in the order in which it is packed."""
    files = []
    program_folder = build / "bin"
    for path in sorted(program_folder.rglob("*")):
        if path.is_file():
            place = path.relative_to(program_folder).parent.as_posix()
            files.append(PackagedFile(path, _folder_of("" if place == "." else place), path.name))
    for path in sorted((PROJECT / "resources/LocalQA").glob("*.txt")):
        files.append(PackagedFile(path, "LOCALQA", path.name))
    translations = sorted((build / "translations").glob("Miravel_*.qm"))
    if not translations:
        raise SystemExit(f"package: there is no translation in {build / 'translations'}")
    files += [PackagedFile(path, "TRANSLATIONS", path.name) for path in translations]
    files.append(PackagedFile(build / "Miravel.sample.ini", "CONFIGFOLDER", "Miravel.sample.ini"))
    files.append(PackagedFile(PROJECT / "resources/OpenSourceLicense.txt", "CONFIGFOLDER",
                              "OpenSourceLicense.txt"))
    return files
