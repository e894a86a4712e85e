#!/usr/bin/env python3
"""Completes and checks the folder that goes to a Windows machine.

Usage: folder.py complete <folder>      adds what Miravel.exe there needs and the doctor, removes
                                        all else
       folder.py check <folder>         fails when a library is missing, not needed or not hardened
       folder.py openssl <libcrypto>    only looks at the places that this library reads files from

Libraries come from build/windows-sdk and from the compiler. What a program or library needs is
read from it with objdump; what is only loaded at run time is listed here.
"""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from binary import TRIPLET, hardening_problems, header, imports, manifest_problems, openssl_problems

PROJECT = Path(__file__).resolve().parents[2]
SDK = PROJECT / "build" / "windows-sdk"
PROGRAM = "Miravel.exe"
# For the administrator.
DOCTOR = "doctor.exe"
PROGRAMS = [PROGRAM, DOCTOR]
# Without an epoch the time of day would get into what binutils write.
FIXED_TIME = {**os.environ, "SOURCE_DATE_EPOCH": "0"}

# Loaded by name at run time. No bearer plugin: it polls the wireless card for nothing here.
PLUGINS = [
    "platforms/qwindows.dll",
    "imageformats/qgif.dll",
    "imageformats/qico.dll",
    "imageformats/qjpeg.dll",
    "styles/qwindowsvistastyle.dll",
]
CRYPTO = "libcrypto-3-x64.dll"
RUN_TIME_LIBRARIES = ["libssl-3-x64.dll", CRYPTO]

# Part of every Windows since 7.
SYSTEM = {
    name.lower() + ".dll"
    for name in """advapi32 authz bcrypt comctl32 comdlg32 crypt32 d3d11 dnsapi dwmapi dwrite dxgi gdi32 imm32
    iphlpapi kernel32 mpr msvcrt netapi32 ntdll ole32 oleaut32 rpcrt4 secur32 setupapi shell32
    shlwapi user32 userenv uxtheme version winmm winspool ws2_32 wtsapi32""".split()
} | {"winspool.drv"}


def compiler_folders():
    """Where the compiler keeps its run-time libraries."""
    compiler = f"{TRIPLET}-g++-posix"
    for name in ("libstdc++-6.dll", "libwinpthread-1.dll"):
        found = subprocess.run([compiler, f"-print-file-name={name}"], check=True,
                               capture_output=True, text=True).stdout.strip()
        if "/" in found:
            yield Path(found).resolve().parent
    yield Path("/usr") / TRIPLET / "lib"


def is_system(name):
    return name.lower() in SYSTEM or name.lower().startswith("api-ms-win-")


def find_library(name, folders):
    for folder in folders:
        if (folder / name).exists():
            return folder / name
    sys.exit(f"windows folder: {name} is nowhere among the tool chain's libraries")


def place(source, target):
    """Copies a binary without its symbols, always with the same result."""
    target.parent.mkdir(parents=True, exist_ok=True)
    subprocess.run([f"{TRIPLET}-strip", "--strip-unneeded", "-o", str(target), str(source)],
                   check=True, env=FIXED_TIME)


def keep_symbols(source, folder):
    """Keeps the symbols of a library, as far as there are any, for crash dumps."""
    kept = folder / f"{source.name}.debug"
    folder.mkdir(exist_ok=True)
    apart = SDK / "symbols" / kept.name
    if apart.exists():
        shutil.copyfile(apart, kept)
    elif subprocess.run([f"{TRIPLET}-nm", str(source)], capture_output=True, check=False).stdout:
        subprocess.run([f"{TRIPLET}-objcopy", "--only-keep-debug", str(source), str(kept)],
                       check=True, env=FIXED_TIME)


def complete(folder):
    folders = [SDK / "qt5/bin", SDK / "openssl/bin", *compiler_folders()]
    plugins = SDK / "qt5/plugins"
    wanted = set(PROGRAMS)
    place(folder.parent / "tools" / DOCTOR, folder / DOCTOR)
    waiting = [folder / name for name in PROGRAMS]
    for name in PLUGINS:
        place(plugins / name, folder / name)
        waiting.append(folder / name)
        wanted.add(name)
    names = list(RUN_TIME_LIBRARIES)
    while waiting or names:
        if waiting:
            names += [name for name in imports(waiting.pop()) if not is_system(name)]
            continue
        name = names.pop()
        if name not in wanted:
            wanted.add(name)
            source = find_library(name, folders)
            place(source, folder / name)
            keep_symbols(source, folder.parent / "symbols")
            waiting.append(folder / name)
    for path in sorted(folder.rglob("*"), reverse=True):
        if path.is_dir():
            if not any(path.iterdir()):
                path.rmdir()
        elif path.relative_to(folder).as_posix() not in wanted:
            path.unlink()


def problems(folder):
    """One line for each thing that is wrong with the folder."""
    files = {path.relative_to(folder).as_posix(): path
             for path in folder.rglob("*") if path.is_file()}
    for name in [*PROGRAMS, *PLUGINS, *RUN_TIME_LIBRARIES]:
        if name not in files:
            yield f"{name} is missing"
    needed = {*PROGRAMS, *PLUGINS, *RUN_TIME_LIBRARIES}
    beside_program = {name for name in files if "/" not in name}
    for name, path in files.items():
        if not name.lower().endswith((".exe", ".dll")):
            yield f"{name} does not belong there"
            continue
        yield from hardening_problems(path)
        for library in imports(path):
            if library in beside_program:
                needed.add(library)
            elif not is_system(library):
                yield f"{name} needs {library}, which is missing"
    for name in sorted(set(files) - needed):
        yield f"{name} is there but nothing needs it"
    if CRYPTO in files:
        yield from openssl_problems(files[CRYPTO])
    if PROGRAM in files:
        yield from manifest_problems(files[PROGRAM])
        text = header(files[PROGRAM])
        if "(Windows GUI)" not in text:
            yield f"{PROGRAM} would open a console"
        stack = re.search(r"SizeOfStackReserve\s+([0-9a-f]+)", text)
        if not stack or int(stack[1], 16) < 8 << 20:
            yield f"{PROGRAM} reserves less than 8 MiB of stack"
        sections = subprocess.run([f"{TRIPLET}-objdump", "-h", str(files[PROGRAM])], check=True,
                                  capture_output=True, text=True).stdout
        if ".rsrc" not in sections:
            yield f"{PROGRAM} has no icon and version"


def refuse(found):
    """Prints the problems and ends when there are any."""
    found = list(found)
    for problem in found:
        print(f"windows folder: {problem}", file=sys.stderr)
    if found:
        sys.exit(1)


def check(folder):
    refuse(problems(folder))
    files = [path for path in folder.rglob("*") if path.is_file()]
    size = sum(path.stat().st_size for path in files) / (1 << 20)
    print(f"windows folder: {len(files)} files, {size:.1f} MiB, none missing, none unneeded: {folder}")


def main():
    if len(sys.argv) != 3 or sys.argv[1] not in ("complete", "check", "openssl"):
        sys.exit(__doc__)
    if sys.argv[1] == "openssl":
        refuse(openssl_problems(Path(sys.argv[2])))
        return
    folder = Path(sys.argv[2]).resolve()
    if not (folder / PROGRAM).exists():
        sys.exit(f"windows folder: no {PROGRAM} in {folder}")
    if sys.argv[1] == "complete":
        complete(folder)
    check(folder)


if __name__ == "__main__":
    main()
