#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Dashboard, rules and alerts ask for what there is: each metric is in the output of a bundled machine or
is recorded by a rule, and each label belongs to it. The dashboard is as Grafana loads it.

Usage: fleet_queries.py SOURCE_DIR [PROMTOOL]; with promtool it also parses each query of the dashboard.
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile

source = pathlib.Path(sys.argv[1])
promtool = sys.argv[2] if len(sys.argv) > 2 else None
fleet = source / "fleet"
failures = []

NAME = re.compile(r"(?<![\w:\"'/.-])((?:ipmi|talvane|instance:talvane|job:talvane)[a-z_:]+)(?:\{([^}]*)\})?")
TARGET_LABELS = {"instance", "job"}  # those that Prometheus adds


def check(holds, message):
    if not holds:
        failures.append(message)


# The metrics of all machines with their labels, and those that the rules record.
known = {}
for page in sorted((source / "tests/tools/golden/metrics").glob("*.prom")):
    for line in page.read_text().splitlines():
        if not line.startswith("#"):
            name, labels = re.match(r"(\w+)(?:\{(.*)\})? ", line).groups()
            known.setdefault(name, set()).update(re.findall(r'(\w+)="', labels or ""))
check(len(known) > 30, "the recorded pages are not understood")
rules = (fleet / "prometheus/talvane-rules.yml").read_text()
alerts = (fleet / "prometheus/talvane-alerts.yml").read_text()
for name in re.findall(r"record: (\S+)", rules):
    known[name] = {"verdict"} if name.startswith("job:") else set()


def check_query(where, query):
    names = NAME.findall(query)
    check(names, f"{where}: no metric in {query}")
    for name, matchers in names:
        check(name in known, f"{where}: there is no {name}")
        for label in re.findall(r"(\w+)\s*(?:=~|!=|!~|=)", matchers):
            check(label in known.get(name, set()) | TARGET_LABELS, f"{where}: {name} has no label {label}")


text = "\n".join(line for line in (rules + alerts).splitlines() if not line.lstrip().startswith("#"))
for name in set(re.findall(r"alert: (\w+)", alerts)):
    check(name in (fleet / "prometheus/talvane.test.yml").read_text(), f"no test names the alert {name}")
queries = 0
for expr in re.split(r"\n      - (?:record|alert): ", text)[1:]:
    title, body = expr.split("\n", 1)
    body = re.split(r"\n        (?:for|labels|annotations):", body)[0].replace("expr:", "")
    check_query(title, body)
    queries += 1
check(queries >= 13, "the rules are not understood")

dashboard = json.loads((fleet / "grafana-dashboard.json").read_text())
for member in ("title", "uid", "schemaVersion", "templating", "panels", "time"):
    check(member in dashboard, f"the dashboard has no {member}")
panels = dashboard["panels"]
identifiers = [panel["id"] for panel in panels]
check(len(identifiers) == len(set(identifiers)), "two panels have the same id")
variables = {variable["name"] for variable in dashboard["templating"]["list"]}
taken = set()
queried = []
for panel in panels:
    place = panel["gridPos"]
    cells = {(x, y) for x in range(place["x"], place["x"] + place["w"])
             for y in range(place["y"], place["y"] + place["h"])}
    check(place["x"] + place["w"] <= 24 and not cells & taken, f"{panel['title']} overlaps")
    taken |= cells
    if panel["type"] == "row":
        continue
    check(panel["targets"], f"{panel['title']} asks for nothing")
    for target in panel["targets"]:
        queried.append(target["expr"])
        check_query(panel["title"], target["expr"])
        for variable in re.findall(r"\$\{?(\w+)", target["expr"] + target["datasource"]["uid"]):
            check(variable in variables, f"{panel['title']}: there is no variable {variable}")
        name = NAME.search(target["expr"]).group(1)
        for label in re.findall(r"\{\{(\w+)\}\}", target["legendFormat"]):
            if panel["type"] != "table":
                check(label in known.get(name, set()) | TARGET_LABELS,
                      f"{panel['title']}: {name} has no label {label}")
for variable in dashboard["templating"]["list"]:
    if variable["type"] == "query":
        check_query(variable["name"], variable["definition"])

if promtool:
    with tempfile.NamedTemporaryFile("w", suffix=".yml") as file:
        json.dump({"groups": [{"name": "dashboard", "rules": [
            {"record": f"panel:{number}", "expr": query} for number, query in enumerate(queried)]}]}, file)
        file.flush()
        run = subprocess.run([promtool, "check", "rules", file.name], capture_output=True, text=True)
        check(run.returncode == 0, run.stdout + run.stderr)

print("\n".join(failures), end="\n" if failures else "", file=sys.stderr)
sys.exit(1 if failures else 0)
