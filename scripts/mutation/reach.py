# SPDX-License-Identifier: MIT
"""Which tests reach which functions of the library, how long they take, and so which to run first.

Measured once for each test program, with a library whose functions tell when they are called.
"""

import collections
import hashlib
import json
import re
import subprocess

from mutation import programs

MEASURING_LIMIT = 300  # seconds for one test
SLOW = 1.0             # seconds; such a test runs after the quick ones
FIRST_KILLERS = 5      # tests that noticed other changes
FIRST = 15             # quick tests, the most specific ones; then the others, program by program
START = 0.3            # seconds that a program takes to start
TOO_SLOW = 5.0         # seconds; such a test is left out
STANDARD = re.compile("_Z(NK?(S[at]|9__gnu_cxx)|St|n[aw])")  # functions of the C++ library

Test = collections.namedtuple("Test", "program name seconds together functions")


def file_of(place):
    return place.rpartition(":")[0]


def digest_of(paths):
    digest = hashlib.sha256()
    for path in paths:
        digest.update(path.read_bytes())
    return digest.hexdigest()


def places_of(offsets, telling, source):
    """FILE:LINE of the functions at these offsets of the library that tells of calls. Nothing for those of
    the C++ library, which addr2line finds at their lines of another file."""
    offsets = sorted(offsets)
    found = subprocess.run(["addr2line", "-f", "-e", str(telling)], capture_output=True, text=True,
                           check=True, input="".join(f"{offset:x}\n" for offset in offsets)).stdout
    functions, places = (found.split("\n")[first::2] for first in (0, 1))
    return {offset: "" if STANDARD.match(function)
            else place.split(" ")[0].removeprefix(f"{source}/")
            for offset, function, place in zip(offsets, functions, places)}


def measure(runner, program, telling, library):
    """The tests of a program that pass, each with its seconds, whether it passes in one process with
    the others, and the functions that it reaches."""
    plain = library.build / "libTalvane.so.1"
    names = runner.names(program, plain.parent)
    alone = runner.run(program, telling.parent, [(MEASURING_LIMIT, [name]) for name in names],
                       goes_on=True)
    together = runner.run(program, plain.parent, [(MEASURING_LIMIT, names)], goes_on=True)
    passing = set(programs.passing_tests(together[0])) if together else set()
    # An exception may not pass through functions that tell of calls.
    failing = [name for name, part in zip(names, alone) if not part.passed]
    again = runner.run(program, plain.parent, [(MEASURING_LIMIT, [name]) for name in failing],
                       goes_on=True)
    broken = {name for name, part in zip(failing, again) if not part.passed}
    if broken:
        print(f"{program.name}: fails without a change, and is left out: {' '.join(sorted(broken))}")
    places = places_of({offset for part in alone for offset in part.reached}, telling, library.source)

    def functions(part):
        own = {places[offset] for offset in part.reached}
        return sorted(place for place in own if file_of(place) in library.compile)

    return [[name, part.seconds, name in passing, functions(part)]
            for name, part in zip(names, alone) if name not in broken]


def all_tests(runner, library, work, tests):
    """The tests of all programs. What was measured of a program is kept until it changes."""
    folder = work / "reach"
    sources = [library.source / file for file in sorted(library.compile)]
    found, telling = [], None
    for name in programs.PROGRAMS:
        kept = folder / (name.replace("/", "-") + ".json")
        digest = digest_of([tests / name, *sources])
        measured = json.loads(kept.read_text()) if kept.exists() else {}
        if measured.get("digest") != digest:
            telling = telling or library.build_telling(folder)
            measured = {"digest": digest,
                        "tests": measure(runner, tests / name, telling, library)}
            kept.write_text(json.dumps(measured))
            print(f"measured {len(measured['tests'])} tests of {name}", flush=True)
        found += [Test(name, *test) for test in measured["tests"] if test[1] < TOO_SLOW]
    return found


def enclosing_function(lines, starts, number):
    """The line, out of `starts`, of the function that has this line; None outside of functions."""
    start = max((line for line in starts if line <= number), default=None)
    if start is None or start < number and any(
            line.startswith("}") or at == start and line.rstrip().endswith("}")
            for at, line in enumerate(lines[start - 1:number - 1], start)):
        return None
    return start


class Reach:
    def __init__(self, tests, source):
        self.tests = tests
        self.source = source
        self.of_function = collections.defaultdict(list)
        self.of_file = collections.defaultdict(list)
        for test in tests:
            for place in test.functions:
                self.of_function[place].append(test)
            for file in sorted({file_of(place) for place in test.functions}):
                self.of_file[file].append(test)

    def reaching(self, change, linked_anew):
        """The tests that reach the changed function; outside of functions, as in a table, those that
        reach the file. A program that has the source within itself, and is linked anew, tells of no
        calls."""
        lines = (self.source / change.file).read_text().split("\n")
        starts = [int(place.rpartition(":")[2]) for place in self.of_function
                  if file_of(place) == change.file]
        # What is indented is a function within another, as a lambda.
        outer = [start for start in starts if not lines[start - 1].startswith(" ")]
        start = enclosing_function(lines, outer, change.line)
        found = self.of_function[f"{change.file}:{start}"] if start else self.of_file[change.file]
        own = [test for test in self.tests if test.program in linked_anew and test not in found]
        return found + own or self.tests


def by_program(tests):
    """Groups of tests of one program: lists of lists, whose tests run in one process each."""
    groups = collections.defaultdict(list)
    for test in tests:
        groups[test.program].append(test)
    for group in groups.values():
        together = [test for test in group if test.together]
        yield ([together] if together else []) + [[test] for test in group if not test.together]


def in_order(tests, change, kills):
    """Such groups in the order of their runs: a few that noticed changes near this one, the quick
    tests, first those of the folder that reach the fewest functions, and the slow tests. `kills` are
    the lines of the file whose changes were noticed, each with the program and the test."""
    noticed = collections.Counter()
    for line, program, name in kills:
        noticed[program, name] += 1 / (1 + abs(line - change.line))

    def by_promise(test):
        return -noticed[test.program, test.name] / (test.seconds + START)

    def by_specificity(test):
        return not test.program.startswith(change.room), len(test.functions)

    near = sorted(tests, key=by_promise)[:FIRST_KILLERS]
    near = [test for test in near if noticed[test.program, test.name]]
    rest = [test for test in tests if test not in near]
    specific = sorted((test for test in rest if test.seconds < SLOW), key=by_specificity)
    others = sorted(specific[FIRST:], key=by_promise)
    for tests_at_once in (near, specific[:FIRST], others):
        yield from by_program(tests_at_once)
    for test in sorted((test for test in rest if test.seconds >= SLOW), key=lambda test: test.seconds):
        yield [[test]]
