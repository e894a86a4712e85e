#!/usr/bin/env python3
"""Prints, as source entries, the system's apt entries that belong to one Debian release.

Usage: source_entries.py <codename>
"""

import re
import sys
from pathlib import Path

APT = Path("/etc/apt")


def of_release(suites, codename):
    """Whether every suite is the release itself, its updates or its security updates."""
    pattern = re.compile(re.escape(codename) + r"(-updates|-security|/updates)?$")
    return bool(suites) and all(pattern.match(suite) for suite in suites)


def one_line_entries(text, codename):
    """Entries of a *.list file: deb [options] uri suite component..."""
    for line in text.splitlines():
        match = re.match(r"deb\s+(\[[^]]*\]\s+)?(\S+)\s+(\S+)\s+(.+)$", line.strip())
        if match and of_release([match[3]], codename):
            yield f"deb-src {match[1] or ''}{match[2]} {match[3]} {match[4]}"


def stanza_entries(text, codename):
    """Entries of a *.sources file, whose fields stand one a line."""
    for stanza in re.split(r"\n\s*\n", text):
        fields = dict(re.findall(r"^([\w-]+):[ \t]*(.+)$", stanza, re.MULTILINE))
        types = fields.get("Types", "").split()
        suites = fields.get("Suites", "").split()
        if "deb" not in types or not of_release(suites, codename):
            continue
        signed = fields.get("Signed-By")
        options = f"[signed-by={signed}] " if signed else ""
        for uri in fields["URIs"].split():
            for suite in suites:
                yield f"deb-src {options}{uri} {suite} {fields.get('Components', 'main')}"


def main():
    codename = sys.argv[1]
    entries = []
    for path in [APT / "sources.list", *sorted((APT / "sources.list.d").glob("*.list"))]:
        if path.exists():
            entries += one_line_entries(path.read_text(), codename)
    for path in sorted((APT / "sources.list.d").glob("*.sources")):
        entries += stanza_entries(path.read_text(), codename)
    if not entries:
        sys.exit(f"source_entries: no apt entry for {codename} under {APT}")
    print("\n".join(dict.fromkeys(entries)))


if __name__ == "__main__":
    main()
