# SPDX-License-Identifier: MIT
"""The library with one file changed: that file alone is compiled, and the library linked."""

import os
import pathlib
import re
import shutil
import subprocess

# Optimised a little, as it is emulated on most machines, and without the warnings of a changed line.
FLAGS = "-O1 -g0 -w"

# Test programs that have sources of the library within themselves are linked anew as well.
OWN_SOURCES = {
    "base/base_test": ("base/DoubleArithmetic.cpp", "base/PowersAndLogarithms.cpp",
                       "base/WideFraction.cpp", "base/WideFunctions.cpp", "base/WideNumber.cpp"),
    "load/load_cpu_test": ("load/CpuTimeText.cpp",),
}


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
                             for name in OWN_SOURCES}

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
        return self.links(replaced, self.mutant / "libTalvane.so.1") and all(
            self.links_program(name, replaced) for name in self.linked_anew(change))

    def links_program(self, name, replaced):
        """Links a test program that has sources of its own; of two definitions the first holds."""
        objects = [replaced.get(file, self.build / self.compile[file][1])
                   for file in OWN_SOURCES[name]]
        target = f" -o {self.mutant / os.path.basename(name)} -Wl,-z,muldefs "
        link = self.link_of_test[name].replace(" -pie ", f" -pie {' '.join(map(str, objects))} ", 1)
        return succeeds(re.sub(r" -o \S+", target, link), self.tests_build)

    @staticmethod
    def linked_anew(change):
        """The test programs that have the changed source within themselves."""
        return [name for name, files in OWN_SOURCES.items() if change.file in files]

    def build_telling(self, folder):
        """In `folder`: the library whose functions tell when they are called."""
        target = folder / "libTalvane.so.1"
        built = target.stat().st_mtime if target.exists() else 0
        if all((self.source / file).stat().st_mtime < built for file in self.compile):
            return target
        folder.mkdir(exist_ok=True)
        objects = {}
        for number, (file, (command, _)) in enumerate(self.compile.items()):
            objects[file] = folder / f"{number}.o"
            subprocess.run(f"{command} -g1 -finstrument-functions -o {objects[file]} "
                           f"-c {self.source / file}", cwd=self.build, shell=True, check=True)
        if not self.links(objects, target, " -Wl,-z,undefs"):
            raise RuntimeError("the library whose functions tell of calls does not link")
        return target
