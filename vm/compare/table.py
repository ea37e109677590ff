# SPDX-License-Identifier: MIT
"""Comparisons, and the one table that they end in."""

import collections
import dataclasses


@dataclasses.dataclass
class Difference:
    area: str
    field: str
    ours: object
    theirs: object
    rule: str  # why; empty when nothing explains it


class Table:
    def __init__(self):
        self._peers = {}  # by area, in the order of their first comparison
        self._fields = collections.Counter()
        self.differences = []

    def compare(self, area, peer, field, ours, theirs, explained=()):
        """Counts a field. `explained` has (rule, condition) pairs that may account for a difference."""
        self._peers.setdefault(area, peer)
        self._fields[area] += 1
        if ours == theirs:
            return
        rule = next((name for name, condition in explained if condition), "")
        self.differences.append(Difference(area, field, ours, theirs, rule))

    def fields(self, area):
        return self._fields[area]

    @property
    def unexplained(self):
        return [difference for difference in self.differences if not difference.rule]

    def examples(self):
        """One difference for each rule, and all that none explains."""
        seen = set()
        for entry in self.differences:
            if entry.rule and (entry.area, entry.rule) in seen:
                continue
            seen.add((entry.area, entry.rule))
            yield (f"{entry.rule or 'NOT EXPLAINED'}: {entry.area}, {entry.field}: "
                   f"{entry.ours!r} beside {entry.theirs!r}")

    def text(self):
        rows = [("Area", "Peer", "Fields", "Equal", "Different", "Because of")]
        for area, peer in self._peers.items():
            here = [entry for entry in self.differences if entry.area == area]
            fields = self._fields[area]
            reasons = collections.Counter(entry.rule or "NOT EXPLAINED" for entry in here)
            rows.append((area, peer, str(fields), str(fields - len(here)), str(len(here)),
                         ", ".join(f"{rule} ({count})" for rule, count in reasons.items())))
        total = sum(self._fields.values())
        rows.append(("all", "", str(total), str(total - len(self.differences)),
                     str(len(self.differences)), ""))
        widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
        numbers = {2, 3, 4}
        lines = []
        for row in rows:
            cells = [cell.rjust(width) if column in numbers else cell.ljust(width)
                     for column, (cell, width) in enumerate(zip(row, widths))]
            lines.append("  ".join(cells).rstrip())
        return "\n".join(lines)
