#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
"""Draws what the program `scale` printed: scale.py INPUT OUTPUT.svg"""

import math
import sys
from pathlib import Path

UNITS = {"memory": "KiB in use", "threads": "ns per line, all threads together", "lines": "ns per line",
         "map, find": "ns per look-up"}
SIZES = {"memory": "lines written", "threads": "threads", "lines": "lines written"}
WIDTH, HEIGHT, COLUMNS = 270, 190, 3


def curves(text):
    """The measured points, by subject."""
    result = {}
    for line in text.splitlines():
        subject, size, value = line.rsplit(" ", 2)
        result.setdefault(subject, []).append((int(size), float(value)))
    return result


def power(exponent):
    return f"10<tspan dy='-4' font-size='8'>{exponent}</tspan>" if exponent > 3 else str(10 ** exponent)


def panel(subject, points, left, top):
    """One curve over logarithmic axes; both begin and end at powers of ten."""
    x0, y0, width, height = left + 46, top + 28, WIDTH - 66, HEIGHT - 78
    low_x, high_x = 0, math.ceil(math.log10(points[-1][0]))
    low_y = math.floor(math.log10(min(value for _, value in points)))
    high_y = max(low_y + 2, math.ceil(math.log10(max(value for _, value in points))))

    def place(size, value):
        return (x0 + width * (math.log10(size) - low_x) / (high_x - low_x),
                y0 + height * (1 - (math.log10(value) - low_y) / (high_y - low_y)))

    parts = [f'<text class="title" x="{x0}" y="{top + 16}">{subject}</text>',
             f'<rect class="frame" x="{x0}" y="{y0}" width="{width}" height="{height}"/>']
    for exponent in range(low_y, high_y + 1):
        y = place(1, 10.0 ** exponent)[1]
        label = power(exponent) if exponent >= 0 else f"{10.0 ** exponent:g}"
        parts.append(f'<path class="grid" d="M{x0} {y:.1f}h{width}"/>'
                     f'<text class="y" x="{x0 - 6}" y="{y + 4:.1f}">{label}</text>')
    for exponent in range(low_x, high_x + 1):
        parts.append(f'<text class="x" x="{place(10 ** exponent, 10.0 ** low_y)[0]:.1f}" y="{y0 + height + 14}">'
                     f'{power(exponent)}</text>')
    places = [place(size, value) for size, value in points]
    parts.append('<polyline class="curve" points="' + " ".join(f"{x:.1f},{y:.1f}" for x, y in places) + '"/>')
    parts += [f'<circle class="point" cx="{x:.1f}" cy="{y:.1f}" r="2.5"/>' for x, y in places]
    unit = UNITS.get(subject, "ns per element")
    parts.append(f'<text class="x" x="{x0 + width / 2}" y="{y0 + height + 30}">{SIZES.get(subject, "elements")} — {unit}'
                 "</text>")
    return "\n".join(parts)


def main():
    subjects = curves(Path(sys.argv[1]).read_text(encoding="utf-8"))
    rows = math.ceil(len(subjects) / COLUMNS)
    panels = [panel(subject, points, index % COLUMNS * WIDTH, index // COLUMNS * HEIGHT)
              for index, (subject, points) in enumerate(subjects.items())]
    Path(sys.argv[2]).write_text(f'''<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {COLUMNS * WIDTH} {rows * HEIGHT}"
 role="img" aria-label="Costs over sizes, on logarithmic axes">
<style>
text {{ font: 11px sans-serif; fill: #24292f; }}
.title {{ font-weight: bold; }} .x {{ text-anchor: middle; }} .y {{ text-anchor: end; }}
.frame {{ fill: none; stroke: #8c959f; }} .grid {{ stroke: #8c959f; stroke-opacity: 0.35; }}
.curve {{ fill: none; stroke: #2f81a8; stroke-width: 2; }} .point {{ fill: #2f81a8; }}
@media (prefers-color-scheme: dark) {{ text {{ fill: #e6edf3; }} }}
</style>
{chr(10).join(panels)}
</svg>
''', encoding="utf-8")


if __name__ == "__main__":
    main()
