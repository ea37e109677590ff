#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Changes the library's sources, one place at a time, and runs the tests of the changed folder.

A change that no test notices is a survivor: a gap in the tests, or a change that makes no
difference. Only the library is built anew, from a copy of the sources; the test programs are those of
the debug preset, which the dynamic linker gives the changed library. Goes on where the last run
stopped, and tries survivors again. The same seed gives the same changes.

  mutate.py --count 200              tries changes until there are results of 200
  mutate.py --count 50 --room IPMI   of one folder only
  mutate.py --report                 prints the results so far
"""

import argparse
import collections
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
COPY = WORK / "source"
BUILD = WORK / "build"
TESTS = WORK / "tests"
BUILT_TESTS = ROOT / "build" / "debug" / "tests"
RESULTS = WORK / "results.jsonl"
EQUIVALENT = ROOT / "tests" / "equivalent-mutants.txt"

# The test programs that stand for a room's sources, those that fail fastest first.
PROGRAMS = {
    "SmBios": ["SmBios/smbios_table_test", "SmBios/smbios_board_test", "SmBios/smbios_memory_test",
               "SmBios/smbios_devices_test", "SmBios/smbios_probe_test", "SmBios/smbios_trim_test"],
    "IPMI": ["IPMI/ipmi_sensor_test", "IPMI/ipmi_transport_test", "IPMI/ipmi_inventory_test",
             "IPMI/ipmi_conversion_test", "IPMI/ipmi_element_test", "IPMI/ipmi_completion_test",
             "IPMI/ipmi_not_ready_test", "IPMI/ipmi_refusal_test"],
    "PCI": ["PCI/pci_test", "PCI/pci_names_test", "PCI/pci_ports_test"],
    "storage": ["storage/storage_test", "storage/storage_walk_test"],
    "load": ["load/load_cpu_test", "load/load_memory_test", "load/load_sleep_test"],
    "interface": ["interface/interface_records_test", "interface/interface_calls_test",
                  "interface/interface_ipmi_test", "interface/interface_order_test",
                  "interface/interface_getters_test", "interface/interface_fields_test",
                  "interface/interface_release_test"],
    "base": ["IPMI/ipmi_conversion_test", "IPMI/ipmi_sensor_test", "interface/interface_ipmi_test"],
}
ROOM_OF_ROOT_FILE = {"GetPciInfo.cpp": "PCI", "LoadMonitor.cpp": "load", "Talvane.cpp": "interface"}
# What OperatorNew and OutOfMemory do shows in programs without a C++ runtime library only.
LEFT_OUT = {"base/OperatorNew.cpp", "base/OutOfMemory.cpp"}

SECONDS_PER_PROGRAM = 240

COMPARISONS = {"==": "!=", "!=": "==", "<=": "<", ">=": ">", "&&": "||", "||": "&&"}
Change = collections.namedtuple("Change", "file line kind before after")


def code_lines(path):
    """Numbers and texts of the lines that may be changed."""
    for number, line in enumerate(path.read_text().split("\n"), 1):
        code = re.sub(r"\s//.*$", "", line)
        stripped = code.strip()
        if not stripped or stripped.startswith(("//", "#", "static_assert", "using ", "namespace")):
            continue
        yield number, line, code


def replaced(line, match, text):
    return line[:match.start()] + text + line[match.end():]


def outside_texts(code):
    """The line with its string and character literals blanked out, so that offsets stay."""
    return re.sub(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])+\'', lambda m: "~" * len(m.group()), code)


def changes_of_line(line, code):
    """Pairs of the kind of change and the changed line."""
    bare = outside_texts(code)
    for match in re.finditer(r"==|!=|<=|>=|&&|\|\|", bare):
        yield "comparison", replaced(line, match, COMPARISONS[match.group()])
    for match in re.finditer(r" < | > ", bare):
        yield "comparison", replaced(line, match, match.group().rstrip() + "= ")
    for match in re.finditer(r" \+ | - | \* | << | >> | & | \| ", bare):
        other = {"+": "-", "-": "+", "*": "+", "<<": ">>", ">>": "<<", "&": "|", "|": "&"}
        yield "operator", replaced(line, match, f" {other[match.group().strip()]} ")
    for match in re.finditer(r"(?<![\w.'])(0[xX][0-9A-Fa-f]+|\d+)(?![\w.'])", bare):
        value = int(match.group(), 0) if not re.match(r"0\d", match.group()) else int(match.group())
        yield "constant", replaced(line, match, str(value + 1))
        if value:
            yield "constant", replaced(line, match, str(value - 1))
    for match in re.finditer(r'"((?:\\.|[^"\\])*)"', code):
        text = match.group(1)
        if not text or "%" in text or "\\" in text:
            continue
        at = len(text) // 2
        other = "x" if text[at] != "x" else "y"
        yield "text", replaced(line, match, f'"{text[:at]}{other}{text[at + 1:]}"')
    for match in re.finditer(r"\((\w+), (\w+)(?=[,)])", bare):
        if match.group(1) != match.group(2):
            yield "arguments", replaced(line, match, f"({match.group(2)}, {match.group(1)}")
    if re.match(r"\s+(?!return|break|continue|const |constexpr |static |throw|case )"
                r"[\w(*].*[)\w\]];$", bare) and bare.count("(") == bare.count(")"):
        if re.match(r"\s+(\(void\))?[\w.:>\[\]*-]+(\(.*\)| [|&+*-]?= .*|\+\+|--);$", bare):
            yield "statement", re.match(r"\s*", line).group() + ";"
    match = re.match(r"(\s*)return (.+);$", bare)
    if match:
        for value in ("0", "-1", "1"):
            if match.group(2) != value and re.fullmatch(r"-?\w+|.*[!=<>]=?.*", match.group(2)):
                yield "return", f"{match.group(1)}return {value};"


def all_changes(rooms):
    for room in sorted(rooms):
        files = sorted((ROOT / room).glob("*.cpp"))
        files += [ROOT / name for name, of in sorted(ROOM_OF_ROOT_FILE.items()) if of == room]
        for path in files:
            file = str(path.relative_to(ROOT))
            if file in LEFT_OUT:
                continue
            for number, line, code in code_lines(path):
                seen = set()
                for kind, after in changes_of_line(line, code):
                    if after != line and after not in seen:
                        seen.add(after)
                        yield room, Change(file, number, kind, line.strip(), after.strip())


def run(command, seconds=None):
    """The exit status; None when the time was up."""
    process = subprocess.Popen(command, cwd=WORK / "scratch",
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               start_new_session=True)
    try:
        return process.wait(seconds)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, 9)
        process.wait()
        return None


def prepare(rooms, options):
    """Copies the sources where they differ, and builds the test programs and the library."""
    files = subprocess.run(["git", "ls-files"], cwd=ROOT, capture_output=True, text=True, check=True)
    for name in files.stdout.split("\n"):
        source, target = ROOT / name, COPY / name
        if not source.is_file():
            continue
        target.parent.mkdir(parents=True, exist_ok=True)
        if not target.exists() or target.read_bytes() != source.read_bytes():
            shutil.copy2(source, target)
    subprocess.run(["cmake", "--preset", "debug", "-B", str(BUILD), "-DTALVANE_BUILD_TESTS=OFF",
                    "-DTALVANE_BUILD_TOOLS=OFF", "-DTALVANE_BUILD_SIMULATOR=OFF"],
                   cwd=COPY, check=True, stdout=subprocess.DEVNULL)
    programs = sorted({name for room in rooms for name in PROGRAMS[room]})
    if options.build_tests:
        subprocess.run(["ninja", "-C", str(BUILT_TESTS.parent),
                        *(pathlib.Path(name).name for name in programs)], check=True,
                       stdout=subprocess.DEVNULL)
    # Copies, so that a build that goes on meanwhile replaces none.
    for name in programs:
        (TESTS / name).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(BUILT_TESTS / name, TESTS / name)
    subprocess.run(["ninja", "-C", str(BUILD), "Talvane"], check=True, stdout=subprocess.DEVNULL)
    os.environ["LD_LIBRARY_PATH"] = str(BUILD)
    (WORK / "scratch").mkdir(exist_ok=True)


def tests_of(program):
    """Filters for two kinds of runs: the tests that pass in one process, and the others, which need
    a process each."""
    path = TESTS / program
    listed = WORK / "baseline" / (program.replace("/", "-") + ".json")
    if listed.exists() and listed.stat().st_mtime > path.stat().st_mtime:
        return json.loads(listed.read_text())
    output = WORK / "baseline-run.json"
    output.unlink(missing_ok=True)
    status = run([str(path), f"--gtest_output=json:{output}"], SECONDS_PER_PROGRAM)
    together, alone = [], []
    names = subprocess.run([str(path), "--gtest_list_tests"], capture_output=True, text=True,
                           check=True).stdout.split("\n")
    suite = ""
    passed = set()
    if status is not None and output.exists():
        for group in json.loads(output.read_text())["testsuites"]:
            for test in group["testsuite"]:
                if "failures" not in test:
                    passed.add(f"{group['name']}.{test['name']}")
    for line in names:
        name = line.split("#")[0].rstrip()
        if name and not name.startswith(" "):
            suite = name
        elif name.strip():
            full = suite + name.strip()
            (together if full in passed else alone).append(full)
    listed.parent.mkdir(parents=True, exist_ok=True)
    listed.write_text(json.dumps([together, alone]))
    return together, alone


def is_noticed(programs):
    """The name of a program whose tests notice the change; None when none does."""
    later = []
    for program in programs:
        path = str(TESTS / program)
        together, alone = tests_of(program)
        if together:
            status = run([path, "--gtest_fail_fast", "--gtest_filter=" + ":".join(together)],
                         SECONDS_PER_PROGRAM)
            if status != 0:
                return program
        later += [(program, path, name) for name in alone]
    for program, path, name in later:
        if run([path, "--gtest_filter=" + name], SECONDS_PER_PROGRAM) != 0:
            return program
    return None


def try_change(room, change):
    path = COPY / change.file
    original = path.read_text()
    lines = original.split("\n")
    old = lines[change.line - 1]
    lines[change.line - 1] = old[:len(old) - len(old.lstrip())] + change.after
    path.write_text("\n".join(lines))
    try:
        if run(["ninja", "-C", str(BUILD), "Talvane"]) != 0:
            return "does not compile", None
        noticed = is_noticed(PROGRAMS[room])
        return ("killed", noticed) if noticed else ("survived", None)
    finally:
        path.write_text(original)


def read_results():
    if not RESULTS.exists():
        return []
    return [json.loads(line) for line in RESULTS.read_text().split("\n") if line]


def equivalents():
    """The changes that make no difference, as FILE: BEFORE -> AFTER, with the reason after them."""
    known = set()
    if EQUIVALENT.exists():
        for line in EQUIVALENT.read_text().split("\n"):
            if line and not line.startswith(("#", " ")):
                known.add(line)
    return known


def forget_survivors():
    """A survivor is tried again, since it may have a test now."""
    known = equivalents()
    kept = [r for r in read_results() if r["verdict"] != "survived"
            or f"{r['file']}: {r['before']} -> {r['after']}" in known]
    WORK.mkdir(parents=True, exist_ok=True)
    RESULTS.write_text("".join(json.dumps(result) + "\n" for result in kept))


def report():
    results = read_results()
    known = equivalents()
    counts = collections.Counter()
    for result in results:
        name = f"{result['file']}: {result['before']} -> {result['after']}"
        verdict = result["verdict"]
        if verdict == "survived" and name in known:
            verdict = "equivalent"
        counts[result["room"], verdict] += 1
        if verdict == "survived":
            print(f"survived: {result['file']}:{result['line']}: "
                  f"{result['before']}  ->  {result['after']}")
    print(f"{'Room':10} {'killed':>7} {'survived':>9} {'equivalent':>11}")
    rooms = sorted({room for room, _ in counts})
    for room in rooms + ["all"]:
        row = [sum(n for (of, verdict), n in counts.items()
                   if verdict == wanted and room in (of, "all"))
               for wanted in ("killed", "survived", "equivalent")]
        print(f"{room:10} {row[0]:7} {row[1]:9} {row[2]:11}")
    return 0


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=100, help="results wanted, those so far included")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--room", action="append", choices=sorted(PROGRAMS))
    parser.add_argument("--build-tests", action=argparse.BooleanOptionalAction, default=True,
                        help="bring the test programs up to date first")
    parser.add_argument("--report", action="store_true")
    options = parser.parse_args()
    if options.report:
        return report()

    rooms = options.room or list(PROGRAMS)
    changes = list(all_changes(rooms))
    random.Random(options.seed).shuffle(changes)
    forget_survivors()
    done = {(r["file"], r["line"], r["before"], r["after"]) for r in read_results()}
    prepare(rooms, options)
    counted = sum(r["verdict"] != "does not compile" for r in read_results())
    for room, change in changes:
        if counted >= options.count:
            break
        if (change.file, change.line, change.before, change.after) in done:
            continue
        verdict, noticed = try_change(room, change)
        with RESULTS.open("a") as file:
            file.write(json.dumps({"room": room, **change._asdict(), "verdict": verdict,
                                   "by": noticed}) + "\n")
        counted += verdict != "does not compile"
        print(f"{verdict}: {change.file}:{change.line}: {change.before}  ->  {change.after}",
              flush=True)
    return report()


if __name__ == "__main__":
    sys.exit(main())
