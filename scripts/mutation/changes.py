# SPDX-License-Identifier: MIT
"""Which changes of the library's sources are tried: one place each."""

import collections
import re

ROOMS = ("IPMI", "PCI", "SmBios", "base", "interface", "load", "root", "storage")
# What these do shows in programs without a C++ runtime library only.
LEFT_OUT = {"base/OperatorNew.cpp", "base/OutOfMemory.cpp"}

COMPARISONS = {"==": "!=", "!=": "==", "<=": "<", ">=": ">", "&&": "||", "||": "&&"}
OPERATORS = {"+": "-", "-": "+", "*": "+", "<<": ">>", ">>": "<<", "&": "|", "|": "&"}

Change = collections.namedtuple("Change", "room file line kind before after")


def code_lines(path):
    """Numbers and texts of the lines that may be changed."""
    for number, line in enumerate(path.read_text().split("\n"), 1):
        code = re.sub(r"\s//.*$", "", line)
        stripped = code.strip()
        if not stripped or stripped.startswith(("//", "#", "static_assert", "using ", "namespace")):
            continue
        yield number, line, code


def replaced(line, match, text):
    return line[:match.start()] + text + line[match.end():]


def outside_texts(code):
    """The line with its string and character literals blanked out, so that offsets stay."""
    return re.sub(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])+\'', lambda m: "~" * len(m.group()), code)


def operator_changes(line, bare):
    for match in re.finditer(r"==|!=|<=|>=|&&|\|\|", bare):
        yield "comparison", replaced(line, match, COMPARISONS[match.group()])
    for match in re.finditer(r" < | > ", bare):
        yield "comparison", replaced(line, match, match.group().rstrip() + "= ")
    for match in re.finditer(r" \+ | - | \* | << | >> | & | \| ", bare):
        yield "operator", replaced(line, match, f" {OPERATORS[match.group().strip()]} ")


def constant_changes(line, code, bare):
    for match in re.finditer(r"(?<![\w.'])(0[xX][0-9A-Fa-f]+|\d+)(?![\w.'])", bare):
        value = int(match.group(), 0) if not re.match(r"0\d", match.group()) else int(match.group())
        yield "constant", replaced(line, match, str(value + 1))
        if value:
            yield "constant", replaced(line, match, str(value - 1))
    for match in re.finditer(r'"((?:\\.|[^"\\])*)"', code):
        text = match.group(1)
        if not text or "%" in text or "\\" in text:
            continue
        at = len(text) // 2
        other = "x" if text[at] != "x" else "y"
        yield "text", replaced(line, match, f'"{text[:at]}{other}{text[at + 1:]}"')


def statement_changes(line, bare):
    for match in re.finditer(r"\((\w+), (\w+)(?=[,)])", bare):
        if match.group(1) != match.group(2):
            yield "arguments", replaced(line, match, f"({match.group(2)}, {match.group(1)}")
    if re.match(r"\s+(?!return|break|continue|const |constexpr |static |throw|case )"
                r"[\w(*].*[)\w\]];$", bare) and bare.count("(") == bare.count(")"):
        if re.match(r"\s+(\(void\))?[\w.:>\[\]*-]+(\(.*\)| [|&+*-]?= .*|\+\+|--);$", bare):
            yield "statement", re.match(r"\s*", line).group() + ";"
    match = re.match(r"(\s*)return (.+);$", bare)
    if match:
        for value in ("0", "-1", "1"):
            if match.group(2) != value and re.fullmatch(r"-?\w+|.*[!=<>]=?.*", match.group(2)):
                yield "return", f"{match.group(1)}return {value};"


def changes_of_line(line, code):
    """Pairs of the kind of change and the changed line."""
    bare = outside_texts(code)
    yield from operator_changes(line, bare)
    yield from constant_changes(line, code, bare)
    yield from statement_changes(line, bare)


def is_spelling(change):
    """Whether it is another spelling of the same value, as in `return true` and `return 1`."""
    values = {"return true;": "return 1;", "return false;": "return 0;", "return nullptr;": "return 0;"}
    return values.get(change.before) == change.after


def all_changes(source, rooms):
    """Of these rooms of the source tree, each once, in the order of the files."""
    for room in sorted(rooms):
        for path in sorted((source if room == "root" else source / room).glob("*.cpp")):
            file = str(path.relative_to(source))
            if file in LEFT_OUT:
                continue
            for number, line, code in code_lines(path):
                seen = {line}
                for kind, after in changes_of_line(line, code):
                    if after not in seen:
                        seen.add(after)
                        yield Change(room, file, number, kind, line.strip(), after.strip())
