"""What the conversation itself costs, measured on a fresh program."""

from __future__ import annotations

from dataclasses import dataclass
from pathlib import Path

from desktop.assistant import Assistant
from desktop.demoservice import DemoService
from desktop.display import Display
from desktop.guardchannel import GuardClient, channel_port, document
from desktop.installation import Installation

from .memory import held_kib
from .traffic import TEXTS

_WARM_UP = 40
_EXCHANGES = 100
_CUT_ANSWERS = 5


@dataclass(frozen=True)
class Costs:
    """KiB of each question with an answer, with a sentence that there is none, and with an answer
    that was cut at the program's bound."""

    answered: float
    unanswered: float
    cut: float


def measure(folder: Path, display: Display) -> Costs:
    """Asks over the guard channel, without any other work."""
    with DemoService(folder / "service") as service:
        installation = Installation(folder / "installation")
        installation.use_service(service.http_port)
        with Assistant(installation, display) as assistant:
            assistant.wait_for_greeting()
            with GuardClient(channel_port(installation)) as client:
                meter = _Meter(assistant, service, client)
                meter.cost(_WARM_UP, None)
                return Costs(meter.cost(_EXCHANGES, None), meter.cost(_EXCHANGES, "empty"),
                             meter.cost(_CUT_ANSWERS, "huge", 5_000_000))


@dataclass(frozen=True)
class _Meter:
    assistant: Assistant
    service: DemoService
    client: GuardClient

    def cost(self, count: int, fault: str | None, arg: int | None = None) -> float:
        """KiB of each of count questions whose answers go wrong in this way."""
        before = held_kib(self.assistant.process.pid)
        for number in range(count):
            if fault is not None:
                self.service.fault("ask", fault, arg=arg)
            self.client.send(document(TEXTS[number % len(TEXTS)]))
            if not self.client.acknowledged():
                raise RuntimeError("a guard question was not acknowledged")
        return (held_kib(self.assistant.process.pid) - before) / count
