"""The assistant on the user's own display."""

from __future__ import annotations

import os
import subprocess
import tempfile

from .installation import Installation
from .project import FONTS


def run_for_user(installation: Installation) -> int:
    """Opens the window and waits until the user closes it; the program's exit status. The user's
    environment stays, for the input method and the desktop's own services."""
    with tempfile.TemporaryDirectory(prefix="miravel-") as folder:
        # Its own TMPDIR, for the single-instance socket: another copy may be in use already.
        env = {**installation.processes.environment(os.environ), "FONTCONFIG_FILE": str(FONTS),
               "TMPDIR": folder}
        print("the assistant is open; close its window to end")
        return subprocess.run([installation.program, "--Type=vdi"], env=env, check=False).returncode
