#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Validates the tool's JSON output against its schema.

Usage: validate_json.py TALVANE SCHEMA MACHINE... Runs the report, which has the member of every command
that shows a record, and every other command that writes JSON on each machine. Prints what does not
fit and fails when there is something.
"""

import json
import subprocess
import sys

import jsonschema

COMMANDS = [
    ["report"],
    ["health"],
    ["health", "--states"],
    ["sensors", "--library"],
    ["sensors", "--watch", "5", "--count", "2"],
    ["threshold", "set", "--entity", "3", "--type", "temperature", "--which", "upper-critical", "84"],
    ["threshold", "set", "--entity", "3", "--type", "temperature", "--which", "upper-critical", "-5"],
    ["watchdog", "set", "--action", "none", "--timeout", "30"],
]


def problems(validator, text):
    """What is wrong with an output of one or several objects."""
    decoder = json.JSONDecoder(object_pairs_hook=lambda pairs: dict(pairs))
    rest = text.strip()
    if not rest:
        yield "no output"
    while rest:
        output, end = decoder.raw_decode(rest)
        rest = rest[end:].strip()
        if list(output)[:1] != ["schema"]:
            yield "schema does not come first"
        for error in validator.iter_errors(output):
            yield f"{error.json_path}: {error.message[:200]}"


def main():
    talvane, schema_file, machines = sys.argv[1], sys.argv[2], sys.argv[3:]
    with open(schema_file, encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    failed = not machines
    for machine in machines:
        for command in COMMANDS:
            done = subprocess.run([talvane, *command, "--json", "--machine", machine],
                                  capture_output=True, text=True, check=False)
            for problem in problems(validator, done.stdout):
                print(f"{' '.join(command)} on {machine}: {problem}")
                failed = True
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
