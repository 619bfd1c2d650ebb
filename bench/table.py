#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
"""Measures every row of rows.toml against its baseline and prints a table of ratios.

Each round of a row is a fresh process in which the row's benchmarks take turns, so that a slow or fast moment of the
machine concerns all of them. A row's ratio is the median over its rounds; rounds are added until half of them lie within
a small spread. While other programs use the machine, measuring waits and says so.
"""

import argparse
import datetime
import json
import os
import platform
import re
import statistics
import subprocess
import sys
import time
import tomllib
from pathlib import Path

FOREIGN_LOAD = 0.10  # of the machine, at most
SPREAD = 0.03  # of the ratio, between the quartiles
ROUNDS = (5, 15)  # at least and at most
WAITS = 5  # for a quieter machine, per round


def names_of(row):
    """The names of the row's benchmarks: ours, the baseline's and those of other libraries."""
    baseline = row.get("baseline", re.sub(r"^([^/]*)", r"\1_baseline", row["ours"]))
    return {"ours": row["ours"], "baseline": baseline} | row.get("peers", {})


class Machine:
    """What the processors have done so far, in seconds: for everybody, and for this process and its children."""

    def __init__(self):
        self.time = time.monotonic()
        fields = [int(field) for field in Path("/proc/stat").read_text().split("\n")[0].split()[1:9]]
        idle = fields[3] + fields[4]
        self.busy = (sum(fields) - idle) / os.sysconf("SC_CLK_TCK")
        times = os.times()
        self.own = times.user + times.system + times.children_user + times.children_system

    def foreign_load_since(self, earlier):
        """The part of the machine that others have used since `earlier`."""
        elapsed = (self.time - earlier.time) * os.cpu_count()
        return max(0.0, (self.busy - earlier.busy - (self.own - earlier.own)) / elapsed)


def run_once(program, names, seconds, repetitions):
    """The medians of the benchmarks' times in one fresh process, or None if it cannot run here."""
    pattern = "^(" + "|".join(re.escape(name) for name in names.values()) + ")$"
    result = subprocess.run(
        [program, f"--benchmark_filter={pattern}", f"--benchmark_min_time={seconds}",
         f"--benchmark_repetitions={repetitions}", "--benchmark_enable_random_interleaving=true",
         "--benchmark_format=json"], capture_output=True, text=True, check=False)
    if result.returncode != 0 or not result.stdout:
        sys.exit(f"{program} failed with status {result.returncode}: {result.stderr}")
    times = {}
    for benchmark in json.loads(result.stdout)["benchmarks"]:
        if benchmark["run_type"] == "iteration" and not benchmark.get("error_occurred"):
            key = "real_time" if "real_time" in benchmark["run_name"] else "cpu_time"
            times.setdefault(benchmark["run_name"], []).append(benchmark[key])
    return {role: statistics.median(times[name]) for role, name in names.items() if name in times}


def run_quietly(program, names, options):
    """Like `run_once`, again while others use the machine. Tells whether they did in the end, too."""
    for attempt in range(WAITS):
        before = Machine()
        medians = run_once(program, names, options.seconds, options.repetitions)
        load = Machine().foreign_load_since(before)
        if options.quick or load <= FOREIGN_LOAD:
            return medians, False
        print(f"  others use {load:.0%} of the machine; waiting", file=sys.stderr)
        time.sleep(2 * (attempt + 1))
    return medians, True


def quartiles(values):
    if len(values) < 2:
        return values[0], values[0]
    low, _, high = statistics.quantiles(values, n=4, method="inclusive")
    return low, high


def measure(row, folder, options):
    """The row with the ratios of its benchmarks to its baseline."""
    program, names = folder / f"{row['program']}_bench", names_of(row)
    ratios, noisy, baseline = {}, 0, []
    least, most = (1, 1) if options.quick else ROUNDS
    for count in range(1, most + 1):
        medians, was_noisy = run_quietly(program, names, options)
        if "ours" not in medians or "baseline" not in medians:
            sys.exit(f"{program} has no benchmark {names['ours']} or {names['baseline']}")
        noisy += was_noisy
        baseline.append(medians["baseline"])
        for role, value in medians.items():
            if role != "baseline":
                ratios.setdefault(role, []).append(value / medians["baseline"])
        low, high = quartiles(ratios["ours"])
        if count >= least and high - low <= SPREAD * statistics.median(ratios["ours"]):
            break
    result = {"work": row["work"], "target": row["target"], "baseline_ns": round(statistics.median(baseline), 2),
              "rounds": count, "noisy_rounds": noisy, "ratios": {}}
    for role, values in ratios.items():
        low, high = quartiles(values)
        result["ratios"][role] = {"median": round(statistics.median(values), 3), "low": round(low, 3),
                                  "high": round(high, 3)}
    return result


# The other libraries, with the package of each.
LIBRARIES = {"Abseil": "libabsl-dev", "Boost": "libboost-dev", "{fmt}": "libfmt-dev", "glog": "libgoogle-glog-dev",
             "libuuid": "uuid-dev", "spdlog": "libspdlog-dev"}


def library_versions():
    """The versions of the other libraries, where packages tell them."""
    found = {}
    for library, package in LIBRARIES.items():
        try:
            answer = subprocess.run(["dpkg-query", "-W", "-f=${Version}", package], capture_output=True, text=True,
                                    check=False)
        except FileNotFoundError:
            break
        if answer.returncode == 0:
            found[library] = re.sub(r"^\d+:|[-+].*", "", answer.stdout)
    return found


