"""Whoever wrote Miravel.ini was wrong in every value: the window comes up all the same, is used, and
closes."""

from __future__ import annotations

import unittest

from desktop.assistant import INPUT_BOX
from desktop.conversation import input_changed
from desktop.installation import default_settings
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until

LONG = "x" * 1_000_000
KINDS = {
    "nothing": "",
    "blanks": " \t ",
    "text where a number belongs": "many",
    "minus one": "-1",
    "beyond 32 bits": "4294967296",
    "beyond 64 bits": "99999999999999999999999",
    "a fraction": "1.5e300",
    "place markers": "%1 %2 %n %s %L99",
    "a million characters": LONG,
    "a list": "a, b, c,",
    "an open quote": '"open',
    "a bad escape": "\\x \\xzzzz \\777777 \\",
    "control characters": "a\x01\x1b[31m\x7f\\0\\r\\nb",
    "bytes beyond ASCII": "\xff\xfe\xe4\xbd\xa0",
    "turned and unseen text": "\\x202e\\x200b\\xfeff\\xd800",
    "markup": '"<img src=\'file:///etc/passwd\'><b>"',
    "a path": "../../../../etc/passwd",
    "an address": "file:///etc/passwd",
    "no variant": "@Invalid()",
    "bytes": "@ByteArray(\\xff\\0\\x1)",
    "a rectangle": "@Rect(0 0 99999999999 -1)",
    "an unknown variant": "@Variant(\\0\\0\\xff\\xff)",
    "a variant that is cut off": "@Variant(\\0\\0\\0\\n\\x7f\\xff\\xff\\xff)",
    "a map that claims too much": "@Variant(\\0\\0\\0\\b\\x7f\\xff\\xff\\xff)",
    "a list of texts that claims too much": "@Variant(\\0\\0\\0\\xb\\x7f\\xff\\xff\\xff)",
    "a list of values that claims too much": "@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)",
    "a picture as a variant": "@Variant(\\0\\0\\0\\x41\\0\\0\\0\\x1\\x89PNG)",
}


def written(value: str) -> bytes:
    """Every key of the file with this value."""
    groups: dict[str, list[str]] = {}
    for key in [*default_settings(), "Unknown/key"]:
        group, name = key.split("/", 1)
        groups.setdefault(group, []).append(name)
    lines = [line for group, names in groups.items()
             for line in [f"[{group}]", *(f"{name}={value}" for name in names)]]
    return "\n".join(lines).encode("latin-1")


class WrongSettingsTest(DesktopTest):
    def use_with(self, content: bytes) -> None:
        (self.installation.root / "config/Miravel.ini").write_bytes(content)
        (self.installation.root / "config/CommonTerminal.ini").write_bytes(content)
        assistant = self.start_assistant()
        assistant.wait_for_window()
        assistant.click(*INPUT_BOX)
        before = assistant.look()
        assistant.person.paste("a")
        wait_until(lambda: input_changed(before, assistant.look()), "what was typed")
        # Qt may have printed that it cannot read a value.
        self.assertEqual(0, assistant.close(), assistant.process.printed())

    def test_every_value_wrong(self) -> None:
        for kind, value in KINDS.items():
            with self.subTest(kind):
                self.use_with(written(value))

    def test_values_of_no_use_are_named_in_the_log(self) -> None:
        hostile = KINDS["a list of texts that claims too much"]
        (self.installation.root / "config/Miravel.ini").write_text(
            f"[Log]\nlevel={hostile}\n[IpAndPort]\nmserverip={hostile}\n")
        assistant = self.start_assistant()
        assistant.wait_for_window()
        assistant.wait_for_log("Settings are neither text nor number and count as missing: "
                               "Log/level, IpAndPort/mserverip")
        self.assertEqual(0, assistant.close(), assistant.process.printed())

    def test_no_settings_file_at_all(self) -> None:
        for kind, content in {
                "sections alone": b"[[[[\n]\n[Log\n" * 1000,
                "keys without end": b"a=b\n" * 500_000,
                "one line": b"=" * 1_000_000,
                "NUL bytes": b"[Log]\0level=DEBUG\0" * 1000,
        }.items():
            with self.subTest(kind):
                self.use_with(content)


if __name__ == "__main__":
    unittest.main()
