"""What one running program tells a screen reader: readingprocess.py PROCESS-ID.

A process of its own, because the reader's library belongs to one session for good. Each line on standard
input is answered by one line of JSON: "read" gives all windows with everything in them, "press CHILD ..."
presses what those numbers lead to and gives whether that could be pressed, "focus" gives what has got the
focus since it was asked for last, in order."""

from __future__ import annotations

import json
import sys
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

_STATES = ("ENABLED", "FOCUSABLE", "FOCUSED", "SHOWING", "VISIBLE", "MODAL", "ACTIVE", "EDITABLE")
_DEEPEST = 60


class Listener:
    """One process, as it is heard."""

    def __init__(self, process: int) -> None:
        self._process = process
        self._focused: list[dict[str, str]] = []
        # Kept: the library does not.
        self._events = Atspi.EventListener.new(self._note_focus)
        self._events.register("object:state-changed:focused")

    def obey(self, words: list[str]) -> object:
        if words[0] == "focus":
            focused, self._focused = self._focused, []
            return focused
        top = self._application()
        if top is None:
            return None
        return press(top, [int(word) for word in words[1:]]) if words[0] == "press" else read(top)

    def _application(self) -> Atspi.Accessible | None:
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            found = desktop.get_child_at_index(index)
            if found is not None and found.get_process_id() == self._process:
                found.set_cache_mask(Atspi.Cache.NONE)  # each time it tells anew
                return found
        return None

    def _note_focus(self, event: Atspi.Event) -> None:
        try:
            if event.detail1 and event.source.get_process_id() == self._process:
                self._focused.append({"role": event.source.get_role_name(),
                                      "name": event.source.get_name()})
        except GLib.Error:
            pass  # it has gone already


def read(node: Atspi.Accessible, depth: int = 0) -> dict[str, object]:
    if depth > _DEEPEST:
        raise RecursionError("what the program tells has no end")
    states = node.get_state_set()
    text = Atspi.Text.get_text(node, 0, -1) if node.get_text_iface() is not None else None
    children = [node.get_child_at_index(index) for index in range(node.get_child_count())]
    return {"role": node.get_role_name(), "name": node.get_name(),
            "description": node.get_description(), "text": text,
            "states": [name.lower() for name in _STATES
                       if states.contains(getattr(Atspi.StateType, name))],
            "can_be_pressed": press_action(node) is not None,
            "children": [read(child, depth + 1) for child in children if child is not None]}


def press_action(node: Atspi.Accessible) -> int | None:
    for index in range(Atspi.Action.get_n_actions(node) if node.get_action_iface() is not None else 0):
        if Atspi.Action.get_action_name(node, index).lower() == "press":
            return index
    return None


def press(node: Atspi.Accessible, path: list[int]) -> bool:
    for index in path:
        node = node.get_child_at_index(index)
    action = press_action(node)
    return action is not None and bool(Atspi.Action.do_action(node, action))


def main() -> int:
    # Of two names the library's description marks the only one that works as deprecated.
    warnings.simplefilter("ignore", DeprecationWarning)
    Atspi.init()
    listener = Listener(int(sys.argv[1]))
    loop = GLib.MainLoop()

    def take_line(_source: int, _condition: GLib.IOCondition) -> bool:
        line = sys.stdin.readline()
        if not line:
            loop.quit()
            return False
        try:
            answer = listener.obey(line.split())
        except GLib.Error as error:  # a window that went while it was read
            answer = {"error": error.message}
        except BaseException:
            loop.quit()
            raise
        print(json.dumps(answer), flush=True)
        return True

    GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_LOW, GLib.IOCondition.IN | GLib.IOCondition.HUP,
                      take_line)
    print(json.dumps("listening"), flush=True)
    loop.run()
    return 0


if __name__ == "__main__":
    sys.exit(main())
