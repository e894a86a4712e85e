"""What the end-to-end tests share: a screen, a demo service and an installation for each test."""

from __future__ import annotations

import tempfile
import unittest
from pathlib import Path
from typing import Mapping

from .assistant import Assistant
from .demoservice import DemoService
from .display import HEIGHT, WIDTH, Display
from .installation import Installation
from .project import ON_WINE


class DesktopTest(unittest.TestCase):
    """Nothing is shared between two tests, so that they pass alone, together and in any order."""

    SCREEN = (WIDTH, HEIGHT)
    # Whether Wine gets a window manager, without which it loses the keyboard now and then.
    MANAGED_ON_WINE = False

    def setUp(self) -> None:
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory(prefix="miravel-test-")))
        self.display = self.enterContext(Display(self.folder / "display", size=self.SCREEN))
        if ON_WINE and self.MANAGED_ON_WINE:
            self.display.manage_windows()
        self.installation = Installation(self.folder / "installation")
        self._services = 0

    def start_service(self, *, http_port: int = 0, https: bool = False) -> DemoService:
        """A demo service that the program is pointed to."""
        self._services += 1
        folder = self.folder / f"service{self._services}"
        service = self.enterContext(DemoService(folder, http_port=http_port, https=https))
        port = service.https_port if https else service.http_port
        assert port is not None
        self.installation.use_service(port, https=https)
        return service

    def start_assistant(self, environment: Mapping[str, str] | None = None, *,
                        arguments: tuple[str, ...] = ("--Type=vdi",)) -> Assistant:
        """The program, just started."""
        return self.enterContext(Assistant(self.installation, self.display, arguments=arguments,
                                           environment=environment))

    def start_greeted(self, environment: Mapping[str, str] | None = None) -> Assistant:
        """The program when it has its hot questions and is ready for a question."""
        assistant = self.start_assistant(environment)
        assistant.wait_for_greeting()
        return assistant

    def close_cleanly(self, assistant: Assistant) -> None:
        """Closes the window as a person does: the program ends without an error and has nothing to
        say outside its log."""
        status = assistant.close()
        self.assertEqual((0, ""), (status, assistant.process.printed()))
