#!/usr/bin/env python3
"""Makes single random changes in the sources, one at a time, and runs the tests until one fails: a
change that no test notices shows what the tests do not say. mutants.sh [--count N] [--seed N];
what was tried is also in build/mutants/results.json, and a run that was broken off goes on there."""

from __future__ import annotations

import argparse
import json
import random
import sys
import time
from pathlib import Path

from bench import Bench
from mutation import Mutation, mutations, sources

ROOT = Path(__file__).resolve().parents[2]
FOLDER = ROOT / "build/mutants"
RESULTS = FOLDER / "results.json"
ROOMS = ("app", "service", "localchannel", "locallibrary", "ui")
SEED = 1


def chosen(seed: int) -> list[Mutation]:
    """Every possible change, in an order that the seed fixes."""
    found = [mutation for path in sources(ROOT, ROOMS)
             for mutation in mutations(path, (ROOT / path).read_text(encoding="utf-8"))]
    random.Random(seed).shuffle(found)
    return found


def summary(outcomes: dict[str, str]) -> str:
    tried = {name: outcome for name, outcome in outcomes.items() if outcome != "invalid"}
    alive = [name for name, outcome in tried.items() if not outcome]
    lines = [f"survivor: {name}" for name in alive]
    lines.append(f"mutants: {len(tried)} tried, {len(tried) - len(alive)} killed, "
                 f"{len(alive)} survived ({len(outcomes) - len(tried)} did not compile)")
    return "\n".join(lines)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--count", type=int, default=200, help="how many are tried")
    parser.add_argument("--seed", type=int, default=SEED, help="which ones")
    parser.add_argument("--near", action="store_true",
                        help="run the tests of the room only, not all others too")
    parser.add_argument("--list", action="store_true", help="only say which they would be")
    parser.add_argument("--match", default="", help="only those whose description has this text")
    options = parser.parse_args()
    pool = [mutation for mutation in chosen(options.seed) if options.match in mutation.described()]
    if options.list:
        print("\n".join(mutation.described() for mutation in pool[:options.count]))
        return 0
    bench = Bench(ROOT, FOLDER)
    bench.prepare()
    kept = json.loads(RESULTS.read_text()) if RESULTS.exists() else {}
    outcomes: dict[str, str] = {}
    tried = 0
    for mutation in pool:
        if tried >= options.count:
            break
        name = mutation.described()
        start = time.monotonic()
        # A survivor is tried again: the tests may have learnt.
        outcome = kept.get(name) or bench.outcome(mutation, options.near)
        outcomes[name] = kept[name] = outcome
        RESULTS.write_text(json.dumps(kept, indent=1, ensure_ascii=False))
        tried += outcome != "invalid"
        print(f"[{tried}/{options.count}] {outcome or 'SURVIVED'} "
              f"({time.monotonic() - start:.0f} s)  {name}", flush=True)
    print(f"seed {options.seed}, of {len(pool)} possible changes")
    print(summary(outcomes))
    return 1 if any(not outcome for outcome in outcomes.values()) else 0


if __name__ == "__main__":
    sys.exit(main())
