#!/usr/bin/env python3
"""Starts the demo service and, on an installation under build/stage, the assistant.

With a display the window is the user's until it is closed. Without one, the assistant runs on a
screen in memory, is asked a few questions by itself, and what a person would have seen is saved."""

from __future__ import annotations

import fcntl
import os
import subprocess
import sys

from desktop.assistant import Assistant
from desktop.clock import MovableClock
from desktop.demoservice import DemoService
from desktop.display import Display
from desktop.installation import Installation
from desktop.offlinetour import ARGUMENTS, LOGGED_OUT, OfflineTour
from desktop.project import BUILD
from desktop.tour import LOADING_MS, MENU_SETTING, Tour
from desktop.usersession import run_for_user

STAGE = BUILD.parent / "stage"
SCREENSHOTS = BUILD.parent / "screenshots"

_REACH_S = 5.0


def display_reachable() -> bool:
    """Whether $DISPLAY names a screen that lets us in."""
    if not os.environ.get("DISPLAY"):
        return False
    try:
        answer = subprocess.run(["xdotool", "getdisplaygeometry"], capture_output=True,
                                timeout=_REACH_S, check=False)
    except subprocess.TimeoutExpired:
        return False
    if answer.returncode != 0:
        print(f"the display {os.environ['DISPLAY']} cannot be reached", file=sys.stderr)
    return answer.returncode == 0


def take_tour(installation: Installation, service: DemoService) -> None:
    """Without a display: a screen in memory, and the pictures of what it showed."""
    with Display(STAGE / "display") as display:
        installation.settings.update(MENU_SETTING)
        service.fault("hot", "delay", arg=LOADING_MS)
        clock = MovableClock(STAGE)
        with Assistant(installation, display, environment=clock.environment()) as assistant:
            tour = Tour(assistant, clock, service, SCREENSHOTS)
            tour.run()
        installation.client_settings.update(LOGGED_OUT)
        with Assistant(installation, display, arguments=ARGUMENTS) as assistant:
            offline = OfflineTour(assistant, SCREENSHOTS, len(tour.pictures) + 1)
            offline.run()
    for picture in tour.pictures + offline.pictures:
        print(os.path.relpath(picture))


def main() -> int:
    STAGE.mkdir(parents=True, exist_ok=True)
    with (STAGE / "lock").open("w") as lock:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            print("run: an assistant already runs in build/stage", file=sys.stderr)
            return 1
        with DemoService(STAGE / "log") as service:
            installation = Installation(STAGE)
            installation.use_service(service.http_port)
            if display_reachable():
                return run_for_user(installation)
            take_tour(installation, service)
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (AssertionError, RuntimeError) as error:
        print(f"run: {error}", file=sys.stderr)
        sys.exit(1)
    except KeyboardInterrupt:
        sys.exit(130)
