"""What a release is called, and everything about it that follows from its name."""

from __future__ import annotations

import os
import re
import subprocess
import uuid
from dataclasses import dataclass
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[3]

# Never changed: by it Windows knows all versions as one product.
UPGRADE_CODE = uuid.UUID("6d0f7f0a-5a0e-4b0c-9a53-0d4c8f6f1b52")
# Codes of products, packages and components are derived from names in here.
_NAMES = uuid.UUID("2f1c8c53-77c2-4c8e-8f0b-6a3a9f5f2c11")


def code(*names: str) -> str:
    """A code as packages write it, always the same for the same names."""
    return "{" + str(uuid.uuid5(_NAMES, "/".join(names))).upper() + "}"


def version_of_project() -> str:
    """The one version number, which stands in CMakeLists.txt."""
    text = (PROJECT / "CMakeLists.txt").read_text(encoding="utf-8")
    found = re.search(r"project\(Miravel VERSION (\d+\.\d+\.\d+)", text)
    if not found:
        raise SystemExit("package: no version in CMakeLists.txt")
    return found[1]


def value_of_build(build: Path, name: str) -> str:
    """A value of the build, as CMake has kept it."""
    text = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    found = re.search(rf"^{name}:\w+=(.*)$", text, re.MULTILINE)
    if not found:
        raise SystemExit(f"package: {name} is not in {build}/CMakeCache.txt")
    return found[1]


def time_of_commit() -> int:
    """Seconds since 1970 that all files of the packages get: the commit's time, or what the
    environment says, as for a tree without history."""
    if "SOURCE_DATE_EPOCH" in os.environ:
        return int(os.environ["SOURCE_DATE_EPOCH"])
    done = subprocess.run(["git", "-C", PROJECT, "log", "-1", "--format=%ct"], capture_output=True,
                          text=True, check=False)
    if done.returncode != 0:
        raise SystemExit("package: no commit to take the time from; set SOURCE_DATE_EPOCH")
    return int(done.stdout)


@dataclass(frozen=True)
class Release:
    """One version of the product, with the time that its files get."""

    version: str
    company: str
    epoch: int

    @property
    def name(self) -> str:
        """What all files of the release begin with."""
        return f"Miravel-{self.version}-windows-x64"

    @property
    def product_code(self) -> str:
        return code("product", self.version)

    def package_code(self, content: str) -> str:
        """Differs between two packages of one version with different content."""
        return code("package", self.version, content)
