"""Asks one question and saves what the window shows: python3 -m desktop.snapshot QUESTION FILE"""

from __future__ import annotations

import sys
import tempfile
from pathlib import Path

from .assistant import Assistant
from .demoservice import DemoService
from .display import Display
from .installation import Installation


def main() -> None:
    question, file = sys.argv[1:]
    with tempfile.TemporaryDirectory(prefix="miravel-") as name:
        folder = Path(name)
        installation = Installation(folder / "installation")
        with Display(folder / "display") as display, DemoService(folder / "service") as service:
            installation.use_service(service.http_port)
            with Assistant(installation, display) as assistant:
                assistant.wait_for_greeting()
                assistant.ask(question)
                assistant.wait_for_answer(question)
                assistant.look().save(file)
                assistant.close()


if __name__ == "__main__":
    main()
