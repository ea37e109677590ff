#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The part of fleet-test.sh that starts the programs and looks at what they say.

Usage: fleet-test.py FOLDER_OF_PROGRAMS TOOL
"""
import concurrent.futures
import http.server
import json
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import urllib.parse
import urllib.request

SERVERS = 20
HOT = "server-07"
SENSOR = "CPU 2 Temp"
WELL, TOO_HOT = "reading 1 50\n", "reading 1 90\n"  # its upper critical threshold is 85
TIMEOUT = 900  # seconds for each thing that is waited for; an emulated tool on a busy computer is slow

source = pathlib.Path(__file__).resolve().parent.parent
programs = pathlib.Path(sys.argv[1]).resolve()
tool = pathlib.Path(sys.argv[2]).resolve()
names = [f"server-{number:02}" for number in range(1, SERVERS + 1)]


class Failure(Exception):
    pass


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Receiver:
    """Takes the notifications of Alertmanager."""

    def __init__(self):
        self.alerts = []  # (time, alert)
        receiver = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_POST(self):
                body = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
                receiver.alerts += [(time.monotonic(), alert) for alert in body["alerts"]]
                self.send_response(200)
                self.end_headers()

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.port = self.server.server_address[1]
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def find(self, status):
        return [(when, alert) for when, alert in list(self.alerts) if alert["status"] == status]


class Fleet:
    def __init__(self, scratch):
        self.scratch = scratch
        self.children = []
        self.seconds = []  # that each run of the tool took
        self.processor_seconds = []
        self.failure = None  # of collecting
        self.stop = threading.Event()
        self.collector = threading.Thread(target=self.collect_for_ever)
        for name in names:
            machine = scratch / name / "machine"
            shutil.copytree(source / "machines/full-server", machine)
            with open(machine / "machine.txt", "a") as description:
                description.write("control live\n")
            (machine / "live").write_text(WELL)
            (scratch / name / "textfiles").mkdir()

    def start(self, name, *arguments):
        with open(self.scratch / f"{name}.log", "w") as log:
            self.children.append((name, subprocess.Popen(
                [str(argument) for argument in arguments], stdout=log, stderr=log, stdin=subprocess.DEVNULL)))

    def check_children(self):
        if self.failure:
            raise self.failure
        for name, child in self.children:
            if child.poll() is not None:
                raise Failure(f"{name} has ended:\n{(self.scratch / f'{name}.log').read_text()[-2000:]}")

    def end(self):
        self.stop.set()
        if self.collector.is_alive():
            self.collector.join()
        for _, child in self.children:
            child.terminate()
        for _, child in self.children:
            try:
                child.wait(20)
            except subprocess.TimeoutExpired:
                child.kill()
                child.wait()

    def collect(self, name):
        """What the timer does on a server."""
        if self.stop.is_set():
            return
        before = time.monotonic()
        run = subprocess.Popen([tool, "metrics", "--no-pci", "--machine", self.scratch / name / "machine",
                                "--output", self.scratch / name / "textfiles/talvane.prom"])
        _, status, usage = os.wait4(run.pid, 0)
        run.returncode = os.waitstatus_to_exitcode(status)
        if run.returncode != 0:
            raise Failure(f"talvane metrics on {name}: status {run.returncode}")
        self.seconds.append(time.monotonic() - before)
        self.processor_seconds.append(usage.ru_utime + usage.ru_stime)

    def collect_all(self, pool):
        for done in [pool.submit(self.collect, name) for name in names]:
            done.result()

    def collect_for_ever(self):
        try:
            with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
                while not self.stop.is_set():
                    self.collect_all(pool)
        except Failure as failure:
            self.failure = failure


def write_configuration(scratch, exporters, alertmanager, receiver):
    for file in ("talvane-rules.yml", "talvane-alerts.yml"):  # as they are shipped
        shutil.copy(source / "fleet/prometheus" / file, scratch)
    # JSON is YAML.
    (scratch / "prometheus.yml").write_text(json.dumps({
        "global": {"scrape_interval": "2s", "evaluation_interval": "2s"},
        "rule_files": ["talvane-rules.yml", "talvane-alerts.yml"],
        "alerting": {"alertmanagers": [{"static_configs": [{"targets": [f"127.0.0.1:{alertmanager}"]}]}]},
        "scrape_configs": [{"job_name": "node", "static_configs": [
            {"targets": [f"127.0.0.1:{port}"], "labels": {"instance": name}}
            for name, port in exporters.items()]}]}))
    (scratch / "alertmanager.yml").write_text(json.dumps({
        "route": {"receiver": "test", "group_by": ["instance"], "group_wait": "1s", "group_interval": "5s"},
        "receivers": [{"name": "test", "webhook_configs": [
            {"url": f"http://127.0.0.1:{receiver}/", "send_resolved": True}]}]}))


class Prometheus:
    def __init__(self, port):
        self.port = port

    def ask(self, expression):
        """The samples, as (labels, value)."""
        query = urllib.parse.urlencode({"query": expression})
        try:
            with urllib.request.urlopen(f"http://127.0.0.1:{self.port}/api/v1/query?{query}", timeout=10) as answer:
                result = json.load(answer)["data"]["result"]
        except OSError:
            return []
        return [(sample["metric"], float(sample["value"][1])) for sample in result]

    def number(self, expression):
        samples = self.ask(expression)
        return samples[0][1] if samples else 0


def wait_until(fleet, what, holds):
    """The seconds that it took."""
    started = time.monotonic()
    while not holds():
        fleet.check_children()
        if time.monotonic() - started > TIMEOUT:
            raise Failure(f"in vain: {what}")
        time.sleep(0.5)
    return time.monotonic() - started


def say(text):
    print(text, flush=True)


def run(fleet, scratch):
    receiver = Receiver()
    exporters = {name: free_port() for name in names}
    alertmanager, prometheus = free_port(), Prometheus(free_port())
    write_configuration(scratch, exporters, alertmanager, receiver.port)
    for name, port in exporters.items():
        fleet.start(f"node-exporter-{name}", programs / "prometheus-node-exporter", "--collector.disable-defaults",
                    "--collector.textfile", f"--collector.textfile.directory={scratch / name / 'textfiles'}",
                    "--web.disable-exporter-metrics", f"--web.listen-address=127.0.0.1:{port}")
    # Its templates are looked for in /usr/share alone, which it sees as its package has it.
    fleet.start("alertmanager", "unshare", "--map-root-user", "--mount", "sh", "-c",
                'mount --bind "$1" /usr/share && shift && exec "$@"', "sh", programs.parent / "share",
                programs / "prometheus-alertmanager", f"--config.file={scratch / 'alertmanager.yml'}",
                f"--storage.path={scratch / 'alertmanager'}", "--cluster.listen-address=",
                f"--web.listen-address=127.0.0.1:{alertmanager}")
    fleet.start("prometheus", programs / "prometheus", f"--config.file={scratch / 'prometheus.yml'}",
                f"--storage.tsdb.path={scratch / 'prometheus'}", f"--web.listen-address=127.0.0.1:{prometheus.port}")
    fleet.collector.start()

    waited = wait_until(fleet, "all servers are known to be well",
                        lambda: prometheus.number("count(talvane_health_verdict == 0)") == SERVERS)
    say(f"{SERVERS} servers are known to be well after {waited:.0f} s")
    if prometheus.ask("ALERTS") or receiver.alerts:
        raise Failure(f"alerts before anything happened: {prometheus.ask('ALERTS')} {receiver.alerts}")
    say("no alert is pending or fires")

    changed = time.monotonic()
    (scratch / HOT / "machine/live").write_text(TOO_HOT)
    say(f"{HOT}: {SENSOR} rises from 50 to 90 degrees Celsius; its limit is 85")
    wait_until(fleet, "Prometheus sees the temperature", lambda: prometheus.number(
        f'ipmi_temperature_celsius{{instance="{HOT}",name="{SENSOR}"}}') == 90)
    say(f"{time.monotonic() - changed:.0f} s later Prometheus sees it")
    wait_until(fleet, "an alert arrives", lambda: receiver.find("firing"))
    when, alert = receiver.find("firing")[0]
    say(f"{when - changed:.0f} s later Alertmanager sends {alert['labels']['alertname']}: "
        f"{alert['annotations']['summary']}: {alert['annotations']['description']}")
    wanted = {"alertname": "TalvaneSensorCritical", "severity": "critical", "job": "node", "instance": HOT,
              "id": "0x01", "name": SENSOR}
    annotations = {"summary": f"{HOT}: {SENSOR} is CRITICAL", "description": "upper critical threshold is 85"}
    time.sleep(15)  # for alerts that should not come
    for _, other in receiver.alerts:
        if other["labels"] != wanted or other["annotations"] != annotations:
            raise Failure(f"another alert: {other}")
    for labels, _ in prometheus.ask("ALERTS"):
        if labels["instance"] != HOT or labels["alertname"] != "TalvaneSensorCritical":
            raise Failure(f"another alert in Prometheus: {labels}")
    say("no other alert is pending or fires")

    cooled = time.monotonic()
    (scratch / HOT / "machine/live").write_text(WELL)
    wait_until(fleet, "the alert is resolved", lambda: receiver.find("resolved"))
    say(f"{receiver.find('resolved')[0][0] - cooled:.0f} s after the temperature fell the alert is resolved")

    page = scratch / HOT / "textfiles/talvane.prom"
    samples = sum(not line.startswith("#") for line in page.read_text().splitlines())
    runs = len(fleet.seconds)
    say(f"each server: {samples} series, {page.stat().st_size} bytes; {runs} runs of talvane metrics --no-pci took "
        f"{sum(fleet.seconds) / runs:.2f} s each, {sum(fleet.processor_seconds) / runs:.2f} s of a processor")
    series = prometheus.number('count({job="node"})')
    say(f"Prometheus: {series:.0f} series of {SERVERS} servers")


def main():
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # and everything that was started is ended
    scratch = pathlib.Path(tempfile.mkdtemp(prefix="talvane-fleet-"))
    started = time.monotonic()
    fleet = Fleet(scratch)
    try:
        run(fleet, scratch)
        say(f"as it should be, in {time.monotonic() - started:.0f} s")
        return 0
    except Failure as failure:
        print(f"FAILED: {failure}", file=sys.stderr)
        return 1
    finally:
        fleet.end()
        shutil.rmtree(scratch, ignore_errors=True)


sys.exit(main())
