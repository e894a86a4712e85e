"""A question service that checks nothing and says what it is told to say: what the demo service
never does."""

from __future__ import annotations

import json
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from types import TracebackType
from typing import Any

HOT: list[Any] = [{"id": number, "question": f"question {number}"} for number in range(1, 4)]
ANSWER: dict[str, Any] = {"resultType": "QA_NORMAL_RESULT", "standardQuestion": "question 1",
                          "reply": "<p>words</p>", "recommends": []}
RESULTS = {"hot-questions": HOT, "associations": HOT, "answers": ANSWER}


def compact(reply: Any) -> bytes:
    return json.dumps(reply, separators=(",", ":"), ensure_ascii=False).encode("utf-8")


class LaxService:
    """Listens from construction until the end of the with block; results may be changed meanwhile."""

    def __init__(self) -> None:
        self.results: dict[str, Any] = dict(RESULTS)
        self.body: bytes | None = None  # in place of every good reply
        self.refusal: tuple[int, bytes] | None = None  # of every other request than the first
        self.nonces: set[str] = set()
        self.keeps_nonces = False  # refuses one that it has seen, whatever the signature
        service = self

        class Handler(BaseHTTPRequestHandler):
            def do_POST(self) -> None:
                self.rfile.read(int(self.headers.get("Content-Length", 0)))
                service._answer(self)

            do_GET = do_POST

            def log_message(self, *_arguments: object) -> None:
                pass

        self._server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.port = int(self._server.server_address[1])
        self._thread = threading.Thread(target=self._server.serve_forever)
        self._thread.start()

    def __enter__(self) -> LaxService:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self._server.shutdown()
        self._thread.join()
        self._server.server_close()

    def _answer(self, request: BaseHTTPRequestHandler) -> None:
        status, body = 200, self._good_body(request.path)
        nonce = request.headers.get("x-ca-nonce", "")
        if self.keeps_nonces and nonce in self.nonces:
            status, body = 401, compact({"errorCode": "1", "errorMsg": "seen", "result": None})
        elif self.refusal is not None and self.nonces:
            status, body = self.refusal
        self.nonces.add(nonce)
        request.send_response(status)
        request.send_header("Content-Length", str(len(body)))
        request.end_headers()
        request.wfile.write(body)

    def _good_body(self, path: str) -> bytes:
        if self.body is not None:
            return self.body
        result = self.results.get(path.rpartition("/")[2], ANSWER)
        return compact({"errorCode": "0", "errorMsg": "ok", "result": result})
