"""An installation of the assistant, laid out as the virtual-desktop client lays it out."""

from __future__ import annotations

import base64
import shutil
import socket
from pathlib import Path

from .processlist import ProcessList
from .programlog import ProgramLog
from .project import LICENCE_TEXT, LOCAL_LIBRARY, LOG_ENCODING, ON_WINE, PROGRAM
from .settings import Settings

LOOPBACK = "127.0.0.1"
TENANT = "demo-tenant"
KEY = "demo-key"
SECRET = "demo-secret"
USER = "demo.user"


def encoded(text: str) -> str:
    """Key and secret are stored in Base64."""
    return base64.b64encode(text.encode("utf-8")).decode("ascii")


def free_port() -> int:
    """A loopback port that nobody listens on."""
    with socket.socket() as probe:
        probe.bind((LOOPBACK, 0))
        return int(probe.getsockname()[1])


def default_settings() -> dict[str, str]:
    """Every key of "Miravel.ini" but the service's port, which the service itself decides."""
    return {
        "Log/level": "DEBUG",
        "Version/version": "1.0.0",
        "SysEnvironment/EnvType": "1",
        "url/hoturl": "/robot/v1/hot-questions",
        "url/associateurl": "/robot/v1/associations",
        "url/askquesturl": "/robot/v1/answers",
        "url/itreporturl": "https://it.example/report",
        "HotRecommendation/channelId": "1",
        "HotRecommendation/recommendSize": "40",
        "ProblemAssociation/channelId": "2",
        "ProblemAssociation/recommendSize": "10",
        "QuestAndAnw/channelId": "3",
        "QuestAndAnw/currentDomain": "desktop",
        "QuestAndAnw/recommendSize": "15",
        "RobotId/robotId": "demo-robot",
        "ihttpInfo/iHttpMode": "0",
        "IpAndPort/mserverip": LOOPBACK,
        "IpAndPort/mserverhttpsport": "",
        "Authorization/tenantid": TENANT,
        "Authorization/xcafirst": encoded(KEY),
        "Authorization/xcasecond": encoded(SECRET),
        "SysguardPort/port1": str(free_port()),
    }


class Installation:
    """The program in a folder of its own, config and log beside that folder."""

    def __init__(self, root: Path) -> None:
        """Lays everything out under root, over what may lie there from an earlier run."""
        self.root = root
        self.program = root / "Miravel" / PROGRAM.name
        self.program.parent.mkdir(parents=True, exist_ok=True)
        if ON_WINE:
            # Nothing else than what goes to a Windows machine may be found.
            shutil.copytree(PROGRAM.parent, self.program.parent, dirs_exist_ok=True)
        # A copy, because the program takes its real path for the place of its installation.
        fresh = self.program.with_suffix(".new")
        shutil.copy2(PROGRAM, fresh)
        fresh.replace(self.program)
        if LOCAL_LIBRARY.is_dir():
            shutil.copytree(LOCAL_LIBRARY, self.program.parent / "LocalQA", dirs_exist_ok=True)
        self.processes = ProcessList(root / "commands")
        (root / "log").mkdir(exist_ok=True)
        log = root / "log/Miravel.log"
        log.unlink(missing_ok=True)
        self.log = ProgramLog(log, LOG_ENCODING)
        (root / "config").mkdir(exist_ok=True)
        shutil.copy(LICENCE_TEXT, root / "config")
        self.settings = Settings(root / "config/Miravel.ini", default_settings())
        self.client_settings = Settings(root / "config/CommonTerminal.ini",
                                        {"LoginMode/loginstate": "1", "RemLastUser/lastuser": USER})

    def use_service(self, port: int, *, https: bool = False) -> None:
        """Points the program to a question service on loopback, from its next request on."""
        self.settings.update({"IpAndPort/mserverhttpsport": str(port),
                              "ihttpInfo/iHttpMode": "1" if https else "0"})
