"""A headless browser, driven over the WebDriver protocol (W3C)."""

from __future__ import annotations

import json
import shutil
import socket
import urllib.error
import urllib.request
from pathlib import Path
from types import TracebackType
from typing import Any

from desktop.child import Child
from desktop.installation import free_port
from desktop.project import base_environment
from desktop.waiting import wait_until

DRIVER = shutil.which("chromedriver")
BROWSER = shutil.which("chromium")
MISSING = ("chromium and chromium-driver are not installed: 131 MB to fetch, 436 MB on the disk, a "
           "minute; apt-get install chromium chromium-driver")

_ELEMENT = "element-6066-11e4-a52e-4f735466cecf"  # the key under which an element is handed over
_REPLY_S = 60.0


class Browser:
    """One browser without a window, from construction until the end of the with block."""

    def __init__(self, folder: Path) -> None:
        assert DRIVER is not None and BROWSER is not None
        folder.mkdir(parents=True, exist_ok=True)
        self._port = free_port()
        env = {**base_environment(), "HOME": str(folder), "TMPDIR": str(folder)}
        self._driver = Child([DRIVER, f"--port={self._port}"], env=env,
                             output=folder / "chromedriver.log")
        try:
            wait_until(self._listens, "the browser's driver")
            arguments = ["--headless=new", "--no-sandbox", "--disable-gpu", "--no-proxy-server",
                         "--disable-dev-shm-usage", f"--user-data-dir={folder / 'profile'}"]
            options = {"binary": BROWSER, "args": arguments}
            self._session = ""
            made = self._call("POST", "/session", {"capabilities": {"alwaysMatch": {
                "goog:chromeOptions": options}}})
            self._session = f"/session/{made['sessionId']}"
        except BaseException:
            self._driver.stop()
            raise

    def __enter__(self) -> Browser:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self._call("DELETE", self._session, None)
        self._driver.stop()

    def open(self, address: str) -> None:
        self._call("POST", f"{self._session}/url", {"url": address})

    def run(self, script: str, *arguments: Any) -> Any:
        """What a script of the page returns."""
        return self._call("POST", f"{self._session}/execute/sync",
                          {"script": script, "args": list(arguments)})

    def text(self, selector: str) -> str:
        return str(self.run("return document.querySelector(arguments[0]).innerText", selector))

    def click(self, selector: str) -> None:
        self._call("POST", f"{self._element(selector)}/click", {})

    def type(self, selector: str, text: str) -> None:
        """Replaces what a field holds."""
        element = self._element(selector)
        self._call("POST", f"{element}/clear", {})
        self._call("POST", f"{element}/value", {"text": text})

    def _element(self, selector: str) -> str:
        found = self._call("POST", f"{self._session}/element",
                           {"using": "css selector", "value": selector})
        return f"{self._session}/element/{found[_ELEMENT]}"

    def _listens(self) -> bool:
        with socket.socket() as probe:
            return probe.connect_ex(("127.0.0.1", self._port)) == 0

    def _call(self, method: str, path: str, body: Any) -> Any:
        data = None if body is None else json.dumps(body).encode("utf-8")
        request = urllib.request.Request(f"http://127.0.0.1:{self._port}{path}", data=data,
                                         method=method, headers={"Content-Type": "application/json"})
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        try:
            with opener.open(request, timeout=_REPLY_S) as reply:
                return json.loads(reply.read())["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(error.read().decode("utf-8", "replace")[:500]) from error
