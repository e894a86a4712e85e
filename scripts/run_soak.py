#!/usr/bin/env python3
"""Uses the assistant for a while without a pause - guard questions, typed ones, suggestions,
refreshes - against a demo service of which one call in five fails, in every way it can. Then says
whether it crashed, whether a guard question was lost, and what its memory did after the first
minute. soak.sh [--minutes N]; the figures are also in build/soak/results.json."""

from __future__ import annotations

import argparse
import json
import shutil
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
from soak.memory import held_kib
from soak.service import ANSWERED, CUT, ServiceWatch
from soak.traffic import GuardTraffic, UserTraffic

FOLDER = BUILD.parent / "soak"

GUARD_PAUSE_S = 0.5
USER_PAUSE_S = 1.0
FAULT_PAUSE_S = 0.05
HELD_QUESTIONS = 50
WARM_UP_S = 60.0
DRAIN_S = 60.0
SAMPLE_S = 5.0
END_S = 120.0

# Memory that may come and go with what is just under way, beside the conversation's own.
TOLERANCE_KIB = 24 * 1024


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


def missing(questions: list[str], watch: ServiceWatch) -> list[str]:
    watch.read()
    return [question for question in questions if watch.questions[question] == 0]


def soak(seconds: float, display: Display) -> dict[str, object]:
    """The figures of one soak."""
    costs = growth.measure(FOLDER / "growth", display)
    with DemoService(FOLDER / "service") as service:
        installation = Installation(FOLDER / "installation")
        shutil.copy2(BUILD / "tests/soakassistant", installation.program)
        installation.use_service(service.http_port)
        service.fault("hot", "delay", arg=3000)
        port = channel_port(installation)
        with Assistant(installation, display) as assistant:
            held = hold_questions(assistant, port)
            assistant.wait_for_greeting()
            watch = ServiceWatch(service)
            guard = GuardTraffic(port)
            user = UserTraffic(assistant)
            samples: list[float] = []
            with (Background(watch.break_calls, FAULT_PAUSE_S),
                  Background(guard.post, GUARD_PAUSE_S), Background(user.step, USER_PAUSE_S)):
                begun = time.monotonic()
                warm = min(WARM_UP_S, seconds / 2)
                first: dict[str, int] | None = None
                while time.monotonic() - begun < seconds and assistant.alive:
                    time.sleep(SAMPLE_S)
                    if time.monotonic() - begun >= warm:
                        first = first or asked(watch)
                        samples.append(held_kib(assistant.process.pid))
            questions = held + guard.posted
            try:
                wait_until(lambda: not missing(questions, watch), "every guard question", DRAIN_S)
            except NotSeen:
                pass
            lost = missing(questions, watch)
            own = conversation_kib(watch, first or asked(watch), costs)
            crashed = not assistant.alive
            asked_to_end = time.monotonic()
            if not crashed:
                assistant.click(*CLOSE_BUTTON)
            status = assistant.process.wait(END_S)
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
                "samples, KiB": samples,
            }


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
    if not isinstance(beside, (int, float)) or beside > TOLERANCE_KIB:
        wrong.append("memory grew beside the conversation")
    return wrong


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--minutes", type=float, default=10.0)
    minutes = parser.parse_args().minutes
    FOLDER.mkdir(parents=True, exist_ok=True)
    with Display(FOLDER / "display") as display:
        figures = soak(minutes * 60, display)
    (FOLDER / "results.json").write_text(
        json.dumps(figures, indent=1, ensure_ascii=False) + "\n", encoding="utf-8")
    for name, value in figures.items():
        if name != "samples, KiB":
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
