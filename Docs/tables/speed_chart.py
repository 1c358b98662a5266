#!/usr/bin/env python3
"""Draws the ratios of whole files as a chart: speed_chart.py FIGURES.json CHART.svg"""

import json
import math
import sys
from xml.sax.saxutils import escape

from speed import GOAL, digits, rows_of

LEFT, WIDTH, RIGHT = 330, 560, 60
ROW, BAR, TOP, BOTTOM = 22, 14, 34, 14
LOWEST, HIGHEST = 0.1, 1000.0
DECADES = (0.1, 1, 10, 100, 1000)
FASTER, SLOWER, GOAL_LINE, GRID, TEXT = "#2a6f97", "#b08968", "#c1121f", "#d9d9d9", "#222222"


def x_of(ratio):
    share = math.log(min(max(ratio, LOWEST), HIGHEST) / LOWEST) / math.log(HIGHEST / LOWEST)
    return LEFT + WIDTH * share


def text(x, y, words, anchor="start", colour=TEXT):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" fill="{colour}">{escape(words)}</text>'


def line(x, top, bottom, colour, width=1):
    return f'<line x1="{x:.1f}" y1="{top:.1f}" x2="{x:.1f}" y2="{bottom:.1f}" stroke="{colour}" stroke-width="{width}"/>'


def bar(row, top):
    """From 1, where both take as long, to the ratio; its goal as a red line."""
    one, end = x_of(1), x_of(row["ratio"])
    middle = top + ROW / 2
    parts = [text(LEFT - 8, middle + 4, f"{row['contest']} / {row['rival']}", "end"),
             f'<rect x="{min(one, end):.1f}" y="{middle - BAR / 2:.1f}" width="{abs(end - one):.1f}" height="{BAR}" '
             f'fill="{FASTER if row["ratio"] >= 1 else SLOWER}"/>',
             text(max(one, end) + 6, middle + 4, f"{row['ratio']:.{digits(row['ratio'])}f}")]
    goal = GOAL.match(row["goal"])
    if goal:
        parts.append(line(x_of(float(goal[2])), middle - BAR / 2 - 2, middle + BAR / 2 + 2, GOAL_LINE, 2))
    return parts


def chart(rows):
    height = TOP + ROW * len(rows) + BOTTOM
    width = LEFT + WIDTH + RIGHT
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" viewBox="0 0 {width} {height}" '
             'font-family="DejaVu Sans, sans-serif" font-size="12">',
             f'<rect width="{width}" height="{height}" fill="#ffffff"/>']
    for decade in DECADES:
        parts += [line(x_of(decade), TOP - 6, height - BOTTOM, TEXT if decade == 1 else GRID),
                  text(x_of(decade), TOP - 12, f"{decade:g}×", "middle")]
    for index, row in enumerate(rows):
        parts += bar(row, TOP + ROW * index)
    return "\n".join([*parts, "</svg>", ""])


def main():
    figures, out = sys.argv[1:]
    with open(figures, encoding="utf-8") as file:
        rows = rows_of(json.load(file), "")
    with open(out, "w", encoding="utf-8") as file:
        file.write(chart(rows))


if __name__ == "__main__":
    main()
