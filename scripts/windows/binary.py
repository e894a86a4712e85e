"""What a Windows program or library says about itself, and what is wrong with it."""

from __future__ import annotations

import re
import subprocess
from pathlib import Path
from typing import Iterator

TRIPLET = "x86_64-w64-mingw32"

# Address space layout randomisation over the whole 64 bits, and no code in data.
_HARDENING = ("HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT")
# Written in the manifest: an ordinary user's rights, paths over 260 characters, Windows 10 and 11.
_MANIFEST = {b'level="asInvoker"': "asks for other rights than its user's",
             b">true</longPathAware>": "cannot open long paths",
             b"{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}": "is not made for Windows 10"}
# Only administrators may write there.
_SAFE_PLACE = re.compile(r"C:[/\\]Program Files[/\\]", re.IGNORECASE)
_NAMED_FOLDER = re.compile(rb'(?:OPENSSLDIR|ENGINESDIR|MODULESDIR): "([^"\0]*)"')
# A path from a drive's root, or from the root of the machine that it was built on.
_ROOTED_PATH = re.compile(rb"(?<![\x20-\x7e])((?:[A-Za-z]:[/\\]|/[a-z]+/)[\x20-\x7e]*)\0")


def header(binary: Path) -> str:
    """The optional header, sections and imports as text."""
    return subprocess.run([f"{TRIPLET}-objdump", "-p", str(binary)], check=True,
                          capture_output=True, text=True).stdout


def imports(binary: Path) -> list[str]:
    """Names of the libraries that the binary is linked to, as written in it."""
    return re.findall(r"DLL Name: (\S+)", header(binary))


def hardening_problems(binary: Path) -> Iterator[str]:
    """One line for each protection that the binary does not ask for."""
    text = header(binary)
    for wanted in _HARDENING:
        if wanted not in text:
            yield f"{binary.name} does not have {wanted}"


def manifest_problems(program: Path) -> Iterator[str]:
    """One line for each thing that the program's manifest does not tell the system."""
    data = program.read_bytes()
    for wanted, problem in _MANIFEST.items():
        if wanted not in data:
            yield f"{program.name} {problem}"


def openssl_problems(library: Path) -> Iterator[str]:
    """One line for each place named in libcrypto where others than administrators may write. It reads
    files from there, some of which name libraries to load."""
    data = library.read_bytes()
    folders = _NAMED_FOLDER.findall(data)
    if not folders:
        yield f"{library.name} does not tell its folders"
    for place in sorted({*folders, *_ROOTED_PATH.findall(data)}):
        text = place.decode("ascii", errors="replace")
        if not _SAFE_PLACE.match(text):
            yield f"{library.name} names {text or 'an empty folder'}, which is not under Program Files"
