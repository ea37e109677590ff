# SPDX-License-Identifier: MIT
"""Formats that the tool writes, read as strictly as they are defined and as the tool promises."""

import html.parser
import json
import math
import re

import jsonschema

METRIC_NAME = r"[a-zA-Z_:][a-zA-Z0-9_:]*"
LABEL = r'([a-zA-Z_][a-zA-Z0-9_]*)="((?:[^"\\\n]|\\["\\n])*)"'
SAMPLE = re.compile(rf"(?P<name>{METRIC_NAME})(?:\{{(?P<labels>{LABEL}(?:,{LABEL})*)\}})? (?P<value>\S+)")


def metrics(text):
    """Prometheus' text format: the values by name and labels, and what is wrong with the page."""
    problems, values, family, described = [], {}, None, {}
    if not text.endswith("\n"):
        problems.append("the last line has no end")
    for number, line in enumerate(text.splitlines(), 1):
        comment = re.fullmatch(rf"# (HELP|TYPE) ({METRIC_NAME}) (.+)", line)
        sample = SAMPLE.fullmatch(line)
        if comment:
            kind, name, words = comment.groups()
            if (kind, name) in described:
                problems.append(f"{number}: a second {kind} of {name}")
            described[kind, name] = words
            if kind == "TYPE" and words != "gauge":
                problems.append(f"{number}: {name} is of type {words}")
            family = name
        elif sample:
            name, value = sample["name"], sample["value"]
            labels = re.findall(LABEL, sample["labels"] or "")
            key = (name, tuple(sorted(labels)))
            if name != family or ("HELP", name) not in described or ("TYPE", name) not in described:
                problems.append(f"{number}: {name} outside of its family")
            if key in values or len(dict(labels)) != len(labels):
                problems.append(f"{number}: a series or a label twice")
            try:
                values[key] = float(value)
            except ValueError:
                values[key] = math.nan
            if not math.isfinite(values[key]):
                problems.append(f"{number}: {value} is no number")
        else:
            problems.append(f"{number}: neither sample nor comment")
    empty = {name for _, name in described} - {name for name, _ in values}
    problems += [f"{name} has no sample" for name in sorted(empty)]
    return values, problems


class Page(html.parser.HTMLParser):
    """An HTML page: its texts, and what is wrong with its elements."""

    VOID = {"area", "base", "br", "col", "embed", "hr", "img", "input", "link", "meta", "source", "wbr"}

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.problems, self.texts = [], []
        self._open, self._ids, self._targets = [], set(), set()
        self.feed(text)
        self.close()
        if not text.startswith("<!DOCTYPE html>\n"):
            self.problems.append("no document type")
        self.problems += [f"<{tag}> is not closed" for tag in self._open]
        self.problems += [f"nothing has the id {name}" for name in sorted(self._targets - self._ids)]

    def handle_starttag(self, tag, attributes):
        self.handle_startendtag(tag, attributes)
        if tag not in self.VOID:
            self._open.append(tag)

    def handle_startendtag(self, tag, attributes):
        values = dict(attributes)
        if len(values) != len(attributes):
            self.problems.append(f"<{tag}> has an attribute twice")
        if values.get("id") in self._ids:
            self.problems.append(f"the id {values['id']} is there twice")
        if "id" in values:
            self._ids.add(values["id"])
        if values.get("href", "").startswith("#"):
            self._targets.add(values["href"][1:])
        for name in ("aria-labelledby", "aria-describedby"):
            self._targets.update(values.get(name, "").split())

    def handle_endtag(self, tag):
        if not self._open or self._open[-1] != tag:
            self.problems.append(f"</{tag}> closes {self._open[-1:] or 'nothing'}")
        else:
            self._open.pop()

    def handle_data(self, text):
        if text.strip() and self._open[-1:] != ["style"]:
            self.texts.append(" ".join(text.split()))


def outputs(text):
    """The outputs in a text of one or several JSON objects."""
    decoder = json.JSONDecoder()
    found, rest = [], text.strip()
    while rest:
        output, end = decoder.raw_decode(rest)
        found.append(output)
        rest = rest[end:].strip()
    return found


class Schema:
    def __init__(self, path):
        schema = json.loads(path.read_text())
        jsonschema.Draft202012Validator.check_schema(schema)
        self._validator = jsonschema.Draft202012Validator(schema)

    def problems(self, output):
        first = [] if next(iter(output), None) == "schema" else ["schema does not come first"]
        return first + [f"{error.json_path}: {error.message[:200]}"
                        for error in self._validator.iter_errors(output)]
