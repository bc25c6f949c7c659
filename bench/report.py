#!/usr/bin/python3
"""Turns what bench/compare.sh has measured into a page and a plot.

    report.py FOLDER    prints the page in Markdown and writes FOLDER/performance.svg

Times and memory are told as multiples of what raw-to-tiff takes, never as such: seconds belong to a machine.
"""
import csv
import math
import sys
from html import escape
from itertools import cycle
from pathlib import Path
from statistics import median
from typing import NamedTuple

OURS = "raw-to-tiff"


class Result(NamedTuple):
    """What one command takes for one file, relative to ours; None for a figure of a picture without a truth."""

    label: str
    command: str
    wall: float
    lowest_wall: float
    highest_wall: float
    cpu: float
    memory: float
    cpsnr: float | None
    mean_ciede2000: float | None
    p95_ciede2000: float | None
    false_colour: float | None


class Timing(NamedTuple):
    wall: float
    cpu: float


def read_rounds(folder):
    """For each label the timings of all rounds."""
    timings = {}
    for path in sorted(folder.glob("round-*.csv")):
        with path.open() as lines:
            for row in csv.DictReader(lines):
                timing = Timing(float(row["mean"]), float(row["user"]) + float(row["system"]))
                timings.setdefault(row["command"], []).append(timing)
    return timings


def read_results(folder):
    timings = read_rounds(folder)
    with (folder / "trials.tsv").open() as lines:
        trials = {label: rest for label, *rest in csv.reader(lines, delimiter="\t", quoting=csv.QUOTE_NONE)}
    our_memory, ours = float(trials[OURS][0]), timings[OURS]
    results = []
    for label, (memory, *figures, command) in trials.items():
        theirs = timings[label]
        by_round = [their.wall / our.wall for their, our in zip(theirs, ours, strict=True)]
        results.append(Result(
            label, command.strip(),
            median(t.wall for t in theirs) / median(t.wall for t in ours), min(by_round), max(by_round),
            median(t.cpu for t in theirs) / median(t.cpu for t in ours),
            float(memory) / our_memory,
            *(None if figure == "-" else float(figure) for figure in figures)))
    return results


def ratio(value):
    return f"{value:.2f}" if value < 9.995 else f"{value:.1f}"


def table(results):
    is_judged = any(result.cpsnr is not None for result in results)
    heads = ["", "wall time", "CPU time", "peak memory"]
    if is_judged:
        heads += ["CPSNR dB", "CIEDE2000 mean", "CIEDE2000 95 %", "false colour"]
    yield "| " + " | ".join(heads) + " |"
    yield "|---|" + "--:|" * (len(heads) - 1)
    for r in results:
        spread = f"{ratio(r.lowest_wall)}–{ratio(r.highest_wall)}"
        cells = [r.label, f"{ratio(r.wall)} ({spread})", ratio(r.cpu), ratio(r.memory)]
        if is_judged:
            figures = ((r.cpsnr, 1), (r.mean_ciede2000, 2), (r.p95_ciede2000, 1), (r.false_colour, 2))
            cells += ["–" if figure is None else f"{figure:.{digits}f}" for figure, digits in figures]
        yield "| " + " | ".join(cells) + " |"


def page(folder, files):
    runs = len(list((folder / "0").glob("round-*.csv")))
    yield f"Every figure from here to the end was printed by `{(folder / 'invocation').read_text().strip()}`,"
    yield f"which timed each command {runs} times, on this machine:"
    yield ""
    yield (folder / "machine").read_text().strip()
    yield ""
    yield f"![Each converter's wall time, CPU time and peak memory as multiples of {OURS}'s](performance.svg)"
    for name, results in files.items():
        yield f"\n### {name}\n"
        yield from table(results)
    notes = (folder / "notes").read_text().splitlines()
    if notes:
        yield "\n### Notes\n"
        yield from (f"- {line}" for line in notes)
    yield "\n### Commands\n"
    commands = {r.label: r.command for results in reversed(files.values()) for r in results}
    first = [r.label for r in next(iter(files.values()))]
    for label in first + [label for label in commands if label not in first]:
        yield f"- {label}: `{commands[label]}`"


# The plot: a panel for each measure side by side, a row for each command, a dot for each file.

