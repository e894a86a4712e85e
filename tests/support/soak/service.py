"""The demo service, failing one call in five, and what it was asked."""

from __future__ import annotations

import collections
import json
import re

from desktop.demoservice import DemoService

CALLS = ("ask", "association", "hot")
ONE_IN = 5

# Every way there is to fail. A trickled answer comes in a minute at most; five MB are beyond every
# bound of the program as well as fifty.
FAULTS: tuple[tuple[str, int | str | None], ...] = (
    ("delay", 1000), ("error", None), ("http", 500), ("empty", None), ("empty-reply", None),
    ("broken-json", None), ("truncate", None), ("drop", None), ("huge", 5_000_000),
    ("huge-junk", 5_000_000), ("not-utf8", None), ("nul", "inside"), ("nul", "end"),
    ("deep", None), ("no-answer", None), ("trickle", 2))

# What the user gets is an answer all the same, or one cut at the program's own bound.
ANSWERED = ("-", "delay", "trickle", "not-utf8", "drop")
CUT = ("huge",)

_FIELD = re.compile(r'(\w+)=("(?:[^"\\]|\\.)*"|\S+)')


class ServiceWatch:
    """Reads the service's log as it grows."""

    def __init__(self, service: DemoService) -> None:
        self._service = service
        self._read = 0
        self._due = {call: ONE_IN - 1 for call in CALLS}
        self._next = {call: index * 5 for index, call in enumerate(CALLS)}
        self._set: collections.Counter[str] = collections.Counter()
        self._met: collections.Counter[str] = collections.Counter()
        self.calls: collections.Counter[str] = collections.Counter()
        self.faults: collections.Counter[tuple[str, str]] = collections.Counter()
        self.refused: collections.Counter[str] = collections.Counter()
        self.questions: collections.Counter[str] = collections.Counter()

    def read(self) -> None:
        """Takes in what the log has grown by."""
        with self._service.log.path.open("rb") as log:
            log.seek(self._read)
            data = log.read()
        whole = data[:data.rfind(b"\n") + 1]
        self._read += len(whole)
        for line in whole.decode("utf-8").splitlines():
            self._count(dict(_FIELD.findall(line)))

    def break_calls(self, _number: int) -> None:
        """Reads on, and lets the next of each call fail of which enough have gone well."""
        self.read()
        for call in CALLS:
            # A second fault would take the place of one that is still due.
            if self.calls[call] >= self._due[call] and self._set[call] == self._met[call]:
                kind, arg = FAULTS[self._next[call] % len(FAULTS)]
                self._service.fault(call, kind, arg=arg)
                self._next[call] += 1
                self._set[call] += 1
                self._due[call] += ONE_IN

    def _count(self, fields: dict[str, str]) -> None:
        call = fields.get("call", "-")
        if call not in CALLS:
            return
        if fields["verdict"] != "accepted":
            # Qt may send a request again by itself when its connection breaks.
            self.refused[fields["reason"]] += 1
            return
        self.calls[call] += 1
        self.faults[call, fields["fault"].split(":")[0]] += 1
        self._met[call] += fields["fault"] != "-" and self.calls[call] > 1
        if call == "ask":
            self.questions[json.loads(fields["question"])] += 1
