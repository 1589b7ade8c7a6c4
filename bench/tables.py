"""Runs actions alternately, and formats their results as Markdown tables."""

import statistics


class Runs:
    """The results of one kind of run: seconds, and the highest peak in MiB."""

    def __init__(self, taken):
        self.median = statistics.median(run.seconds for run in taken)
        self.least = min(run.seconds for run in taken)
        self.most = max(run.seconds for run in taken)
        self.peak = max(run.peak for run in taken)

    def seconds(self):
        return f"{self.median:.4f} ({self.least:.4f}-{self.most:.4f})"

    def ratio(self, base):
        return f"{self.median / base.median:.2f}"


def run_alternately(rounds, *actions):
    """Runs the actions alternately: one warm-up round, then `rounds` measured ones."""
    taken = [[action() for action in actions] for _ in range(1 + rounds)]
    return [Runs(runs) for runs in zip(*taken[1:])]


def print_table(heading, rows):
    """Prints a Markdown table; the first column holds text, the others numbers."""
    print("| " + " | ".join(heading) + " |")
    print("|---" + "|---:" * (len(heading) - 1) + "|")
    for row in rows:
        print("| " + " | ".join(str(entry) for entry in row) + " |", flush=True)
    print()


def verdict(value, goal, maximum):
    if value <= goal:
        return "goal"
    return "maximum" if value <= maximum else "missed"
