"""The tables of the package beside files and actions: properties, conditions, registry, shortcut, rights,
and what is removed."""

from __future__ import annotations

from pathlib import Path

from database import insert
from payload import PROGRAM, SHARED_FOLDERS, PackagedFile
from release import Release, code
from skeleton import FEATURE

# What an administrator may give; each is described in docs/deployment.md.
PUBLIC_PROPERTIES = ("LAYOUT", "INSTALLFOLDER", "CLIENTFOLDER", "LOGLEVEL", "SERVICEADDRESS",
                     "SERVICEPORT", "SERVICEMODE", "GUARDPORT", "CREDENTIALSFILE", "LOCALQAFOLDER",
                     "TRANSLATION", "CRASHDUMPS", "REMOVEDATA")
_REMEMBERED = {"OLDLAYOUT": "Layout", "OLDINSTALLFOLDER": "InstallFolder",
               "OLDCLIENTFOLDER": "ClientFolder", "OLDCRASHDUMPS": "CrashDumps",
               "OLDTRANSLATION": "Translation"}

_OWN_KEY = "Software\\Miravel"
_DUMPS_KEY = f"SOFTWARE\\Microsoft\\Windows\\Windows Error Reporting\\LocalDumps\\{PROGRAM}"
# The program reads no others.
_ANSWERS = 30
_IDENTITY = "Miravel.Assistant"

_LOCAL_MACHINE = 2
_REGISTRY_KEY_PATH = 4
_64_BIT = 256
_CONDITION_READ_AGAIN = 64
_RAW_VALUE_64_BIT = 2 + 16
_WHEN_INSTALLED = 1
_WHEN_REMOVED = 2

# Administrators and the system: everything. Every user: to read, write and delete, also what other
# users have made.
_SHARED = "D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1301bf;;;BU)"

_NEWER = ("已安装更新版本的 Miravel，不能用旧版本替换。请先卸载新版本。 "
          "A newer version of Miravel is installed. Remove it before you install this one.")
_SYSTEM = ("Miravel 需要 64 位 Windows 10 或更高版本。 "
           "Miravel needs a 64-bit Windows 10 or later.")


def properties(release: Release) -> list[str]:
    given = {
        "ARPNOMODIFY": "1",
        "ARPCONTACT": release.company,
        "ARPPRODUCTICON": "Miravel.ico",
        # A copy that does not close is no reason to restart the machine.
        "REBOOT": "ReallySuppress",
        # The package asks running copies itself, in every session, and never ends one by force.
        "MSIRESTARTMANAGERCONTROL": "Disable",
        # Every file, whatever lies there: no mixture of two versions.
        "REINSTALLMODE": "amus",
    }
    statements = [insert("Property", {"Property": name, "Value": value})
                  for name, value in given.items()]
    secure = [*PUBLIC_PROPERTIES, *_REMEMBERED, "WIX_DOWNGRADE_DETECTED",
              "WIX_UPGRADE_DETECTED", "REMOVECONFIG",
              "REMOVELOG", "REMOVELOCALQA", "REMOVETRANSLATION"]
    statements.append("DELETE FROM `Property` WHERE `Property`='SecureCustomProperties'")
    statements.append(insert("Property", {"Property": "SecureCustomProperties",
                                          "Value": ";".join(sorted(secure))}))
    return statements


def searches() -> list[str]:
    """What the installation before has written down."""
    statements = []
    for name, value in _REMEMBERED.items():
        statements.append(insert("AppSearch", {"Property": name, "Signature_": f"Find{value}"}))
        statements.append(insert("RegLocator", {"Signature_": f"Find{value}", "Root": _LOCAL_MACHINE,
                                                "Key": _OWN_KEY, "Name": value,
                                                "Type": _RAW_VALUE_64_BIT}))
    for table in ("InstallExecuteSequence", "InstallUISequence"):
        statements.append(insert(table, {"Action": "AppSearch", "Sequence": 50}))
    return statements