def versions():
    """What was measured on, for the table's caption."""
    compiler = subprocess.run(["g++", "--version"], capture_output=True, text=True, check=False).stdout.split("\n")[0]
    model = re.search(r"model name\s*: (.*)", Path("/proc/cpuinfo").read_text())
    system = platform.freedesktop_os_release().get("PRETTY_NAME", platform.system())
    return {"date": datetime.date.today().isoformat(), "processor": model[1] if model else platform.machine(),
            "processors": os.cpu_count(), "system": system, "compiler": compiler, "libraries": library_versions()}


def caption(machine):
    return (f"{machine['date']}, {machine['system']}, {machine['compiler']}, {machine['processors']} × "
            f"{machine['processor']}")


def libraries_of(machine):
    return ", ".join(f"{library} {version}" for library, version in machine["libraries"].items())


def line_of(result):
    ours = result["ratios"]["ours"]
    peers = ", ".join(f"{name} {ratio['median']:.2f}" for name, ratio in result["ratios"].items() if name != "ours")
    met = "yes" if ours["median"] <= result["target"] else "no"
    noise = f" ({result['noisy_rounds']} noisy)" if result["noisy_rounds"] else ""
    return (f"| {result['work']} | {ours['median']:.2f} | {ours['low']:.2f} to {ours['high']:.2f} | {peers} | "
            f"{result['target']:.2f} | {met} | {result['rounds']}{noise} |")


HEAD = ("| work | ratio | spread | others | target | met | rounds |\n"
        "|---|---|---|---|---|---|---|")


def drawing(results, machine):
    """The ratios as horizontal bars, with the targets as marks."""
    height, left, width, scale = 22, 330, 860, 110
    bars = []
    for index, result in enumerate(results):
        y = 40 + index * height
        ratio = result["ratios"]["ours"]["median"]
        kind = "met" if ratio <= result["target"] else "missed"
        end = min(ratio * scale, width - left - 60)
        mark = left + min(result["target"] * scale, width - left - 60)
        others = "".join(f'<circle class="other" cx="{left + other["median"] * scale:.1f}" cy="{y + 10}" r="4">'
                         f'<title>{name} {other["median"]:.2f}</title></circle>'
                         for name, other in result["ratios"].items()
                         if name != "ours" and other["median"] * scale < width - left - 8)
        bars.append(f'<text class="work" x="{left - 46}" y="{y + 14}">{result["work"]}</text>'
                    f'<text class="work" x="{left - 8}" y="{y + 14}">{ratio:.2f}</text>'
                    f'<rect class="{kind}" x="{left}" y="{y + 3}" width="{end:.1f}" height="{height - 8}"/>'
                    f'<path class="target" d="M{mark:.1f} {y + 1}v{height - 4}"/>{others}')
    one = left + scale
    total = 50 + len(results) * height
    return f'''<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {total + 40}" role="img"
 aria-label="Time of each operation as a ratio to its baseline">
<style>
text {{ font: 12px sans-serif; fill: #24292f; }}
.work {{ text-anchor: end; }}
.met {{ fill: #2f81a8; }} .missed {{ fill: #c77d2e; }}
.other {{ fill: #fff; stroke: #8250df; stroke-width: 1.5; }}
.target {{ stroke: #24292f; stroke-width: 2; }} .one {{ stroke: #8c959f; stroke-dasharray: 3 3; }}
@media (prefers-color-scheme: dark) {{ text {{ fill: #e6edf3; }} .target {{ stroke: #e6edf3; }} }}
</style>
<text x="{left}" y="16">Time as a ratio to hand-written code for the same work; lines are targets, circles other libraries</text>
<path class="one" d="M{one} 30V{total}"/>
{chr(10).join(bars)}
<text x="8" y="{total + 12}">{caption(machine)}</text>
<text x="8" y="{total + 30}">{libraries_of(machine)}</text>
</svg>
'''


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("folder", type=Path, help="where the benchmark programs are")
    parser.add_argument("--quick", action="store_true", help="one short round of each row, on a busy machine, too")
    parser.add_argument("--only", metavar="TEXT", default="", help="only rows whose work contains this text")
    parser.add_argument("--json", type=Path, help="write the results to this file")
    parser.add_argument("--svg", type=Path, help="draw the results into this file")
    options = parser.parse_args()
    options.seconds, options.repetitions = (0.001, 1) if options.quick else (0.05, 7)

    rows = tomllib.loads((Path(__file__).parent / "rows.toml").read_text())["row"]
    machine, results = versions(), []
    print(caption(machine), libraries_of(machine), HEAD, sep="\n\n", flush=True)
    for row in rows:
        if options.only not in row["work"]:
            continue
        if not (options.folder / f"{row['program']}_bench").exists() or (
                row["program"] == "launcher" and os.geteuid() != 0):
            print(f"| {row['work']} | not measured: needs the static program, and root | | | | | |")
            continue
        results.append(measure(row, options.folder, options))
        print(line_of(results[-1]), flush=True)
    if options.json:
        options.json.write_text(json.dumps({"machine": machine, "rows": results}, indent=1) + "\n")
    if options.svg:
        options.svg.write_text(drawing(results, machine))


if __name__ == "__main__":
    main()
