#!/usr/bin/env python3
"""Uses the assistant for a while without a pause - guard questions, typed ones, suggestions,
refreshes, pictures opened large, screens that change - against a demo service of which one call in
five fails, in every way it can, and which is gone altogether for some seconds every minute. Then
says whether it crashed, whether a guard question was lost, and what its memory, its open files, its
threads and, under Wine, its handles and GDI objects did after the first minute. soak.sh [--minutes N];
the figures are also in build/soak/results.json."""

from __future__ import annotations

import argparse
import json
import os
import shutil
import statistics
import subprocess
import sys
import time

from desktop.assistant import CLOSE_BUTTON, Assistant
from desktop.demoservice import DemoService
from desktop.display import Display
from desktop.guardchannel import GuardClient, channel_port, document
from desktop.installation import Installation
from desktop.project import BUILD
from desktop.waiting import NotSeen, wait_until
from soak import growth
from soak.background import Background
from soak.handles import Handles, handles
from soak.memory import held_kib
from soak.relay import Relay
from soak.service import ANSWERED, CUT, ServiceWatch
from soak.traffic import GuardTraffic, UserTraffic

# Each build has its own, so that several may run at a time.
FOLDER = BUILD.parent / ("soak" if BUILD.name == "release" else f"soak-{BUILD.name}")
SANITIZED = "ASAN_OPTIONS" in os.environ

GUARD_PAUSE_S = 0.5
USER_PAUSE_S = 1.0
FAULT_PAUSE_S = 0.05
HELD_QUESTIONS = 50
WARM_UP_S = 60.0
DRAIN_S = 60.0
SAMPLE_S = 5.0
END_S = 120.0
AWAY_EVERY_S = 60.0
AWAY_S = 6.0
BEFORE_AWAY_S = 30.0
HUNG_AFTER_S = 10.0

# Memory that may come and go with what is just under way, beside the conversation's own.
TOLERANCE_KIB = 24 * 1024
# The same for files, sockets and threads: each call that waits has some of each.
TOLERANCE_HANDLES = 40
# As many animations as may play at a time, which is bounded, hold their files open.
PLAYING_FILES = 100


def hold_questions(assistant: Assistant, port: int) -> list[str]:
    """Posts questions before the window is ready for them."""
    questions = [f"如何重启云桌面 H{number:05}" for number in range(HELD_QUESTIONS)]
    assistant.wait_for_log("Tcp listen the port")
    with GuardClient(port) as client:
        for question in questions:
            client.send(document(question))
            if not client.acknowledged():
                raise RuntimeError(f"the held question {question!r} was not acknowledged")
    return questions


def conversation_kib(watch: ServiceWatch, before: dict[str, int], costs: growth.Costs) -> float:
    """What the conversation has grown by since the counts in before."""
    now = asked(watch)
    return sum((now[kind] - before[kind]) * getattr(costs, kind) for kind in now)


def asked(watch: ServiceWatch) -> dict[str, int]:
    """How many questions were answered, were not, and had their answer cut."""
    counts = {"answered": 0, "unanswered": 0, "cut": 0}
    for (call, fault), count in watch.faults.items():
        if call == "ask":
            kind = "answered" if fault in ANSWERED else "cut" if fault in CUT else "unanswered"
            counts[kind] += count
    return counts


def missing(questions: list[str], watch: ServiceWatch, *, read: bool = True) -> list[str]:
    if read:
        watch.read()
    return [question for question in questions if watch.questions[question] == 0]


def all_asked(questions: list[str], watch: ServiceWatch, patience_s: float, *,
              read: bool = True) -> bool:
    """Whether the service sees every question before long."""
    try:
        wait_until(lambda: not missing(questions, watch, read=read), "every guard question", patience_s)
    except NotSeen:
        return False
    return True


class Outages:
    """Takes the service away now and then. Guard questions are held back meanwhile and all that were
    posted are awaited first: those that nobody could answer would count as lost. A question that hangs
    is ended when others wait behind it: the waits of the window end in the opposite order of their
    beginnings, so what hangs for 800 s would hold them back as long."""

    def __init__(self, relay: Relay, guard: GuardTraffic, watch: ServiceWatch) -> None:
        self._relay = relay
        self._guard = guard
        self._watch = watch
        self._next = time.monotonic() + AWAY_EVERY_S
        self.count = 0

    def step(self) -> None:
        """Takes it away when its time has come; returns when it is back."""
        if time.monotonic() < self._next:
            return
        posted = self._guard.pause()
        try:
            if not all_asked(posted, self._watch, HUNG_AFTER_S, read=False):
                self._relay.drop()
                if not all_asked(posted, self._watch, BEFORE_AWAY_S, read=False):
                    return  # one of them still waits for a slow answer: the next time then
            self._relay.cut()
            time.sleep(AWAY_S)
            self._relay.mend()
            self.count += 1
        finally:
            self._guard.go_on()
            self._next = time.monotonic() + AWAY_EVERY_S


