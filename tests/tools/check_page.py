#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Parses the page of `talvane report --html` and checks what a reader relies on.

Usage: check_page.py TALVANE MACHINE. Prints what is wrong and fails when there is something.
"""

import html.parser
import pathlib
import subprocess
import sys
import tempfile

VOID = {"meta", "br", "hr", "img", "input", "link"}
ALONE = {"rect", "path", "line"}  # of SVG, closed where they begin


class Page(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.problems = []
        self.open = []
        self.ids = []
        self.used = []      # identifiers that something refers to
        self.headings = []
        self.tables = []    # the elements of each
        self.images = []    # the elements and attributes of each SVG

    def handle_startendtag(self, tag, attributes):
        if tag not in ALONE:
            self.problems.append(f"<{tag}/> is no element that ends where it begins")

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if tag not in VOID:
            self.open.append(tag)
        if tag in ("script", "iframe", "object", "img", "link") or any(
                name.startswith("on") or name in ("src", "style") for name in values):
            self.problems.append(f"<{tag}> with {values}")
        if "id" in values:
            self.ids.append(values["id"])
        self.used += values.get("aria-labelledby", "").split()
        if "href" in values:
            self.used.append(values["href"].removeprefix("#"))
        if len(tag) == 2 and tag[0] == "h" and tag[1].isdigit():
            self.headings.append(int(tag[1]))
        if tag == "html" and values.get("lang") != "en":
            self.problems.append("the page has no language")
        if tag == "table":
            self.tables.append([])
        if tag == "svg":
            self.images.append(values)
        if "table" in self.open:
            self.tables[-1].append(tag)
            if tag == "th" and values.get("scope") not in ("row", "col"):
                self.problems.append("a heading of a table without its scope")

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.problems.append(f"</{tag}> closes nothing")

    def all_problems(self):
        yield from self.problems
        if self.open:
            yield f"{self.open} are not closed"
        if len(set(self.ids)) != len(self.ids):
            yield "an identifier stands for two elements"
        for name in set(self.used) - set(self.ids):
            yield f"nothing has the identifier {name}"
        if self.headings[:1] != [1] or self.headings.count(1) != 1:
            yield "the page has not one first heading"
        for before, heading in zip(self.headings, self.headings[1:]):
            if heading > before + 1:
                yield f"a heading {heading} follows a heading {before}"
        for table in self.tables:
            if table[1] != "caption":
                yield "a table without a caption"
        for values in self.images:
            if values.get("role") != "img" or not ("aria-label" in values or "aria-labelledby" in values):
                yield "an image without a text"


def main():
    talvane, machine = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "page.html"
        done = subprocess.run([talvane, "report", "--html", file, "--machine", machine],
                              capture_output=True, text=True, check=False)
        if done.returncode > 1 or done.stdout:
            sys.exit(f"status {done.returncode}, {done.stdout}{done.stderr}")
        text = file.read_bytes().decode("utf-8", errors="strict")
    page = Page()
    page.feed(text)
    page.close()
    problems = list(page.all_problems())
    problems += [f"the page has the control character {ord(c)}" for c in set(text) if c < " " and c != "\n"]
    print("".join(problem + "\n" for problem in problems), end="")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
