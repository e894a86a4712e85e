"""What the package does beside copying files, in its order."""

from __future__ import annotations

from dataclasses import dataclass

from database import insert
from payload import PROGRAM, PackagedFile

LIBRARY = "setup"

# Kinds of actions, as the tables number them.
_SET_PROPERTY = 51
_CALL = 1  # into the library
_DEFERRED = 1024 + 2048  # later, by the system itself
_ON_ROLLBACK = 256

_REMOVING = 'REMOVE="ALL"'
_REMOVING_FOR_GOOD = 'REMOVE="ALL" AND NOT UPGRADINGPRODUCTCODE'
_REMOVING_DATA = f'{_REMOVING_FOR_GOOD} AND REMOVEDATA="1"'


@dataclass(frozen=True)
class Action:
    """One action: its place in the order, when it runs, and what it does."""

    sequence: int
    name: str
    condition: str
    kind: int
    source: str
    target: str

    def statements(self) -> list[str]:
        return [
            insert("CustomAction", {"Action": self.name, "Type": self.kind, "Source": self.source,
                                    "Target": self.target}),
            insert("InstallExecuteSequence", {"Action": self.name, "Condition": self.condition or None,
                                              "Sequence": self.sequence}),
        ]


def _set(sequence: int, prop: str, value: str, condition: str, name: str = "") -> Action:
    return Action(sequence, name or f"Set{prop}", condition, _SET_PROPERTY, prop, value)


def _call(sequence: int, name: str, function: str, condition: str, kind: int) -> Action:
    return Action(sequence, name, condition, _CALL + kind, LIBRARY, function)


def _remembered() -> list[Action]:
    """Without other values an upgrade takes those of the installation before; a repair and a removal
    always do."""
    not_given = "OLDLAYOUT AND (Installed OR NOT LAYOUT)"
    return [
        _set(60, "LAYOUT", "[OLDLAYOUT]", not_given, "RememberLayout"),
        _set(61, "LAYOUT", "standalone", "NOT LAYOUT", "DefaultLayout"),
        _set(62, "CLIENTFOLDER", "[OLDCLIENTFOLDER]",
             'OLDCLIENTFOLDER AND LAYOUT="client" AND (Installed OR NOT CLIENTFOLDER)',
             "RememberClientFolder"),
        _set(63, "INSTALLFOLDER", "[OLDINSTALLFOLDER]",
             'OLDINSTALLFOLDER AND LAYOUT="standalone" AND OLDLAYOUT="standalone"'
             ' AND (Installed OR NOT INSTALLFOLDER)', "RememberInstallFolder"),
        _set(64, "CRASHDUMPS", "[OLDCRASHDUMPS]", "OLDCRASHDUMPS AND NOT CRASHDUMPS",
             "RememberCrashDumps"),
        _set(65, "TRANSLATION", "[OLDTRANSLATION]", "OLDTRANSLATION AND NOT TRANSLATION",
             "RememberTranslation"),
    ]


def _folders() -> list[Action]:
    """Beside the client only the program itself lies in a folder of its own."""
    client = 'LAYOUT="client"'
    return [
        _set(120, "INSTALLFOLDER", "[CLIENTFOLDER]\\Miravel\\", client, "ClientInstallFolder"),
        _set(121, "CONFIGFOLDER", "[CLIENTFOLDER]\\config\\", client, "ClientConfigFolder"),
        _set(122, "LOGFOLDER", "[CLIENTFOLDER]\\log\\", client, "ClientLogFolder"),
    ]


def _data(files: list[PackagedFile]) -> list[Action]:
    """What the later actions are told: they see nothing else."""
    program = f"[INSTALLFOLDER]{PROGRAM}"
    sums = ",".join(f"{file.name}={file.md5}" for file in files if file.folder == "LOCALQA")
    config = "|".join(["[CONFIGFOLDER]Miravel.ini", "[CONFIGFOLDER]Miravel.sample.ini", "[LOGLEVEL]",
                       "[SERVICEADDRESS]", "[SERVICEPORT]", "[SERVICEMODE]", "[GUARDPORT]",
                       "[CREDENTIALSFILE]"])
    return [
        _set(1410, "RestartAfterFailure", f"{program}[RunningCopies]", ""),
        _set(1411, "CloseRunning", program, ""),
        _set(1413, "PutBackAfterFailure", "[LOCALQA]|", ""),
        _set(1414, "SetAnswersAside", f"[LOCALQA]|{sums}", ""),
        _set(1415, "PutAnswersBack", "[LOCALQA]|[LOCALQAFOLDER]", f"NOT {_REMOVING}", "PutBackAndCopy"),
        _set(1416, "PutAnswersBack", "[LOCALQA]|", _REMOVING, "PutBackOnly"),
        _set(1417, "Configure", config, ""),
        _set(1418, "StartAgain", f"{program}[RunningCopies]", ""),
        _set(1419, "DropPictures", "[GIFFOLDER]", _REMOVING),
        _set(1420, "REMOVECONFIG", "[CONFIGFOLDER]", _REMOVING_DATA),
        _set(1421, "REMOVELOG", "[LOGFOLDER]", _REMOVING_DATA),
        _set(1422, "REMOVELOCALQA", "[LOCALQA]", _REMOVING_DATA),
        _set(1423, "REMOVETRANSLATION", "[INSTALLFOLDER]", 'TRANSLATION="zh"'),
    ]


def _calls() -> list[Action]:
    later = _DEFERRED
    keeping = f"NOT ({_REMOVING_DATA})"
    return [
        _call(110, "CheckProperties", "checkProperties", "", 0),
        _call(1405, "NoteRunning", "noteRunning", f"NOT {_REMOVING}", 0),
        _call(1650, "RestartAfterFailure", "startAgain", "", later + _ON_ROLLBACK),
        # An old version has asked and waited while it went.
        _call(1660, "CloseRunning", "closeRunning", "NOT WIX_UPGRADE_DETECTED", later),
        _call(3450, "PutBackAfterFailure", "putAnswersBack", keeping, later + _ON_ROLLBACK),
        _call(3460, "SetAnswersAside", "setAnswersAside", keeping, later),
        _call(3470, "DropPictures", "dropPictures", _REMOVING, later),
        _call(4050, "PutAnswersBack", "putAnswersBack", keeping, later),
        _call(4060, "Configure", "configure", f"NOT {_REMOVING}", later),
        _call(6500, "StartAgain", "startAgain", f"NOT {_REMOVING}", later),
    ]


def actions(files: list[PackagedFile]) -> list[Action]:
    # The same version once more mends the installation.
    again = _set(130, "REINSTALL", "ALL", "Installed AND NOT REINSTALL AND NOT REMOVE AND NOT RESUME")
    return [*_remembered(), *_folders(), again, *_data(files), *_calls()]
