"""What wixl makes of the package: files, folders, components and the cabinet. All else is written into
the tables afterwards; see tables.py. wixl 0.101 cannot read texts beyond ASCII, conditions of
components and much else, and says so in part only."""

from __future__ import annotations

import xml.etree.ElementTree as ElementTree
from xml.etree.ElementTree import Element, SubElement

from actions import LIBRARY
from payload import FOLDERS, SHARED_FOLDERS, PackagedFile
from release import UPGRADE_CODE, Release, code

CABINET = "miravel.cab"
ICON = "Miravel.ico"
LIBRARY_FILE = "miravelsetup.dll"
FEATURE = "Miravel"


def component_of(file: PackagedFile) -> str:
    return "c" + file.key[1:]


def _add_file(folder: Element, file: PackagedFile, feature: Element) -> None:
    name = component_of(file)
    component = SubElement(folder, "Component", Id=name, Guid=code("file", file.place), Win64="yes")
    SubElement(component, "File", Id=file.key, Name=file.name, Source=file.source.name, KeyPath="yes")
    SubElement(feature, "ComponentRef", Id=name)


def _add_shared_folder(folder: Element, key: str, feature: Element) -> None:
    name = f"{key}_made"
    component = SubElement(folder, "Component", Id=name, Guid=code("folder", key), Win64="yes")
    SubElement(component, "CreateFolder")
    SubElement(feature, "ComponentRef", Id=name)


def skeleton(release: Release, files: list[PackagedFile]) -> bytes:
    """The description for wixl."""
    root = Element("Wix", xmlns="http://schemas.microsoft.com/wix/2006/wi")
    product = SubElement(root, "Product", Id=release.product_code, Name="Miravel",
                         Version=release.version, Language="2052", Manufacturer=release.company,
                         UpgradeCode="{" + str(UPGRADE_CODE).upper() + "}")
    SubElement(product, "Package", InstallerVersion="500", Compressed="yes",
               InstallScope="perMachine")
    SubElement(product, "Media", Id="1", Cabinet=CABINET, EmbedCab="yes")
    SubElement(product, "MajorUpgrade", DowngradeErrorMessage="see tables.py")
    # Relative to where wixl runs: it keeps a path as the icon's name otherwise.
    SubElement(product, "Icon", Id=ICON, SourceFile=ICON)
    SubElement(product, "Binary", Id=LIBRARY, SourceFile=LIBRARY_FILE)
    target = SubElement(product, "Directory", Id="TARGETDIR", Name="SourceDir")
    programs = SubElement(target, "Directory", Id="ProgramFiles64Folder")
    SubElement(target, "Directory", Id="ProgramMenuFolder")
    feature = Element("Feature", Id=FEATURE, Level="1")
    program = SubElement(programs, "Directory", Id="INSTALLFOLDER", Name="Miravel")
    for key, name in FOLDERS.items():
        folder = SubElement(program, "Directory", Id=key, Name=name) if name else program
        for file in files:
            if file.folder == key:
                _add_file(folder, file, feature)
        if key in SHARED_FOLDERS:
            _add_shared_folder(folder, key, feature)
    product.append(feature)
    ElementTree.indent(root)
    return ElementTree.tostring(root, encoding="utf-8", xml_declaration=True)
