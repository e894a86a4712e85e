#!/usr/bin/env python3
"""Makes single random changes in the sources, one at a time, and runs the tests until one fails: a
change that no test notices shows what the tests do not say. mutants.sh [--count N] [--seed N];
what was tried is also in build/mutants/results.json, and a run that was broken off goes on there."""

from __future__ import annotations

import argparse
import hashlib
import json
import signal
import sys
import time
from dataclasses import asdict
from pathlib import Path

from bench import Bench, Outcome
from mutation import Mutation, mutations, sources

ROOT = Path(__file__).resolve().parents[2]
FOLDER = ROOT / "build/mutants"
ROOMS = ("app", "service", "localchannel", "locallibrary", "ui")
SEED = 1


def chosen(seed: int) -> list[Mutation]:
    """Every possible change, in an order that the seed fixes. It stays when other lines change."""
    found = [mutation for path in sources(ROOT, ROOMS)
             for mutation in mutations(path, (ROOT / path).read_text(encoding="utf-8"))]
    return sorted(found, key=lambda mutation: hashlib.sha256(
        f"{seed} {mutation.name}".encode()).digest())


def explained() -> dict[str, str]:
    """The changes that no test can notice, each with the reason: a line with the change's name, and
    an indented one."""
    text = (Path(__file__).with_name("equivalent.txt")).read_text(encoding="utf-8")
    lines = [line for line in text.splitlines() if line and not line.startswith("#")]
    return {name: reason.strip() for name, reason in zip(lines[::2], lines[1::2])}


class Results:
    """What became of each change that was tried, kept in a file."""

    def __init__(self, file: Path) -> None:
        self._file = file
        self._kept = json.loads(file.read_text()) if file.exists() else {}

    def known(self, mutation: Mutation) -> Outcome | None:
        """Nothing for a survivor, which is tried again: the tests may have learnt."""
        kept = self._kept.get(mutation.name)
        return Outcome(**kept) if kept and kept["killer"] else None

    def keep(self, mutation: Mutation, outcome: Outcome) -> None:
        self._kept[mutation.name] = asdict(outcome)
        self._file.write_text(json.dumps(self._kept, indent=1, ensure_ascii=False))


def summary(outcomes: dict[Mutation, Outcome], reasons: dict[str, str]) -> str:
    tried = [mutation for mutation, outcome in outcomes.items() if outcome.compiled]
    alive = [mutation for mutation in tried if not outcomes[mutation].killer]
    told = [mutation for mutation in alive if mutation.name in reasons]
    lines = [f"explained: {mutation.described()}\n    {reasons[mutation.name]}" for mutation in told]
    lines += [f"survivor: {mutation.described()}" for mutation in alive if mutation not in told]
    killed = len(tried) - len(alive)
    lines.append(f"mutants: {len(tried)} tried, {killed} killed "
                 f"({100 * killed / max(len(tried), 1):.1f} %), {len(told)} explained, "
                 f"{len(alive) - len(told)} survived; {len(outcomes) - len(tried)} more did not "
                 f"compile; {sum(outcome.runs for outcome in outcomes.values())} test programs run")
    return "\n".join(lines)


def tried(pool: list[Mutation], count: int, near: bool,
          reasons: dict[str, str]) -> dict[Mutation, Outcome]:
    """Tries changes until so many have compiled."""
    bench = Bench(ROOT, FOLDER)
    bench.prepare()
    results = Results(FOLDER / "results.json")
    outcomes: dict[Mutation, Outcome] = {}
    for mutation in pool:
        number = sum(outcome.compiled for outcome in outcomes.values())
        if number == count:
            break
        start = time.monotonic()
        outcome = results.known(mutation)
        if not outcome:
            outcome = (Outcome("", 0) if mutation.name in reasons
                       else bench.outcome(mutation, near))
        outcomes[mutation] = outcome
        results.keep(mutation, outcome)
        print(f"[{number + outcome.compiled}/{count}] {outcome.killer or 'SURVIVED'} "
              f"({time.monotonic() - start:.0f} s)  {mutation.described()}", flush=True)
    return outcomes


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--count", type=int, default=200, help="how many are tried")
    parser.add_argument("--seed", type=int, default=SEED, help="which ones")
    parser.add_argument("--near", action="store_true",
                        help="run the tests of the room and those beside it, not all others too")
    parser.add_argument("--list", action="store_true", help="only say which they would be")
    parser.add_argument("--match", default="", help="only those whose description has this text")
    options = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1)) # in order: what runs is waited for
    every = chosen(options.seed)
    reasons = explained()
    if gone := reasons.keys() - {mutation.name for mutation in every}:
        parser.error("no longer possible, to be taken out of equivalent.txt: " + "; ".join(gone))
    pool = [mutation for mutation in every if options.match in mutation.described()]
    if options.list:
        print("\n".join(mutation.described() for mutation in pool[:options.count]))
        return 0
    outcomes = tried(pool, options.count, options.near, reasons)
    print(f"seed {options.seed}, of {len(pool)} possible changes")
    print(summary(outcomes, reasons))
    return 1 if any(not outcome.killer and mutation.name not in reasons
                    for mutation, outcome in outcomes.items()) else 0


if __name__ == "__main__":
    sys.exit(main())
