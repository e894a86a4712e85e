"""Packages that the tests install."""

from __future__ import annotations

import os
import shutil
import subprocess
from pathlib import Path
from typing import Mapping

from desktop.project import BUILD, SOURCE

GONE_SINCE = "bin/imageformats/qold.dll"

_TOOL_S = 300.0


class PackageError(Exception):
    """No packages could be made; the text is what the maker has to say."""


def make_packages(build: Path, target: Path, version: str | None = None,
                  environment: Mapping[str, str] | None = None) -> None:
    """Makes every file of a release from a finished build."""
    command = ["/usr/bin/python3", "-B", str(SOURCE / "packaging/windows/package"), str(build), str(target)]
    if version:
        command += ["--version", version]
    done = subprocess.run(command, env={**os.environ, **(environment or {})}, check=False,
                          capture_output=True, text=True, timeout=_TOOL_S)
    if done.returncode != 0:
        raise PackageError(done.stderr)


def package_in(folder: Path) -> Path:
    """The installation package among the files of a release."""
    [package] = folder.glob("*.msi")
    return package


def older_build(folder: Path) -> Path:
    """A build as an earlier version might have been: with a library that is gone since, without a
    program that has come since."""
    shutil.copytree(BUILD / "bin", folder / "bin")
    shutil.copytree(BUILD / "setup", folder / "setup")
    shutil.copytree(BUILD / "symbols", folder / "symbols")
    shutil.copytree(BUILD / "translations", folder / "translations")
    for name in ("CMakeCache.txt", "Miravel.sample.ini"):
        shutil.copy(BUILD / name, folder / name)
    (folder / "bin/doctor.exe").unlink()
    shutil.copy(folder / "bin/imageformats/qgif.dll", folder / GONE_SINCE)
    return folder


def rows(package: Path, table: str) -> list[list[str]]:
    """The rows of a table, as msitools writes them."""
    text = subprocess.run(["msiinfo", "export", str(package), table], check=True, capture_output=True,
                          timeout=_TOOL_S).stdout.decode("utf-8")
    return [line.split("\t") for line in text.split("\r\n")[3:] if line]
