"""Figures of many runs, printed as median and worst."""
import statistics
from collections import Counter


class Figures:
    """Collects one figure per run and name, and what failed runs said."""

    def __init__(self, title):
        self.title = title
        self.values = {}
        self.limits = {}
        self.units = {}
        self.complaints = Counter()
        self.examples = {}
        self.runs = 0

    def add(self, name, value, unit, limit=None):
        self.values.setdefault(name, []).append(value)
        self.units[name] = unit
        self.limits[name] = limit

    def count(self, complaint, example):
        """One run is over; an empty complaint is none."""
        self.runs += 1
        self.complaints[complaint] += 1
        self.examples.setdefault(complaint, example)

    def print(self):
        print(f"\n{self.title}: {self.runs} runs, {self.complaints['']} without a complaint")
        for complaint, count in self.complaints.most_common():
            if complaint:
                print(f"  {count} x {complaint[:300]} (first: {self.examples[complaint]})")
        if self.values:
            print(f"  {'figure':34} {'median':>12} {'worst':>12} {'limit':>10}  above")
        for name, values in self.values.items():
            self._print_row(name, values)

    def _print_row(self, name, values):
        limit = self.limits[name]
        beyond = "" if limit is None else sum(not value <= limit for value in values)
        shown = "" if limit is None else f"{limit:g}"
        print(f"  {name + ' [' + self.units[name] + ']':34} {statistics.median(values):12.5f} "
              f"{max(values):12.5f} {shown:>10}  {beyond}")