def soak(seconds: float, display: Display) -> dict[str, object]:
    """The figures of one soak."""
    costs = growth.measure(FOLDER / "growth", display)
    with DemoService(FOLDER / "service") as service, Relay(service.http_port) as relay:
        installation = Installation(FOLDER / "installation")
        shutil.copy2(BUILD / f"tests/soakassistant{installation.program.suffix}",
                     installation.program)
        installation.use_service(relay.port)
        service.fault("hot", "delay", arg=3000)
        port = channel_port(installation)
        with Assistant(installation, display) as assistant:
            held = hold_questions(assistant, port)
            assistant.wait_for_greeting()
            watch = ServiceWatch(service)
            guard = GuardTraffic(port)
            user = UserTraffic(assistant)
            outages = Outages(relay, guard, watch)
            samples: list[float] = []
            opened: list[Handles] = []
            with (Background(watch.break_calls, FAULT_PAUSE_S),
                  Background(guard.post, GUARD_PAUSE_S), Background(user.step, USER_PAUSE_S)):
                begun = time.monotonic()
                warm = min(WARM_UP_S, seconds / 2)
                first: dict[str, int] | None = None
                while time.monotonic() - begun < seconds and assistant.alive:
                    time.sleep(SAMPLE_S)
                    if time.monotonic() - begun >= warm:
                        first = first or asked(watch)
                        try:
                            samples.append(held_kib(assistant.process.pid))
                            opened.append(handles(assistant.process.pid,
                                                  installation.program.parent))
                        except (OSError, RuntimeError):
                            break  # it has just ended, which the figures tell
                    outages.step()
            questions = held + guard.posted
            if not all_asked(questions, watch, HUNG_AFTER_S):
                relay.drop()  # what hangs holds others back
                all_asked(questions, watch, DRAIN_S)
            lost = missing(questions, watch)
            own = conversation_kib(watch, first or asked(watch), costs)
            crashed = not assistant.alive
            asked_to_end = time.monotonic()
            if not crashed:
                assistant.click(*CLOSE_BUTTON)
            try:
                status: int | str = assistant.process.wait(END_S)
            except subprocess.TimeoutExpired:
                status = "none: it did not end"
            ended = time.monotonic() - asked_to_end
            guard.close()
            return {
                "seconds": round(seconds),
                "crashed": crashed,
                "exit status": status,
                "seconds to end": round(ended, 1),
                "printed": assistant.process.printed(),
                "guard questions": len(questions),
                "lost": lost,
                "asked twice": [text for text in questions if watch.questions[text] > 1],
                "typed questions": user.typed,
                "missed by the user": user.missed,
                "times the service was away": outages.count,
                "calls": dict(watch.calls),
                "faults": {f"{call} {kind}": count
                           for (call, kind), count in sorted(watch.faults.items())},
                "refused by the service": dict(watch.refused),
                "KiB of an answered question": round(costs.answered, 1),
                "KiB of an unanswered question": round(costs.unanswered, 1),
                "KiB of a cut answer": round(costs.cut, 1),
                "memory after the first minute, KiB": samples[0] if samples else None,
                "memory at the end, KiB": samples[-1] if samples else None,
                "the conversation's own growth, KiB": round(own),
                "growth beside it, KiB": round(samples[-1] - samples[0] - own) if samples else None,
                "open after the first minute": as_list(opened[:1]),
                "open at the end": as_list(opened[-1:]),
                "most files": max((one.files for one in opened), default=None),
                "most threads": max((one.threads for one in opened), default=None),
                "most handles": max((one.handles for one in opened), default=None),
                "most GDI objects": max((one.gdi_objects for one in opened), default=None),
                "samples, KiB": samples,
                "samples, open": as_list(opened),
            }


def as_list(counts: list[Handles]) -> list[list[int]]:
    """Files, threads, handles and GDI objects."""
    return [[one.files, one.threads, one.handles, one.gdi_objects] for one in counts]


def middle(counts: list[list[int]], part: int) -> float:
    return statistics.median(count[part] for count in counts)


def judge(figures: dict[str, object]) -> list[str]:
    """What is wrong with the figures."""
    wrong = []
    if figures["crashed"] or figures["exit status"] != 0 or figures["printed"]:
        wrong.append("the program did not end quietly")
    if figures["lost"]:
        wrong.append("guard questions were lost")
    if figures["asked twice"]:
        wrong.append("guard questions were asked twice")
    beside = figures["growth beside it, KiB"]
    # A sanitizer keeps what was freed.
    if not SANITIZED and (not isinstance(beside, (int, float)) or beside > TOLERANCE_KIB):
        wrong.append("memory grew beside the conversation")
    opened = figures["samples, open"]
    assert isinstance(opened, list)
    tenth = max(1, len(opened) // 10)
    for part, (what, more) in enumerate((("open files", TOLERANCE_HANDLES + PLAYING_FILES),
                                         ("threads", TOLERANCE_HANDLES),
                                         ("handles", TOLERANCE_HANDLES + PLAYING_FILES),
                                         ("GDI objects", TOLERANCE_HANDLES))):
        if not opened or middle(opened[-tenth:], part) > middle(opened[:tenth], part) + more:
            wrong.append(f"{what} became more and more")
    return wrong


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--minutes", type=float, default=10.0)
    minutes = parser.parse_args().minutes
    # Nothing of an earlier run may count in this one.
    shutil.rmtree(FOLDER, ignore_errors=True)
    FOLDER.mkdir(parents=True)
    with Display(FOLDER / "display") as display:
        figures = soak(minutes * 60, display)
    (FOLDER / "results.json").write_text(
        json.dumps(figures, indent=1, ensure_ascii=False) + "\n", encoding="utf-8")
    for name, value in figures.items():
        if not name.startswith("samples"):
            print(f"{name}: {value}")
    wrong = judge(figures)
    for problem in wrong:
        print(f"soak: {problem}", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(130)