def conditions() -> list[str]:
    statements = ["DELETE FROM `LaunchCondition`"]
    for condition, text in (("NOT WIX_DOWNGRADE_DETECTED OR Installed", _NEWER),
                            ("VersionNT64 AND VersionNT >= 603", _SYSTEM)):
        statements.append(insert("LaunchCondition", {"Condition": condition, "Description": text}))
    # Right behind the beginning: the old version goes first, and comes back when the new one fails.
    statements.append("UPDATE `InstallExecuteSequence` SET `Sequence`=1501"
                      " WHERE `Action`='RemoveExistingProducts'")
    return statements


def _component(name: str, folder: str, condition: str | None, key_path: str | None) -> list[str]:
    """One whose condition decides anew whenever the package is installed again. Its key path is a row
    of the registry, or its folder."""
    attributes = _64_BIT + (_REGISTRY_KEY_PATH if key_path else 0)
    attributes += _CONDITION_READ_AGAIN if condition else 0
    return [
        insert("Component", {"Component": name, "ComponentId": code("component", name),
                             "Directory_": folder, "Attributes": attributes,
                             "Condition": condition, "KeyPath": key_path}),
        insert("FeatureComponents", {"Feature_": FEATURE, "Component_": name}),
    ]


def _registry(name: str, key: str, value_name: str, value: str, component: str) -> str:
    return insert("Registry", {"Registry": name, "Root": _LOCAL_MACHINE, "Key": key,
                               "Name": value_name, "Value": value, "Component_": component})


def registry() -> list[str]:
    return [
        *_component("Memory", "INSTALLFOLDER", None, "rLayout"),
        _registry("rLayout", _OWN_KEY, "Layout", "[LAYOUT]", "Memory"),
        _registry("rFolder", _OWN_KEY, "InstallFolder", "[INSTALLFOLDER]", "Memory"),
        _registry("rVersion", _OWN_KEY, "Version", "[ProductVersion]", "Memory"),
        _registry("rTranslation", _OWN_KEY, "Translation", "[TRANSLATION]", "Memory"),
        *_component("ClientMemory", "INSTALLFOLDER", 'LAYOUT="client"', "rClient"),
        _registry("rClient", _OWN_KEY, "ClientFolder", "[CLIENTFOLDER]", "ClientMemory"),
        *_component("CrashDumps", "INSTALLFOLDER", 'CRASHDUMPS="1"', "rDumpMemory"),
        _registry("rDumpMemory", _OWN_KEY, "CrashDumps", "1", "CrashDumps"),
        _registry("rDumpFolder", _DUMPS_KEY, "DumpFolder", "#%%LOCALAPPDATA%\\CrashDumps", "CrashDumps"),
        _registry("rDumpCount", _DUMPS_KEY, "DumpCount", "#5", "CrashDumps"),
        _registry("rDumpType", _DUMPS_KEY, "DumpType", "#1", "CrashDumps"),
    ]


def shortcut() -> list[str]:
    """Only a program that stands alone is started by its user."""
    return [
        *_component("StartMenu", "ProgramMenuFolder", 'LAYOUT="standalone"', "rShortcut"),
        _registry("rShortcut", _OWN_KEY, "Shortcut", "#1", "StartMenu"),
        insert("Shortcut", {"Shortcut": "StartMenu", "Directory_": "ProgramMenuFolder",
                            "Name": "Miravel", "Component_": "StartMenu",
                            "Target": f"[INSTALLFOLDER]{PROGRAM}", "Icon_": "Miravel.ico",
                            "IconIndex": 0, "ShowCmd": 1, "WkDir": "INSTALLFOLDER"}),
        "CREATE TABLE `MsiShortcutProperty` (`MsiShortcutProperty` CHAR(72) NOT NULL,"
        " `Shortcut_` CHAR(72) NOT NULL, `PropertyKey` CHAR(0) NOT NULL,"
        " `PropVariantValue` CHAR(0) NOT NULL PRIMARY KEY `MsiShortcutProperty`)",
        insert("MsiShortcutProperty", {"MsiShortcutProperty": "Identity", "Shortcut_": "StartMenu",
                                       "PropertyKey": "System.AppUserModel.ID",
                                       "PropVariantValue": _IDENTITY}),
    ]


