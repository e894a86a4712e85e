#!/usr/bin/env python3
"""Runs every command that the documents give, but for what they mark as an example or as run by the
check of a change. A block runs in the sources ("sh", "python"), in a folder of its own ("sh scratch"),
or, as a service, until the commands of its document have ended ("sh service")."""

from __future__ import annotations

import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

from desktop.child import Child
from desktop.installation import default_settings
from desktop.project import BUILD, SOURCE
from desktop.settings import Settings
from desktop.waiting import wait_until

sys.path.insert(0, str(SOURCE / "tests/docs"))
from test_documents import DOCUMENTS, OPENING  # noqa: E402

PATIENCE_S = 900


class Failed(RuntimeError):
    """A command of a document did not do what it is given for."""


class Scratch:
    """A folder in which the commands of one document write what they write."""

    def __init__(self, folder: Path) -> None:
        self.folder = folder
        for name in ("tools", "build", "tests", "resources"):
            (folder / name).symlink_to(SOURCE / name)
        self.env = {**os.environ, "PATH": f"{BUILD / 'bin'}:{os.environ['PATH']}"}
        self.env.pop("DISPLAY", None)  # nobody is asked to look

    def serve(self, command: str) -> Child:
        """Starts the demo service of a document, and lays a settings file for it beside it."""
        service = Child(["bash", "-c", f'cd "$0" && exec {command}', self.folder], env=self.env,
                        output=self.folder / "service.out")
        ports_file = self.folder / "ports.json"
        wait_until(lambda: ports_file.exists() or not service.alive, command)
        if not service.alive:
            raise Failed(f"{command}\n{service.printed()}")
        port = str(json.loads(ports_file.read_text(encoding="utf-8"))["http"])
        self.env["HTTP_PORT"] = port
        Settings(self.folder / "Miravel.ini",
                 {**default_settings(), "IpAndPort/mserverhttpsport": port})
        return service

    def run(self, command: list[str], folder: Path) -> None:
        done = subprocess.run(command, cwd=folder, env=self.env, capture_output=True, text=True,
                              stdin=subprocess.DEVNULL, timeout=PATIENCE_S, check=False)
        if done.returncode != 0:
            raise Failed(f"{command[-1]}\nended with {done.returncode}:\n"
                         f"{done.stdout[-1500:]}{done.stderr[-1500:]}")


def check(document: Path) -> int:
    """Runs the commands of a document; how many blocks there were."""
    count = 0
    services: list[Child] = []
    with tempfile.TemporaryDirectory(prefix="miravel-docs-") as private:
        scratch = Scratch(Path(private))
        try:
            for label, body in OPENING.findall(document.read_text(encoding="utf-8")):
                if label == "sh service":
                    services.append(scratch.serve(body.strip()))
                elif label in ("sh", "sh scratch"):
                    folder = scratch.folder if label == "sh scratch" else SOURCE
                    scratch.run(["bash", "-euo", "pipefail", "-c", body], folder)
                elif label == "python":
                    scratch.env["PYTHONPATH"] = "tools"
                    scratch.run(["/usr/bin/python3", "-B", "-c", body], SOURCE)
                else:
                    continue
                count += 1
                print(f"ok  {document.name}: {body.strip().splitlines()[0]}", flush=True)
        finally:
            for service in services:
                service.stop()
    return count


def main() -> int:
    blocks = 0
    for document in DOCUMENTS:
        try:
            blocks += check(document)
        except (Failed, subprocess.TimeoutExpired) as error:
            print(f"check-docs: {document.name}: {error}", file=sys.stderr)
            return 1
    changed = subprocess.run(["git", "status", "--porcelain", "resources"], cwd=SOURCE,
                             capture_output=True, text=True, check=False).stdout
    if changed:
        print(f"check-docs: the commands have changed files:\n{changed}", file=sys.stderr)
        return 1
    print(f"check-docs: {blocks} blocks of commands did what they say")
    return 0 if blocks > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
