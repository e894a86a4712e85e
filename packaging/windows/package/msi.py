"""Makes the installation package."""

from __future__ import annotations

import hashlib
import os
import shutil
from pathlib import Path

import actions
import skeleton
import tables
from database import Database, insert
from fixedclock import FixedClock
from payload import PackagedFile
from release import PROJECT, Release
from versions import version_and_language

# What wixl leaves out because the skeleton has nothing for it.
_STANDARD_ACTIONS = {
    "RemoveRegistryValues": 2600,
    "RemoveShortcuts": 3200,
    "RemoveDuplicateFiles": 3400,
    "RemoveFiles": 3500,
    "RemoveFolders": 3600,
    "CreateFolders": 3700,
    "InstallFiles": 4000,
    "DuplicateFiles": 4210,
    "CreateShortcuts": 4500,
    "WriteRegistryValues": 5000,
}
_TEMPLATE = "x64;2052"


def _lay_out(work: Path, release: Release, files: list[PackagedFile], library: Path) -> list[PackagedFile]:
    """Copies everything into the folder where wixl runs, with the release's time."""
    copies = []
    for file in files:
        copy = work / file.key
        shutil.copyfile(file.source, copy)
        copies.append(PackagedFile(copy, file.folder, file.name))
    shutil.copyfile(PROJECT / "resources/Miravel.ico", work / skeleton.ICON)
    shutil.copyfile(library, work / skeleton.LIBRARY_FILE)
    for path in work.iterdir():
        os.utime(path, (release.epoch, release.epoch))
    return copies


def _content_sum(files: list[PackagedFile], library: Path, statements: list[str]) -> str:
    total = hashlib.sha256(library.read_bytes())
    for file in files:
        total.update(file.place.encode() + file.source.read_bytes())
    total.update("\n".join(statements).encode())
    return total.hexdigest()


def make_msi(target: Path, work: Path, release: Release, files: list[PackagedFile],
             library: Path) -> None:
    """Writes the package; work is an empty folder for it."""
    copies = _lay_out(work, release, files, library)
    clock = FixedClock(release.epoch)
    source = work / "miravel.wxs"
    source.write_bytes(skeleton.skeleton(release, copies))
    unfinished = work / "miravel.msi"
    # It goes on after what it does not understand; such a warning ends it.
    done = clock.run(["wixl", "--arch", "x64", "--output", unfinished.name, source.name], work,
                     {**os.environ, "G_DEBUG": "fatal-warnings"})
    if done.returncode != 0 or done.stderr.strip():
        raise SystemExit(f"package: wixl: {done.returncode} {done.stderr}")
    database = Database(unfinished, clock, work)
    database.set_code_page()
    versions = {}
    for file in copies:
        found = version_and_language(file.source)
        if found:
            versions[file.key] = found
    statements = tables.all_statements(release, copies, versions)
    for action in actions.actions(copies):
        statements += action.statements()
    for name, sequence in _STANDARD_ACTIONS.items():
        statements.append(f"DELETE FROM `InstallExecuteSequence` WHERE `Action`='{name}'")
        statements.append(insert("InstallExecuteSequence", {"Action": name, "Sequence": sequence}))
    database.execute(statements)
    database.set_summary("Miravel", release.company, _TEMPLATE,
                         release.package_code(_content_sum(copies, library, statements)))
    shutil.move(unfinished, target)
