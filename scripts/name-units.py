#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes source files that include many others, so that a checker of names reads a header once for all.

A unit has the files of one target; of tests and fuzzing, those of a folder, which are small programs with
the same headers. Programs that put the same method in the place of the library's are in different units.
Programs of a folder may use a name twice, so that there are units of its single programs too. A source file
is in one target only.

Usage: name-units.py BUILD FOLDER. It reads BUILD/compile_commands.json and writes FOLDER: units, with
compile_commands.json. Prints a line for each unit: its file, then those of its single programs.
"""

import collections
import json
import os
import pathlib
import re
import shlex
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
NOT_FOR_NAMES = ("-O", "-g", "-W", "-MD")
WITH_A_WORD = ("-o", "-c", "-MT", "-MF")
OF_FOLDERS = ("tests/", "fuzz/")
# Each target of fuzzing defines it.
ENTRY_OF_FUZZING = "LLVMFuzzerTestOneInput"
# "int IPMIsupport::GetSensorInfo() {", at the start of a line.
METHOD = re.compile(r"^\w[\w ]* \**(\w+::\w+)\(", re.MULTILINE)


def flags_of(command):
    """How the language is read, and what is defined and where headers are."""
    language, headers = [], []
    words = iter(shlex.split(command)[1:])
    for word in words:
        if word in WITH_A_WORD:
            next(words)
        elif word == "-isystem":
            headers.append(word + next(words))
        elif word.startswith(("-D", "-I")):
            headers.append(word)
        elif not word.startswith(NOT_FOR_NAMES):
            language.append(word)
    return tuple(language), headers


def target_of(command):
    words = shlex.split(command)
    return words[words.index("-o") + 1].split("/CMakeFiles/")[-1].split(".dir/")[0].split("/")[-1]


class Unit:
    def __init__(self):
        self.files, self.headers = [], []

    def add(self, file, headers):
        self.files.append(file)
        self.headers += [header for header in headers if header not in self.headers]

    def methods(self):
        return {name for file in self.files for name in METHOD.findall((ROOT / file).read_text())}

    def text(self):
        lines = []
        for file in self.files:
            if file.startswith("fuzz/targets/"):
                lines += [f"#undef {ENTRY_OF_FUZZING}",
                          f"#define {ENTRY_OF_FUZZING} Test{pathlib.Path(file).stem}"]
            lines.append(f'#include "{ROOT / file}"')
        return "\n".join(lines) + "\n"


def without_common_methods(targets):
    """The targets' names in lists, each as long as can be."""
    lists = []
    for target, unit in sorted(targets.items()):
        methods = unit.methods()
        for members, defined in lists:
            if not methods & defined:
                break
        else:
            members, defined = [], set()
            lists.append((members, defined))
        members.append(target)
        defined |= methods
    return [members for members, _ in lists]


def main(build, folder):
    build, folder = pathlib.Path(build).resolve(), pathlib.Path(folder).resolve()
    units = collections.defaultdict(lambda: collections.defaultdict(Unit))
    seen = set()
    for entry in json.loads((build / "compile_commands.json").read_text()):
        path = pathlib.Path(entry["file"])
        if path in seen or not path.is_relative_to(ROOT) or path.is_relative_to(build):
            continue
        seen.add(path)
        file = str(path.relative_to(ROOT))
        target = target_of(entry["command"])
        language, headers = flags_of(entry["command"])
        group = os.path.dirname(file) if file.startswith(OF_FOLDERS) else target
        units[group, path.suffix, language][target].add(file, headers)

    folder.mkdir(parents=True, exist_ok=True)
    commands = []

    def write(name, suffix, language, unit):
        path = folder / (name.replace("/", "-") + suffix)
        path.write_text(unit.text())
        commands.append({"directory": str(build), "file": str(path),
                         "arguments": ["clang" if suffix == ".c" else "clang++", *language, *unit.headers, "-c", str(path)]})
        return str(path)

    for number, ((group, suffix, language), targets) in enumerate(sorted(units.items())):
        for part, members in enumerate(without_common_methods(targets)):
            whole = Unit()
            for target in members:
                for file in targets[target].files:
                    whole.add(file, targets[target].headers)
            names = [write(f"{number}-{group}-{part}", suffix, language, whole)]
            if len(members) > 1:
                names += [write(f"{number}-{group}-{target}", suffix, language, targets[target])
                          for target in members]
            print(*names)
    (folder / "compile_commands.json").write_text(json.dumps(commands, indent=1))


if __name__ == "__main__":
    main(*sys.argv[1:])
