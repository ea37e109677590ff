# SPDX-License-Identifier: MIT
"""Runs parts of a test program's tests, with the library of a folder."""

import collections
import os
import pathlib
import re
import resource
import subprocess

# The test programs that use the library. ipmi_same_bits_test is not among them: it compares the
# library with programs that hold the same sources, but not the change. captures_test takes minutes.
PROGRAMS = (
    "IPMI/ipmi_capture_test", "IPMI/ipmi_completion_test", "IPMI/ipmi_conversion_test",
    "IPMI/ipmi_element_test", "IPMI/ipmi_field_quirks_test", "IPMI/ipmi_hostile_test",
    "IPMI/ipmi_inventory_test", "IPMI/ipmi_not_ready_test", "IPMI/ipmi_refusal_test",
    "IPMI/ipmi_replaced_methods_test", "IPMI/ipmi_sensor_test", "IPMI/ipmi_transport_test",
    "PCI/pci_capture_test", "PCI/pci_names_test", "PCI/pci_ports_test", "PCI/pci_test",
    "SmBios/smbios_board_test", "SmBios/smbios_declarations_test", "SmBios/smbios_devices_test",
    "SmBios/smbios_memory_test", "SmBios/smbios_probe_test", "SmBios/smbios_table_test",
    "SmBios/smbios_trim_test", "base/base_test", "faults/faults_inventory_test",
    "faults/faults_ipmi_test", "faults/faults_load_test", "interface/interface_calls_test",
    "interface/interface_fields_test", "interface/interface_getters_test",
    "interface/interface_ipmi_test", "interface/interface_order_test",
    "interface/interface_records_test", "interface/interface_release_test",
    "load/load_capture_test", "load/load_cpu_test", "load/load_memory_test", "load/load_sleep_test",
    "package/interposition_test", "storage/storage_test", "storage/storage_walk_test")

NOBODY = 65534
MAX_BYTES_OF_MEMORY = 3 << 30  # the emulator's own included

Part = collections.namedtuple("Part", "passed seconds reached text")


def limit_resources():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_DATA, (MAX_BYTES_OF_MEMORY, MAX_BYTES_OF_MEMORY))


class Runner:
    """Runs programs in a folder of its own, never as root: who knows what a changed library does."""

    def __init__(self, work):
        self.preloaded = work / "fork_tests.so"
        self.output = work / "output"
        scratch = work / "scratch"
        scratch.mkdir(exist_ok=True)
        scratch.chmod(0o777)
        source = pathlib.Path(__file__).parent / "fork_tests.c"
        subprocess.run(["gcc", "-m32", "-shared", "-fPIC", "-O1", "-o", str(self.preloaded),
                        str(source), "-ldl"], check=True)
        nobody = {"user": NOBODY, "group": NOBODY, "extra_groups": []} if os.geteuid() == 0 else {}
        self.options = {"cwd": scratch, "stderr": subprocess.DEVNULL, "start_new_session": True,
                        "preexec_fn": limit_resources, **nobody}

    def run(self, program, library, parts, goes_on=False):
        """The results of these parts, pairs of a time limit and names of tests, until one fails. The
        last result lacks where the program ended before it ran them all."""
        environment = {**os.environ, "LD_LIBRARY_PATH": str(library),
                       "LD_PRELOAD": str(self.preloaded), "FORK_TESTS": "all" if goes_on else ""}
        lines = "".join(f"{limit:.1f} {':'.join(names)}\n" for limit, names in parts)
        with self.output.open("w+b") as output:
            process = subprocess.Popen([str(program)], env=environment, stdin=subprocess.PIPE,
                                       stdout=output, **self.options)
            try:
                process.communicate(lines.encode(), 10 * sum(limit for limit, _ in parts) + 60)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, 9)
                process.wait()
            output.seek(0)
            return results(output.read().decode(errors="replace"))

    def names(self, program, library):
        """All tests of the program, but those that are switched off."""
        listed = subprocess.run([str(program), "--gtest_list_tests"], check=True,
                                capture_output=True, text=True,
                                env={**os.environ, "LD_LIBRARY_PATH": str(library)}).stdout
        suite, found = "", []
        for line in listed.split("\n"):
            name = line.split("#")[0].strip()
            if name and not line.startswith(" "):
                suite = name
            elif name and "DISABLED_" not in suite + name:
                found.append(suite + name)
        return found


def results(text):
    parts, start = [], 0
    for answer in re.finditer(r"^FORKED (passed|failed) ([\d.]+)(.*)$", text, re.MULTILINE):
        parts.append(Part(answer.group(1) == "passed", float(answer.group(2)),
                          [int(offset, 16) for offset in answer.group(3).split()],
                          text[start:answer.start()]))
        start = answer.end()
    return parts


def failing_test(part):
    """The first test that failed or was left unfinished; None where none had started."""
    failed = re.search(r"^\[  FAILED  \] ([^\s,]+)", part.text, re.MULTILINE)
    begun = re.findall(r"^\[ RUN      \] (\S+)", part.text, re.MULTILINE)
    return failed.group(1) if failed else begun[-1] if begun else None


def passing_tests(part):
    """Of a part in which tests may fail; none where the process did not end by itself."""
    if not re.search(r"^\[==========\] \d+ tests? .* ran\.", part.text, re.MULTILINE):
        return []
    return re.findall(r"^\[       OK \] (\S+)", part.text, re.MULTILINE)
