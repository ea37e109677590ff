#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Changes the library's sources, one place at a time, and runs the tests that reach the place.

A change that no test notices is a survivor: a gap in the tests, or a change that makes no
difference. The test programs are those of a build (the release preset's are quickest); the dynamic
linker gives them the changed library. The same seed gives the same changes. Goes on where the last
run stopped.

  mutate.py --count 1000 --seed 1    tries changes until there are results of 1000
  mutate.py --count 50 --room IPMI   of one folder only; `root` means the files at the top
  mutate.py --again                  tries the survivors again, after tests were added
  mutate.py --report                 prints the results so far
"""

import argparse
import collections
import json
import multiprocessing
import pathlib
import random
import shutil
import sys
import time

from mutation import changes, programs, reach
from mutation.library import Library

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
TESTS = WORK / "tests"
RESULTS = WORK / "results.jsonl"
EQUIVALENT = ROOT / "tests" / "equivalent-mutants.txt"


def time_limit(tests):
    """A change may make the library loop for ever."""
    return 3 * sum(test.seconds for test in tests) + 5


def is_noticed_by(runner, program, mutant, group):
    """The name of a test of this program that notices the change; None when none does."""
    while group:
        parts = runner.run(program, mutant, [(time_limit(part), [test.name for test in part])
                                             for part in group])
        if len(parts) < len(group) and (not parts or parts[-1].passed):
            return group[len(parts)][0].name  # the program ended
        if parts[-1].passed:
            return None
        part = group[len(parts) - 1]
        name = programs.failing_test(parts[-1]) or part[0].name
        if len(part) == 1:
            return name
        # A test of several in one process may fail for what those before it did.
        suspect = [test for test in part if test.name == name]
        if suspect and is_noticed_by(runner, program, mutant, [suspect]):
            return name
        group = [[test] for test in part] + group[len(parts):]
    return None


class Trial:
    def __init__(self, tests_build):
        WORK.mkdir(parents=True, exist_ok=True)
        # Copies, so that a build that goes on meanwhile replaces none.
        for name in programs.PROGRAMS:
            built, copy = tests_build / "tests" / name, TESTS / name
            copy.parent.mkdir(parents=True, exist_ok=True)
            if not copy.exists() or copy.stat().st_mtime != built.stat().st_mtime:
                shutil.copy2(built, copy)
        self.library = Library(ROOT, WORK, tests_build)
        self.runner = programs.Runner(WORK)
        self.reach = reach.Reach(reach.all_tests(self.runner, self.library, WORK, TESTS),
                                 self.library.source)
        self.kills = collections.defaultdict(list)
        self.counted = 0
        self.read = 0

    def learn(self):
        """From the results that have come since: which tests notice changes of which files."""
        results = read_results()
        for result in results[self.read:]:
            self.counted += result["verdict"] != "does not compile"
            if result["by"]:
                self.kills[result["file"]].append((result["line"], *result["by"]))
        self.read = len(results)

    def verdict(self, change):
        """With the program and the test that noticed the change, if one did."""
        if not self.library.build_changed(change):
            return "does not compile", None
        linked_anew = self.library.linked_anew(change)
        reaching = self.reach.reaching(change, linked_anew)
        for group in reach.in_order(reaching, change, self.kills[change.file]):
            name = group[0][0].program
            folder = self.library.mutant if name in linked_anew else TESTS / pathlib.Path(name).parent
            program = folder / pathlib.Path(name).name
            test = is_noticed_by(self.runner, program, self.library.mutant, group)
            if test:
                return "killed", (name, test)
        return "survived", None

    def run(self, wanted, limit, job):
        """Until there are so many results of all jobs together."""
        self.library.mutant = WORK / "mutants" / str(job)
        self.library.mutant.mkdir(parents=True, exist_ok=True)
        self.runner.output = self.library.mutant / "output"
        for change in wanted:
            self.learn()
            if self.counted >= limit:
                break
            start = time.monotonic()
            verdict, by = self.verdict(change)
            seconds = round(time.monotonic() - start, 1)
            with RESULTS.open("a") as file:
                file.write(json.dumps({**change._asdict(), "verdict": verdict, "by": by,
                                       "seconds": seconds}) + "\n")
            print(f"{verdict}: {change.file}:{change.line}: {change.before}  ->  {change.after}",
                  flush=True)


def read_results():
    if not RESULTS.exists():
        return []
    return [json.loads(line) for line in RESULTS.read_text().split("\n") if line]


def name_of(result):
    return f"{result['file']}: {result['before']} -> {result['after']}"


def equivalents():
    """The changes that make no difference, as FILE: BEFORE -> AFTER, with the reason after them."""
    if not EQUIVALENT.exists():
        return set()
    return {line for line in EQUIVALENT.read_text().split("\n")
            if line and not line.startswith(("#", " "))}


def forget_survivors():
    known = equivalents()
    kept = [result for result in read_results()
            if result["verdict"] != "survived" or name_of(result) in known]
    RESULTS.write_text("".join(json.dumps(result) + "\n" for result in kept))


def report():
    results = [result for result in read_results() if result["verdict"] != "does not compile"]
    known = equivalents()
    counts = collections.Counter()
    for result in results:
        verdict = result["verdict"]
        if verdict == "survived" and name_of(result) in known:
            verdict = "equivalent"
        counts[result["room"], verdict] += 1
        if verdict == "survived":
            print(f"survived: {result['file']}:{result['line']}: "
                  f"{result['before']}  ->  {result['after']}")
    verdicts = ("killed", "survived", "equivalent")
    print(f"{'room':10} {'changes':>8}" + "".join(f"{verdict:>12}" for verdict in verdicts))
    for room in sorted({room for room, _ in counts}) + ["all"]:
        row = [sum(count for (of, verdict), count in counts.items()
                   if verdict == wanted and room in (of, "all")) for wanted in verdicts]
        print(f"{room:10} {sum(row):8}" + "".join(f"{count:12}" for count in row))
    if results:
        print(f"{sum(result['seconds'] for result in results) / len(results):.1f} seconds a change")
    return 0


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=0, help="results wanted, those so far included")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--room", action="append", choices=changes.ROOMS)
    parser.add_argument("--again", action="store_true", help="try the survivors again first")
    parser.add_argument("--tests-build", type=pathlib.Path, default=ROOT / "build" / "release",
                        help="the build with the test programs, up to date (build/release)")
    parser.add_argument("--jobs", type=int, default=1, help="changes tried at the same time")
    parser.add_argument("--report", action="store_true")
    options = parser.parse_args()
    if options.report:
        return report()

    trial = Trial(options.tests_build.resolve())
    survivors = {name_of(result) for result in read_results() if result["verdict"] == "survived"}
    if options.again:
        forget_survivors()
    wanted = list(changes.all_changes(trial.library.source, options.room or changes.ROOMS))
    random.Random(options.seed).shuffle(wanted)
    if options.again:
        wanted.sort(key=lambda change: name_of(change._asdict()) not in survivors)
    trial.learn()
    done = {(r["file"], r["line"], r["before"], r["after"]) for r in read_results()}
    wanted = [change for change in wanted
              if (change.file, change.line, change.before, change.after) not in done
              and not changes.is_spelling(change)]
    limit = max(options.count, trial.counted + len(survivors) * options.again)
    jobs = [multiprocessing.Process(target=trial.run, args=(wanted[job::options.jobs], limit, job),
                                    daemon=True)
            for job in range(options.jobs)]
    for job in jobs:
        job.start()
    for job in jobs:
        job.join()
    return report()


if __name__ == "__main__":
    sys.exit(main())
