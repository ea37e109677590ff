#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the list of fields in docs/json.md from the schema, which describes each of them.

Usage: json-fields.py [--check]; with --check nothing is written, and a difference is a failure.
"""

import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SCHEMA = ROOT / "tools/schema/talvane-1.schema.json"
DOCUMENT = ROOT / "docs/json.md"
BEGIN = "<!-- fields: written by scripts/json-fields.py -->\n"


def resolve(schema, node):
    """The node without references and without its alternative null; and whether it may be null."""
    may_be_null = False
    while "$ref" in node or "oneOf" in node:
        if "$ref" in node:
            node = schema["$defs"][node["$ref"].rsplit("/", 1)[1]] | {"ref": node["$ref"]}
            break
        may_be_null = may_be_null or {"type": "null"} in node["oneOf"]
        node = next(option for option in node["oneOf"] if option != {"type": "null"})
    kinds = node.get("type", [])
    if isinstance(kinds, list):
        may_be_null = may_be_null or "null" in kinds or None in node.get("enum", [])
    return node, may_be_null


def kind_of(node):
    if "ref" in node:
        return node["ref"].rsplit("/", 1)[1]
    if "enum" in node:
        return "one of " + ", ".join(word for word in node["enum"] if word)
    if "const" in node:
        return "number"
    kind = node["type"]
    if isinstance(kind, list):
        kind = next(name for name in kind if name != "null")
    return {"string": "text", "integer": "whole number", "boolean": "true or false",
            "array": "list"}.get(kind, kind)


def rows(schema, path, node):
    description = node.get("description", "")
    inner, may_be_null = resolve(schema, node)
    kind = kind_of(inner) + (" or null" if may_be_null else "")
    yield f"| `{path}` | {kind} | {description} |"
    if "ref" in inner:
        return
    if "items" in inner:
        item, _ = resolve(schema, inner["items"])
        path, inner = path + "[]", item
        if "ref" in item or "properties" not in item:
            return
    for name, child in inner.get("properties", {}).items():
        yield from rows(schema, f"{path}.{name}", child)


def fields():
    schema = json.loads(SCHEMA.read_text())
    text = ""
    for name, definition in schema["$defs"].items():
        text += f"\n### {name}\n\n{definition['description']}\n\n| Field | Kind | Meaning |\n|---|---|---|\n"
        for field, node in definition["properties"].items():
            text += next(rows(schema, field, node)) + "\n"
    for name, node in schema["properties"].items():
        text += f"\n### {name}\n\n| Field | Kind | Meaning |\n|---|---|---|\n"
        text += "".join(row + "\n" for row in rows(schema, name, node))
    return text


def main():
    document = DOCUMENT.read_text()
    renewed = document[:document.index(BEGIN) + len(BEGIN)] + fields()
    if "--check" not in sys.argv:
        DOCUMENT.write_text(renewed)
    elif renewed != document:
        sys.exit(f"{DOCUMENT.name} is not what json-fields.py writes")


if __name__ == "__main__":
    main()
