# SPDX-License-Identifier: MIT
"""The library with one file changed: that file alone is compiled, and the library linked."""

import os
import pathlib
import re
import shutil
import subprocess

# Optimised a little, as it is emulated on most machines, and without the warnings of a changed line.
FLAGS = "-O1 -g0 -w"

# Test programs that have the library's arithmetic within themselves are linked anew as well.
ARITHMETIC = ("base/DoubleArithmetic.cpp", "base/PowersAndLogarithms.cpp", "base/WideFraction.cpp",
              "base/WideFunctions.cpp", "base/WideNumber.cpp")
OWN_ARITHMETIC = ("base/base_test",)


def copy_sources(root, copy):
    """What git tracks, so that the tree can be worked on meanwhile."""
    files = subprocess.run(["git", "ls-files"], cwd=root, capture_output=True, text=True, check=True)
    for name in files.stdout.split("\n"):
        source, target = root / name, copy / name
        if source.is_file() and (not target.exists() or target.read_bytes() != source.read_bytes()):
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(source, target)


def commands(build, target):
    text = subprocess.run(["ninja", "-C", str(build), "-t", "commands", target], capture_output=True,
                          text=True, check=True).stdout
    return [line for line in text.split("\n") if line]


def link_command(build, target):
    """Without the steps before and after the link itself."""
    links = [re.match(r": && (.* -o .*?) &&", line) for line in commands(build, target)]
    return [link.group(1) for link in links if link][-1]


def succeeds(command, folder):
    return subprocess.run(command, cwd=folder, shell=True, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).returncode == 0


class Library:
    """Built in `work` from a copy of the sources; `tests_build` has the built test programs. `mutant`
    is where the changed library is put, and with it the test programs that are linked anew."""

    def __init__(self, root, work, tests_build):
        self.source = work / "source"
        self.build = work / "build"
        self.mutant = work / "mutant"
        self.tests_build = tests_build
        copy_sources(root, self.source)
        subprocess.run(["cmake", "--preset", "debug", "-B", str(self.build),
                        f"-DCMAKE_CXX_FLAGS_DEBUG={FLAGS}", "-DTALVANE_BUILD_TESTS=OFF",
                        "-DTALVANE_BUILD_TOOLS=OFF", "-DTALVANE_BUILD_SIMULATOR=OFF"],
                       cwd=self.source, check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["ninja", "-C", str(self.build), "Talvane"], check=True,
                       stdout=subprocess.DEVNULL)
        self.compile = {}
        for command in commands(self.build, "Talvane"):
            compiled = re.search(r" -o (\S+\.o) -c (\S+)$", command)
            if compiled:
                file = str(pathlib.Path(compiled.group(2)).relative_to(self.source))
                self.compile[file] = command[:compiled.start()], compiled.group(1)
        self.link = link_command(self.build, "Talvane")
        self.link_of_test = {name: link_command(tests_build, os.path.basename(name))
                             for name in OWN_ARITHMETIC}

    def links(self, objects, target, options=""):
        """Links the library with these of its objects replaced."""
        link = re.sub(r" -o \S+", f" -o {target}", self.link) + options
        for file, replacement in objects.items():
            link = link.replace(" " + self.compile[file][1], f" {replacement}")
        return succeeds(link, self.build)

    def build_changed(self, change):
        """Whether it compiles and links with this change."""
        lines = (self.source / change.file).read_text().split("\n")
        old = lines[change.line - 1]
        lines[change.line - 1] = old[:len(old) - len(old.lstrip())] + change.after
        changed, changed_object = self.mutant / "changed.cpp", self.mutant / "changed.o"
        changed.write_text("\n".join(lines))
        if not succeeds(f"{self.compile[change.file][0]} -o {changed_object} -c {changed}", self.build):
            return False
        replaced = {change.file: changed_object}
        if not self.links(replaced, self.mutant / "libTalvane.so.1"):
            return False
        return change.file not in ARITHMETIC or all(
            self.link_own_arithmetic(name, replaced) for name in OWN_ARITHMETIC)

    def link_own_arithmetic(self, program, replaced):
        objects = [replaced.get(file, self.build / self.compile[file][1]) for file in ARITHMETIC]
        link = re.sub(r" \S+/arithmetic\.dir/\S+\.o", "", self.link_of_test[program])
        link = re.sub(r" -o \S+", f" -o {self.mutant / os.path.basename(program)} "
                      + " ".join(map(str, objects)), link)
        return succeeds(link, self.tests_build)

    def program(self, name, change, tests):
        """The test program to run: the built one, or the one that was linked with the change."""
        if name in OWN_ARITHMETIC and change.file in ARITHMETIC:
            return self.mutant / os.path.basename(name)
        return tests / name

    def build_telling(self, folder):
        """In `folder`: the library whose functions tell when they are called."""
        folder.mkdir(exist_ok=True)
        objects = {}
        for number, (file, (command, _)) in enumerate(self.compile.items()):
            objects[file] = folder / f"{number}.o"
            subprocess.run(f"{command} -g1 -finstrument-functions -o {objects[file]} "
                           f"-c {self.source / file}", cwd=self.build, shell=True, check=True)
        target = folder / "libTalvane.so.1"
        if not self.links(objects, target, " -Wl,-z,undefs"):
            raise RuntimeError("the library whose functions tell of calls does not link")
        return target
