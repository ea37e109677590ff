#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Builds with coverage counters, runs the tests and prints which share of the statements and branches
# of each room they reach; lists the lines of the library that they miss. Branches that only an
# exception takes are left out, and so is what a line excludes by LCOV_EXCL_BR_LINE, with the reason
# beside it. Usage: coverage.sh [REGEX]: with one, only the tests whose names match it are run.
set -eu
cd "$(dirname "$0")/.."

scripts/install-packages.sh test coverage
scripts/enable-32-bit.sh >/dev/null
build=build/coverage
cmake --preset coverage -DTALVANE_TEST_TIMEOUT=3600 >/dev/null
cmake --build --preset coverage >/dev/null
find "$build" -name '*.gcda' -delete

# Failures are named at the end: the counters of the tests that passed count all the same.
failures=0
ctest --test-dir "$build" --parallel "$(nproc)" --no-tests=error ${1:+-R "$1"} >"$build/tests.log" ||
    failures=1

gcovr --root . --object-directory "$build" --exclude-throw-branches --exclude-unreachable-branches \
    --filter '(SmBios|IPMI|PCI|storage|load|interface|base|tools|simulator|bridge)/' \
    --filter '[^/]*\.cpp' --exclude 'tests/' --exclude 'build/' \
    --json "$build/coverage.json" "$build" >"$build/gcovr.log" 2>&1

python3 - "$build/coverage.json" <<'END'
import collections
import json
import sys

LIBRARY = ("the root", "SmBios", "IPMI", "PCI", "storage", "load", "interface", "base")
ROOMS = LIBRARY + ("bridge", "tools", "simulator")

rooms = collections.defaultdict(lambda: [0, 0, 0, 0])
missed = []
for file in json.load(open(sys.argv[1]))["files"]:
    path = file["file"]
    room = path.split("/")[0] if "/" in path else "the root"
    row = rooms[room]
    for line in file["lines"]:
        if line["gcovr/noncode"]:
            continue
        branches = [b for b in line["branches"] if not b.get("throw")]
        taken = sum(b["count"] > 0 for b in branches)
        row[0] += line["count"] > 0
        row[1] += 1
        row[2] += taken
        row[3] += len(branches)
        if room in LIBRARY and (line["count"] == 0 or taken < len(branches)):
            missed.append(f"{path}:{line['line_number']}: {taken} of {len(branches)} branches")

def share(part, whole):
    return f"{100 * part / whole:.1f} %" if whole else "-"

print(f"{'Room':12} {'statements':>20} {'branches':>20}")
for room in ROOMS:
    row = rooms.get(room)
    if row is None:
        continue
    print(f"{room:12} {share(row[0], row[1]):>8} {f'of {row[1]}':>11} "
          f"{share(row[2], row[3]):>8} {f'of {row[3]}':>11}")
print("\nMissed in the library:" if missed else "\nNothing is missed in the library.")
print("\n".join(missed))
END

if [ "$failures" != 0 ]; then
    echo 'Tests failed:' >&2
    sed -n '/^The following tests FAILED/,$p' "$build/tests.log" >&2
    exit 1
fi
