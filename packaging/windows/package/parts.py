"""The list of all parts of a release, with versions and licences (CycloneDX 1.5)."""

from __future__ import annotations

import hashlib
import json
import re
import subprocess
import time
from pathlib import Path
from typing import Any

from payload import PackagedFile
from release import Release, code
from versions import version_and_language

_TABLE = Path(__file__).with_name("parts.json")
_COMPILER_PACKAGE = "gcc-mingw-w64-x86-64-posix-runtime"
_RUNTIME_PACKAGE = "mingw-w64-x86-64-dev"
_GCC_LICENCE = "GPL-3.0-or-later WITH GCC-exception-3.1"


def _sum(path: Path) -> str:
    return hashlib.sha256(path.read_bytes()).hexdigest()


def _resource_version(file: PackagedFile) -> str:
    found = version_and_language(file.source)
    if not found:
        raise SystemExit(f"package: {file.name} has no version")
    return ".".join(found[0].split(".")[:3])


def _debian_version(package: str) -> str:
    """The upstream version of an installed package: what is before Debian's own part."""
    text = subprocess.run(["dpkg-query", "-W", "-f=${Version}", package], check=True,
                          capture_output=True, text=True).stdout
    return text.split("-")[0]


def _component(name: str, version: str, licence: str, files: list[PackagedFile],
               kind: str = "library") -> dict[str, Any]:
    one_licence = {"license": {"id": licence}} if " " not in licence else {"expression": licence}
    return {
        "type": kind,
        "bom-ref": f"{name}@{version}",
        "name": name,
        "version": version,
        "licenses": [one_licence],
        "components": [{"type": "file", "bom-ref": file.place, "name": file.place,
                        "hashes": [{"alg": "SHA-256", "content": _sum(file.source)}]}
                       for file in files],
    }


def _bundled(table: dict[str, Any], by_place: dict[str, PackagedFile]) -> list[dict[str, Any]]:
    """What lies inside of other libraries. Where a library tells the version, it must be this one."""
    components = []
    for part in table["bundled"]:
        file = by_place[part["file"]]
        if "evidence" in part:
            found = re.search(part["evidence"].encode("ascii"), file.source.read_bytes())
            told = found[1].decode("ascii") if found else "nothing"
            if told != part["version"]:
                raise SystemExit(f"package: {part['file']} has {part['name']} {told}, and "
                                 f"{_TABLE.name} says {part['version']}")
        component = _component(part["name"], part["version"], part["licence"], [])
        component["properties"] = [{"name": "miravel:inside", "value": part["file"]}]
        components.append(component)
    return components


def _libraries(files: list[PackagedFile], table: dict[str, Any]) -> list[dict[str, Any]]:
    """Every program and library belongs to exactly one part."""
    by_place = {file.place: file for file in files}
    binaries = [file for file in files if file.name.lower().endswith((".exe", ".dll"))]

    def take(pattern: str) -> list[PackagedFile]:
        taken = [file for file in binaries if re.fullmatch(pattern, file.place)]
        binaries[:] = [file for file in binaries if file not in taken]
        return taken
    take(r"Miravel\.exe|doctor\.exe")
    qt_version = _resource_version(by_place["Qt5Core.dll"])
    if qt_version != table["qt"]:
        raise SystemExit(f"package: Qt is {qt_version}, and what {_TABLE.name} lists is inside of "
                         f"{table['qt']}")
    gcc = _debian_version(_COMPILER_PACKAGE)
    runtime = _debian_version(_RUNTIME_PACKAGE)
    components = [
        _component("Qt", qt_version, "LGPL-3.0-only", take(r"Qt5\w+\.dll|\w+/q\w+\.dll")),
        _component("OpenSSL", _resource_version(by_place["libcrypto-3-x64.dll"]), "Apache-2.0",
                   take(r"lib(ssl|crypto)-3-x64\.dll")),
        _component("libstdc++", gcc, _GCC_LICENCE, take(r"libstdc\+\+-6\.dll")),
        _component("libgcc", gcc, _GCC_LICENCE, take(r"libgcc_s_seh-1\.dll")),
        _component("winpthreads", runtime, "MIT AND BSD-3-Clause", take(r"libwinpthread-1\.dll")),
        _component("mingw-w64 runtime", runtime, "ZPL-2.1", []),
    ]
    if binaries:
        raise SystemExit("package: of no known part: " + ", ".join(file.place for file in binaries))
    return components + _bundled(table, by_place)


def parts_list(release: Release, files: list[PackagedFile]) -> str:
    """The list as JSON."""
    table = json.loads(_TABLE.read_text(encoding="utf-8"))
    program = {"type": "application", "bom-ref": f"Miravel@{release.version}", "name": "Miravel",
               "version": release.version, "supplier": {"name": release.company},
               "licenses": [{"license": {"name": f"Proprietary, {release.company}"}}]}
    own = [file for file in files
           if not file.name.lower().endswith(".dll")]
    program["components"] = [{"type": "file", "bom-ref": file.place, "name": file.place,
                              "hashes": [{"alg": "SHA-256", "content": _sum(file.source)}]}
                             for file in own]
    document = {
        "bomFormat": "CycloneDX",
        "specVersion": "1.5",
        "serialNumber": "urn:uuid:" + code("parts", release.version)[1:-1].lower(),
        "version": 1,
        "metadata": {
            "timestamp": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(release.epoch)),
            "component": program,
        },
        "components": _libraries(files, table),
    }
    return json.dumps(document, indent=2, ensure_ascii=False) + "\n"