def translations(files: list[PackagedFile]) -> list[str]:
    """The program takes a translation that lies beside it; an administrator has it put there."""
    statements = [
        "CREATE TABLE `DuplicateFile` (`FileKey` CHAR(72) NOT NULL, `Component_` CHAR(72) NOT NULL,"
        " `File_` CHAR(72) NOT NULL, `DestName` CHAR(255) LOCALIZABLE, `DestFolder` CHAR(72)"
        " PRIMARY KEY `FileKey`)"]
    for file in files:
        if file.folder == "TRANSLATIONS":
            language = Path(file.name).stem.split("_")[1]
            name = f"Translation_{language}"
            statements += [
                *_component(name, "INSTALLFOLDER", f'TRANSLATION="{language}"', None),
                insert("DuplicateFile", {"FileKey": f"d{name}", "Component_": name, "File_": file.key,
                                         "DestName": file.name, "DestFolder": "INSTALLFOLDER"}),
                # The folder's property is empty unless it is to go.
                insert("RemoveFile", {"FileKey": f"gone{name}", "Component_": "Memory",
                                      "FileName": file.name, "DirProperty": "REMOVETRANSLATION",
                                      "InstallMode": _WHEN_INSTALLED})]
    return statements


def rights() -> list[str]:
    return [
        "CREATE TABLE `MsiLockPermissionsEx` (`MsiLockPermissionsEx` CHAR(72) NOT NULL,"
        " `LockObject` CHAR(72) NOT NULL, `Table` CHAR(32) NOT NULL, `SDDLText` CHAR(0) NOT NULL,"
        " `Condition` CHAR(255) PRIMARY KEY `MsiLockPermissionsEx`)",
        *[insert("MsiLockPermissionsEx", {"MsiLockPermissionsEx": f"Shared{folder}",
                                          "LockObject": folder, "Table": "CreateFolder",
                                          "SDDLText": _SHARED})
          for folder in SHARED_FOLDERS],
    ]


def removals() -> list[str]:
    """Data goes when REMOVEDATA says so: the properties are empty without it, and a row with an empty
    one removes nothing. Wine knows no wildcards here."""
    rows = [("REMOVECONFIG", "Miravel.ini"), ("REMOVELOG", "Miravel.log"),
            ("REMOVELOG", "Miravel.log.bk"),
            *[("REMOVELOCALQA", f"{number}.txt") for number in range(_ANSWERS)]]
    # The program's folder goes behind the folders in it, which is when it is empty.
    own_folder = insert("CreateFolder", {"Directory_": "INSTALLFOLDER", "Component_": "Memory"})
    return [own_folder,
            *[insert("RemoveFile", {"FileKey": f"remove{number}", "Component_": "Memory",
                                    "FileName": name, "DirProperty": folder,
                                    "InstallMode": _WHEN_REMOVED})
              for number, (folder, name) in enumerate(rows)]]


def file_versions(files: list[PackagedFile], versions: dict[str, tuple[str, str]]) -> list[str]:
    """Version and language of the files that have them, by key; such a file needs no sum."""
    statements = []
    for file in files:
        if file.key in versions:
            version, language = versions[file.key]
            statements.append(f"UPDATE `File` SET `Version`='{version}', `Language`='{language}'"
                              f" WHERE `File`='{file.key}'")
            statements.append(f"DELETE FROM `MsiFileHash` WHERE `File_`='{file.key}'")
    return statements


def all_statements(release: Release, files: list[PackagedFile],
                   versions: dict[str, tuple[str, str]]) -> list[str]:
    return [*properties(release), *searches(), *conditions(), *registry(), *shortcut(),
            *translations(files), *rights(), *removals(), *file_versions(files, versions)]
