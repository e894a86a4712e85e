"""Single changes of C++ sources, of the kind that slips happen."""

from __future__ import annotations

import re
from collections import Counter
from dataclasses import dataclass, replace
from pathlib import Path
from typing import Iterator

# What is never changed: preprocessor lines, what the compiler alone reads, and plain endings.
UNTOUCHED = re.compile(r"^\s*(#|//|static_assert|using |namespace |template |Q_\w+|return;|break;)")
# Texts and comments are blanked out, so that places in the line stay what they are.
HIDDEN = re.compile(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'|//.*$')


@dataclass(frozen=True)
class Rule:
    """What is looked for in a line without its texts, and what takes its place."""

    name: str
    pattern: re.Pattern[str]
    replacement: str

    def changes(self, bare: str, line: str) -> Iterator[str]:
        for match in self.pattern.finditer(bare):
            start, end = match.span("it")
            original = line[start:end]
            fresh = str(int(original) + 1) if self.replacement == "+1" else self.replacement
            yield line[:start] + fresh + line[end:]


def _rule(name: str, pattern: str, replacement: str) -> Rule:
    return Rule(name, re.compile(pattern), replacement)


RULES = (
    _rule("boundary", r" (?P<it><) ", "<="),
    _rule("boundary", r" (?P<it><=) ", "<"),
    _rule("boundary", r" (?P<it>>) ", ">="),
    _rule("boundary", r" (?P<it>>=) ", ">"),
    _rule("sign", r"[\w)\]] (?P<it>\+) ", "-"),
    _rule("sign", r"[\w)\]] (?P<it>-) ", "+"),
    _rule("sign", r" (?P<it>\+=) ", "-="),
    _rule("sign", r" (?P<it>-=) ", "+="),
    _rule("sign", r"(?P<it>\+\+)", "--"),
    _rule("condition", r" (?P<it>==) ", "!="),
    _rule("condition", r" (?P<it>!=) ", "=="),
    _rule("condition", r" (?P<it>&&) ", "||"),
    _rule("condition", r" (?P<it>\|\|) ", "&&"),
    _rule("condition", r"(?P<it>!)[\w(]", ""),
    _rule("condition", r"\b(?P<it>true)\b", "false"),
    _rule("condition", r"\b(?P<it>false)\b", "true"),
    _rule("constant", r"(?<![\w.\\])(?P<it>\d+)(?![\w.'])", "+1"),
)

# A statement of its own that calls something, from its first line to its last.
CALL = re.compile(r"^\s+(?:[\w:]+(?:\.|->|::))*\w+\(.*$|^\s+LOG_\w+\(\) << .*$")
NO_CALL = re.compile(r"^\s+(?:if|for|while|switch|return|else|case|do|throw|delete)\b")
LONGEST_CALL = 8


@dataclass(frozen=True)
class Mutation:
    """One change: the lines from first on, as many as before has, become after."""

    path: str
    first: int
    rule: str
    before: tuple[str, ...]
    after: tuple[str, ...]
    twins: int = 0

    @property
    def name(self) -> str:
        """What it is called, whatever becomes of the lines above it; twins are those of the same words
        further up."""
        old = " ".join(line.strip() for line in self.before)
        new = " ".join(line.strip() for line in self.after)
        twin = f" ({self.twins + 1})" if self.twins else ""
        return f"{self.path}: {self.rule}: {old}  ->  {new}{twin}"

    def described(self) -> str:
        return self.name.replace(":", f":{self.first + 1}:", 1)

    def applied(self, text: str) -> str:
        lines = text.split("\n")
        assert tuple(lines[self.first:self.first + len(self.before)]) == self.before
        lines[self.first:self.first + len(self.before)] = self.after
        return "\n".join(lines)


def _bare(line: str) -> str:
    return HIDDEN.sub(lambda match: " " * len(match.group()), line)


def mutations(path: str, text: str) -> list[Mutation]:
    """Every change that the rules know for one source."""
    lines = text.split("\n")
    found = []
    for place, line in enumerate(lines):
        if UNTOUCHED.match(line):
            continue
        bare = _bare(line)
        found += [Mutation(path, place, rule.name, (line,), (changed,))
                  for rule in RULES for changed in rule.changes(bare, line)]
        found += _removed_call(path, lines, place)
    return _told_apart(found)


def _told_apart(found: list[Mutation]) -> list[Mutation]:
    seen: Counter[str] = Counter()
    apart = []
    for mutation in found:
        apart.append(replace(mutation, twins=seen[mutation.name]))
        seen[mutation.name] += 1
    return apart


def _removed_call(path: str, lines: list[str], first: int) -> list[Mutation]:
    if not CALL.match(lines[first]) or NO_CALL.match(lines[first]) or _goes_on(lines, first):
        return []
    for count in range(1, LONGEST_CALL + 1):
        block = lines[first:first + count]
        balanced = "".join(map(_bare, block)).rstrip()
        if balanced.endswith(";"):
            if all(balanced.count(a) == balanced.count(b) for a, b in ("()", "{}", "[]")):
                rule = "removed connection" if "connect(" in block[0] else "removed call"
                return [Mutation(path, first, rule, tuple(block), ("    ;",))]
    return []


def _goes_on(lines: list[str], place: int) -> bool:
    """Whether a line is the rest of the one above."""
    above = lines[place - 1].strip() if place else ""
    return not (above == "" or above.endswith((";", "{", "}", ":")) or above.startswith("//"))


def sources(root: Path, rooms: tuple[str, ...]) -> list[str]:
    """The sources of ours that the tests of this system build."""
    found = [path for room in rooms for path in (root / room).rglob("*.cpp")]
    return sorted(str(path.relative_to(root)) for path in found
                  if not path.stem.endswith("_windows"))
