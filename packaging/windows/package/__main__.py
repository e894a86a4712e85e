"""Makes all files of a release from a finished build.

Usage: python3 packaging/windows/package <build folder> <target folder> [--version X.Y.Z]

--version is for tests, which need packages of other versions."""

from __future__ import annotations

import argparse
import hashlib
import shutil
import sys
import tempfile
from pathlib import Path

from bundle import write_zip
from msi import make_msi
from parts import parts_list
from payload import FOLDERS, SHARED_FOLDERS, PackagedFile, payload
from release import Release, time_of_commit, value_of_build, version_of_project
from signing import sign

_LIBRARY = "setup/miravelsetup.dll"


def signed(files: list[PackagedFile], folder: Path) -> list[PackagedFile]:
    """Copies of the files in folder, the programs and libraries among them signed."""
    copies = []
    for file in files:
        copy = folder / file.place
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(file.source, copy)
        if file.name.lower().endswith((".exe", ".dll")):
            sign(copy)
        copies.append(PackagedFile(copy, file.folder, file.name))
    return copies


def make_release(release: Release, build: Path, target: Path, work: Path) -> None:
    """Writes every file of the release into target."""
    files = signed(payload(build), work / "files")
    library = work / "miravelsetup.dll"
    shutil.copyfile(build / _LIBRARY, library)
    sign(library)
    package = target / f"{release.name}.msi"
    (work / "msi").mkdir()
    make_msi(package, work / "msi", release, files, library)
    sign(package)
    write_zip(target / f"{release.name}-portable.zip", release.epoch,
              {f"Miravel/{file.place}": file.source for file in files},
              [f"Miravel/{FOLDERS[key]}" for key in SHARED_FOLDERS])
    write_zip(target / f"{release.name}-symbols.zip", release.epoch,
              {path.name: path for path in (build / "symbols").glob("*.debug")})
    (target / f"{release.name}-parts.cdx.json").write_text(parts_list(release, files),
                                                           encoding="utf-8")


def write_sums(target: Path) -> str:
    """SHA-256 sums of everything in target, in the form that sha256sum reads."""
    lines = [f"{hashlib.sha256(path.read_bytes()).hexdigest()}  {path.name}\n"
             for path in sorted(target.iterdir()) if path.name != "SHA256SUMS"]
    (target / "SHA256SUMS").write_text("".join(lines), encoding="ascii")
    return "".join(lines)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=Path)
    parser.add_argument("target", type=Path)
    parser.add_argument("--version", default=version_of_project())
    options = parser.parse_args()
    build = options.build.resolve()
    target = options.target.resolve()
    release = Release(options.version, value_of_build(build, "MIRAVEL_COMPANY"), time_of_commit())
    if target.exists():
        shutil.rmtree(target)
    target.mkdir(parents=True)
    with tempfile.TemporaryDirectory(prefix="miravel-package-") as work:
        make_release(release, build, target, Path(work))
    print(write_sums(target), end="")
    return 0


if __name__ == "__main__":
    sys.exit(main())
