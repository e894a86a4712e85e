"""The demo question service as a process."""

from __future__ import annotations

import json
import urllib.request
from pathlib import Path
from types import TracebackType
from typing import Any

from .child import Child
from .installation import LOOPBACK
from .programlog import ProgramLog
from .project import DEMO_SERVICE, KNOWLEDGE, base_environment
from .waiting import wait_until

_CONTROL_S = 10.0


class DemoService:
    """Runs from construction until stop() or the end of the with block."""

    def __init__(self, folder: Path, *, http_port: int = 0, https: bool = False,
                 knowledge: Path = KNOWLEDGE) -> None:
        """Starts the service and waits until it listens; its files lie in folder. Port 0 lets the
        system choose."""
        folder.mkdir(parents=True, exist_ok=True)
        ports_file = folder / "ports.json"
        ports_file.unlink(missing_ok=True)
        self.log = ProgramLog(folder / "demoservice.log")
        self.log.mark()
        command: list[str | Path] = [
            DEMO_SERVICE, "--knowledge", knowledge, "--http-port", str(http_port),
            "--ports-file", ports_file, "--log", self.log.path]
        if https:
            command += ["--https-port", "0"]
        self._process = Child(command, env=base_environment(), output=folder / "demoservice.out")
        try:
            ports = wait_until(lambda: self._read_ports(ports_file), "the demo service's ports")
        except BaseException:
            self._process.stop()
            raise
        self.http_port: int = ports["http"]
        self.https_port: int | None = ports.get("https")

    def __enter__(self) -> DemoService:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.stop()

    def stop(self) -> int:
        """Ends the service; its exit status."""
        return self._process.stop()

    def requests(self) -> Any:
        """What the service says it was asked so far."""
        return self._control("GET", "/demo/requests", None)

    def entries(self) -> Any:
        """What the service knows now."""
        return self._control("GET", "/demo/knowledge", None)["entries"]

    def printed(self) -> str:
        """What the service has written to its outputs."""
        return self._process.printed()

    def fault(self, call: str, kind: str, *, arg: int | str | None = None, times: int = 1) -> None:
        """Lets the next calls ("hot", "association" or "ask") go wrong in the named way."""
        wanted: dict[str, Any] = {"call": call, "kind": kind, "times": times}
        if arg is not None:
            wanted["arg"] = arg
        self._control("PUT", "/demo/faults", wanted)

    def _control(self, method: str, path: str, body: Any) -> Any:
        data = None if body is None else json.dumps(body).encode("utf-8")
        request = urllib.request.Request(f"http://{LOOPBACK}:{self.http_port}{path}", data=data,
                                         method=method, headers={"Content-Type": "application/json"})
        # The environment may name a proxy; loopback must not go through it.
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with opener.open(request, timeout=_CONTROL_S) as reply:
            text = reply.read()
        return json.loads(text) if text else None

    def _read_ports(self, ports_file: Path) -> dict[str, Any] | None:
        if not self._process.alive:
            raise RuntimeError("the demo service ended: " + self._process.printed())
        try:
            return json.loads(ports_file.read_text(encoding="utf-8"))
        except (FileNotFoundError, json.JSONDecodeError):
            return None
