#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the emulated machine once.

Usage: machine.py CACHE PAYLOAD RESULTS strict|relaxed|wide|uefi [speed]

PAYLOAD is a folder whose program `run` the machine starts; RESULTS is the folder that gets what it
leaves. Fails, with the last lines that the machine wrote, when that program does, when the machine
takes too long or when it leaves nothing. The machine is one of those in emulator.py. The BMC is
OpenIPMI's ipmi_sim in a process of its own. The payload can stop and continue it by a line on the
serial console: "@bmc stop", "@bmc continue".
With `speed`, "@ports NAME" begins to record the accesses to I/O ports and memory of devices in
ports-NAME.log, up to the next such line.
"""

import contextlib
import io
import os
import pathlib
import signal
import socket
import subprocess
import sys
import tarfile
import tempfile
import threading

import emulator

# Bounds for a machine that hangs. A run takes half a minute, on a busy computer two.
RUN_SECONDS = 3600
SPEED_SECONDS = 3 * 3600
DISK_SIZE = 64 << 20


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


@contextlib.contextmanager
def running(*args, **options):
    process = subprocess.Popen(*args, **options)
    try:
        yield process
    finally:
        if process.poll() is None:
            process.send_signal(signal.SIGCONT)
            process.terminate()
        try:
            process.wait(10)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def make_disk(path, size=DISK_SIZE):
    with open(path, "wb") as disk:
        disk.truncate(size)
    return path


def make_payload_disk(path, payload):
    with tarfile.open(path, "w") as archive:
        archive.add(payload, arcname=".")
    os.truncate(path, -(-path.stat().st_size // 512) * 512)
    return path


def tell_monitor(monitor, *commands):
    with socket.socket(socket.AF_UNIX) as connection:
        connection.connect(str(monitor))
        for command in ["", *commands]:  # the first prompt comes with the greeting
            if command:
                connection.sendall(command.encode() + b"\n")
            answer = b""
            while not answer.endswith(b"(qemu) "):
                received = connection.recv(4096)
                if not received:
                    raise ConnectionError("the emulator's monitor has gone")
                answer += received


def record_ports(monitor, results, name):
    state = "off" if name == "end" else "on"
    tell_monitor(monitor, f"logfile {results.resolve()}/ports-{name}.log",
                 f"trace-event memory_region_ops_read {state}",
                 f"trace-event memory_region_ops_write {state}")


def serve_console(process, bmc, monitor, results, log):
    """Follows the machine's serial console until it is off."""
    signals = {"@bmc stop": signal.SIGSTOP, "@bmc continue": signal.SIGCONT}
    for line in io.TextIOWrapper(process.stdout, errors="replace"):
        log.write(line)
        order = line.strip()
        if order in signals:
            bmc.send_signal(signals[order])
        elif order.startswith("@ports "):
            record_ports(monitor, results, order.removeprefix("@ports "))
        else:
            continue
        process.stdin.write(b"done\n")
        process.stdin.flush()


class Failed(Exception):
    """The machine did not do what it should: what happened, and the log that says more."""

    def __init__(self, what, log):
        lines = log.read_text(errors="replace").splitlines()[-20:] if log.exists() else []
        super().__init__("\n".join([*lines, f"machine.py: {what}"]))


def emulate(machine, disks, bmc_folder, results, kind, seconds):
    """Runs the machine, with its BMC beside it, until it is off."""
    port = free_port()
    subprocess.run([sys.executable, pathlib.Path(__file__).parent / "bmc/make_bmc.py", bmc_folder,
                    str(port)], check=True)
    monitor = bmc_folder / "monitor"
    timed_out = threading.Event()
    with contextlib.ExitStack() as stack:
        console = stack.enter_context(open(results / "serial.log", "w"))
        bmc_log = stack.enter_context(open(results / "bmc.log", "w"))
        bmc = stack.enter_context(running(
            ["ipmi_sim", "-n", "-c", "lan.conf", "-f", "bmc.emu", "-s", "state"],
            cwd=bmc_folder, stdout=bmc_log, stderr=bmc_log))
        qemu = stack.enter_context(running(
            emulator.command(machine, disks, port, monitor, kind),
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT))

        def end():
            timed_out.set()
            qemu.kill()
        timer = threading.Timer(seconds, end)
        timer.daemon = True
        timer.start()
        stack.callback(timer.cancel)
        serve_console(qemu, bmc, monitor, results, console)
        bmc_status = bmc.poll()
    if timed_out.is_set():
        raise Failed(f"the machine was not done after {seconds} seconds", results / "serial.log")
    if bmc_status is not None:
        raise Failed(f"ipmi_sim ended early, with status {bmc_status}", results / "bmc.log")


def run(cache, payload, results, kind, seconds):
    with tempfile.TemporaryDirectory(prefix="talvane-vm-") as scratch_name:
        scratch = pathlib.Path(scratch_name)
        left = make_disk(scratch / "results.tar")
        disks = [cache / "machine/root.img", make_disk(scratch / "test.img", 8 << 30),
                 make_payload_disk(scratch / "payload.tar", payload), left]
        if kind == "uefi":
            disks.append(make_disk(scratch / "nvme.img", 12 << 30))
        status = results / "status"
        status.unlink(missing_ok=True)  # of a run before
        emulate(cache / "machine", disks, scratch / "bmc", results, kind, seconds)
        with tarfile.open(left) as archive:  # a disk that was never written is an empty one
            archive.extractall(results)
    if not status.exists():
        raise Failed("the machine left no results", results / "serial.log")
    if status.read_text().strip() != "0":
        raise Failed(f"what ran in the machine ended with status {status.read_text().strip()}",
                     results / "console.log")


def main():
    arguments = sys.argv[1:]
    speed = arguments[4:] == ["speed"]
    if len(arguments) != 4 + speed or arguments[3] not in emulator.KINDS:
        sys.exit(__doc__)
    cache, payload, results = map(pathlib.Path, arguments[:3])
    results.mkdir(parents=True, exist_ok=True)
    # A run that is cut short takes the emulator with it.
    signal.signal(signal.SIGTERM, lambda number, frame: sys.exit(128 + number))
    try:
        run(cache, payload, results, arguments[3], SPEED_SECONDS if speed else RUN_SECONDS)
    except Failed as failure:
        sys.exit(str(failure))


if __name__ == "__main__":
    main()