ROW, PANEL, GAP, LABELS, TOP = 22, 210, 24, 190, 84
COLOURS = ("#0072b2", "#d55e00", "#009e73", "#cc79a7", "#e69f00", "#56b4e9", "#000000")


class Scale:
    """Places values within a panel: from 0 on a linear scale, from below the least value on a logarithmic one."""

    def __init__(self, values, is_logarithmic):
        self.is_logarithmic = is_logarithmic
        self.low = min(values) / 1.25 if is_logarithmic else 0
        self.high = max(values) * 1.1

    def place(self, value):
        if self.is_logarithmic:
            return PANEL * math.log(value / self.low) / math.log(self.high / self.low)
        return PANEL * (value - self.low) / (self.high - self.low)

    def ticks(self):
        steps = [digit * 10 ** power for power in range(-2, 4) for digit in (1, 2, 5)]
        if self.is_logarithmic:
            return [step for step in steps if self.low <= step <= self.high]
        step = next(step for step in steps if self.high / step <= 5)
        return [step * count for count in range(int(self.high / step) + 1)]


def text(x, y, words, anchor="middle", extra=""):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}"{extra}>{escape(words)}</text>'


def panel(left, title, measure, is_logarithmic, labels, files):
    values = {(name, r.label): getattr(r, measure) for name, results in files.items() for r in results}
    values = {key: value for key, value in values.items() if value is not None}
    scale, bottom = Scale(values.values(), is_logarithmic), TOP + ROW * len(labels)
    yield text(left + PANEL / 2, TOP - 28, title, extra=' font-weight="bold"')
    for tick in scale.ticks():
        x = left + scale.place(tick)
        is_ours = is_logarithmic and tick == 1
        yield f'<path d="M{x:.1f} {TOP}V{bottom}" stroke="{"#333" if is_ours else "#ddd"}"/>'
        yield text(x, TOP - 8, f"{tick:g}", extra=' fill="#555"')
    for colour, name in zip(cycle(COLOURS), files):
        for row, label in enumerate(labels):
            if (name, label) in values:
                x, y = left + scale.place(values[name, label]), TOP + ROW * (row + 0.5)
                yield f'<circle cx="{x:.1f}" cy="{y:.1f}" r="4.5" fill="{colour}" fill-opacity="0.8"/>'


def plot(files):
    labels = list(dict.fromkeys(r.label for results in files.values() for r in results))
    panels = [("wall time, ours = 1", "wall", True), ("CPU time, ours = 1", "cpu", True),
              ("peak memory, ours = 1", "memory", True)]
    if any(r.mean_ciede2000 is not None for results in files.values() for r in results):
        panels.append(("mean CIEDE2000", "mean_ciede2000", False))
    width, height = LABELS + (PANEL + GAP) * len(panels), TOP + ROW * len(labels) + 16
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}" '
           'font-family="sans-serif" font-size="12">')
    yield f'<rect width="{width}" height="{height}" fill="#fff"/>'
    x = LABELS
    for colour, name in zip(cycle(COLOURS), files):
        yield f'<circle cx="{x}" cy="20" r="4.5" fill="{colour}"/>' + text(x + 10, 24, name, "start")
        x += 40 + 7 * len(name)
    for row, label in enumerate(labels):
        y = TOP + ROW * row
        if row % 2 == 0:
            yield f'<rect y="{y}" width="{width}" height="{ROW}" fill="#f6f6f6"/>'
        yield text(LABELS - 16, y + ROW / 2 + 4, label, "end", ' font-weight="bold"' if label.startswith(OURS) else "")
    for number, (title, measure, is_logarithmic) in enumerate(panels):
        yield from panel(LABELS + number * (PANEL + GAP), title, measure, is_logarithmic, labels, files)
    yield "</svg>"


def main(folder):
    numbers = sorted(int(path.parent.name) for path in folder.glob("*/name"))
    folders = [folder / str(number) for number in numbers]
    files = {(each / "name").read_text().strip(): read_results(each) for each in folders}
    (folder / "performance.svg").write_text("\n".join(plot(files)) + "\n")
    print("\n".join(page(folder, files)))


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: report.py FOLDER")
    main(Path(sys.argv[1]))
