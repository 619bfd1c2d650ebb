# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

"""Mutation testing: which small changes of the product do its tests not notice?

All mutants are compiled into one build, each behind a switch that is read from the environment (switch.h). A mutant
that does not compile is taken out and does not count. Each test of a layer is then run once to see which mutants it
reaches, and each mutant of the layer is run against the tests that reach it, until one fails. What no test reaches has
survived.

See ../mutate.sh for the usage.
"""

import argparse
import concurrent.futures
import fcntl
import hashlib
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

from finder import Mutant, Source, find

ROOT = pathlib.Path(__file__).resolve().parents[2]
HERE = pathlib.Path(__file__).resolve().parent
BUILD = ROOT / "build" / "mutation"
EXPLANATIONS = HERE / "survivors.txt"
WANTED = 0.92
BATCH = 2  # seconds that the tests of one process take together

# The layers, each with its sources and the test programs that it is held by.
LAYERS = {
    "platform": ("ZSpace/platform", ["platform_tests"]),
    "core": ("ZSpace/core", ["core_tests"]),
    "string": ("ZSpace/string", ["string_tests", "string_array_tests"]),
    "value": ("ZSpace/value", ["value_tests"]),
    "object": ("ZSpace/object", ["object_tests"]),
    "stream": ("ZSpace/stream", ["stream_tests"]),
    "system": ("ZSpace/system", ["system_tests"]),
    "log": ("ZSpace/log", ["log_tests", "front_end_tests"]),
    "app": ("app", ["app_tests"]),
}
# Files that another layer's tests hold.
HELD_BY = {
    "ZSpace/core/detail/DebugReportDescriptor.cpp": "app",
    "ZSpace/platform/linux/ProcessLinux.cpp": "system",
    "ZSpace/platform/linux/SystemLogLinux.cpp": "log",
}
# Not built on this host, or built without tests.
LEFT_OUT = re.compile(r"platform/(darwin|foundation|unsupported)/")


def tracked(*folders):
    names = subprocess.check_output(["git", "-C", str(ROOT), "ls-files", *folders], text=True).split()
    return [name for name in names if (ROOT / name).is_file()]


def digest(names):
    """Changes with the contents of the files."""
    state = hashlib.sha256()
    for name in names:
        state.update(name.encode() + b"\0" + (ROOT / name).read_bytes())
    return state.hexdigest()


def files_of(layer):
    names = [name for name in tracked(LAYERS[layer][0]) if HELD_BY.get(name, layer) == layer]
    names += [name for name, holder in HELD_BY.items() if holder == layer]
    return [name for name in names if name.endswith((".h", ".cpp")) and not LEFT_OUT.search(name)]


def found(name):
    """The mutants of a file. They are kept, because looking for them takes a second per file."""
    notes = BUILD / "found" / (name.replace("/", "-") + ".json")
    state = digest([name, "scripts/mutation/finder.py"])
    source = Source(ROOT, name)
    kept = json.loads(notes.read_text()) if notes.exists() else {"state": ""}
    if kept["state"] == state:
        source.mutants = [Mutant(*fields) for fields in kept["mutants"]]
    else:
        find(source)
        notes.parent.mkdir(parents=True, exist_ok=True)
        fields = [(m.begin, m.end, m.kind, m.changed, m.form) for m in source.mutants]
        notes.write_text(json.dumps({"state": state, "mutants": fields}))
    source.name_mutants()
    return source


class Build:
    """All sources with all mutants, built."""

    def __init__(self, jobs):
        self.jobs = jobs
        self.tree = BUILD / "tree"
        self.folder = BUILD / "build"
        self.sources = {layer: [found(name) for name in files_of(layer)] for layer in LAYERS}
        self.state = {source.name: source.state() for source in self.all_sources()}
        self.count = self.number_mutants()
        self.notes = BUILD / "not-compiled.json"
        self.disabled = {}  # of each file the mutants that do not compile
        kept = json.loads(self.notes.read_text()) if self.notes.exists() else {}
        for name, state in self.state.items():
            self.disabled[name] = set(kept[name]["mutants"] if name in kept and kept[name]["state"] == state else ())

    def number_mutants(self):
        """Gives each mutant the number that it had in earlier builds, so that a changed file is compiled again alone.
        @return how many numbers there are."""
        notes = BUILD / "numbers.json"
        numbers = json.loads(notes.read_text()) if notes.exists() else {}
        for source in self.all_sources():
            for mutant in source.mutants:
                mutant.number = numbers.setdefault(mutant.key, len(numbers))
        notes.parent.mkdir(parents=True, exist_ok=True)
        notes.write_text(json.dumps(numbers))
        return len(numbers)

    def all_sources(self):
        return [source for sources in self.sources.values() for source in sources]

    def mutants(self, layer):
        """Those that compile."""
        return [m for s in self.sources[layer] for m in s.mutants if m.key not in self.disabled[s.name]]

    def not_compiled(self, layer):
        return sum(len(self.disabled[source.name]) for source in self.sources[layer])

    def write_tree(self, first):
        """Copies what git tracks, the sources with their mutants. Files that stay the same keep their time, and those
        that only lose mutants too: what has been compiled with them stays."""
        mutated = {source.name: source.mutated(self.disabled[source.name]) for source in self.all_sources()}
        for name in tracked():
            target = self.tree / name
            data = mutated.get(name) or (ROOT / name).read_bytes()
            if target.exists() and target.read_bytes() == data:
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            before = target.stat() if target.exists() and name in mutated and not first else None
            target.write_bytes(data)
            shutil.copymode(ROOT / name, target)
            if before:
                os.utime(target, ns=(before.st_atime_ns, before.st_mtime_ns))
        (self.tree / "build").mkdir(exist_ok=True)

    def configure(self):
        if (self.folder / "build.ninja").exists():
            return
        flags = f"-w -O0 -ferror-limit=0 -include {HERE / 'switch.h'}"
        command = ["cmake", "-S", str(self.tree), "-B", str(self.folder), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                   "-DCMAKE_CXX_COMPILER=clang++", f"-DCMAKE_CXX_FLAGS={flags}", "-DZSPACE_BUILD_EXAMPLES=OFF"]  # fmt: skip
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)

    def compile(self, targets):
        """Builds, taking out what does not compile, until all that is left does."""
        for attempt in range(40):
            self.write_tree(attempt == 0)
            self.configure()
            command = ["cmake", "--build", str(self.folder), "--target", *targets, "--", "-k", "0", f"-j{self.jobs}"]
            run = subprocess.run(command, capture_output=True, text=True)
            (BUILD / "build.log").write_text(run.stdout + run.stderr)
            if run.returncode != 0:
                bad = self.take_out(run.stdout + run.stderr)
                for name in re.findall(r"^FAILED: (\S+)", run.stdout, flags=re.M):
                    (self.folder / name).unlink(missing_ok=True)
                print(f"  taking out {bad} mutants that do not compile", flush=True)
                if not bad:
                    sys.exit(f"The build fails, and no mutant is to blame: {BUILD / 'build.log'}")
            kept = {name: {"state": self.state[name], "mutants": sorted(bad)} for name, bad in self.disabled.items()}
            self.notes.write_text(json.dumps(kept))
            if run.returncode == 0:
                return
        sys.exit("The build still fails")

    def take_out(self, output):
        """Disables the mutants that the compiler's errors stand in, and counts them."""
        before = sum(len(bad) for bad in self.disabled.values())
        places = {"error": [], "note": []}
        for name, line, column, kind in re.findall(r"tree/(\S+?):(\d+):(\d+): (?:fatal )?(error|note)", output):
            places[kind].append((name, int(line), int(column)))
        sources = {source.name: source for source in self.all_sources()}
        # A template's errors may name the place where it is used; the notes lead back to it.
        for kind in "error", "note":
            for name, line, column in set(places[kind]):
                if name in sources:
                    self.disabled[name] |= self.around(sources[name], line, column)
            if sum(len(bad) for bad in self.disabled.values()) > before:
                break
        return sum(len(bad) for bad in self.disabled.values()) - before

    def around(self, source, line, column):
        """The innermost mutant at a place of the mutated file, or else all that begin in its line."""
        lines = (self.tree / source.name).read_bytes().split(b"\n")
        begin = sum(len(text) + 1 for text in lines[: line - 1])
        offset = begin + column - 1
        spans = [span for span in source.spans if span[0] <= offset < span[1]]
        if spans:
            return {min(spans, key=lambda span: span[1] - span[0])[2].key}
        return {span[2].key for span in source.spans if begin <= span[0] < begin + len(lines[line - 1])}

    def program(self, target):
        return next(self.folder.glob(f"tests/*/{target}"))


class Layer:
    """The runs of a layer's tests."""

    def __init__(self, name, build):
        self.name = name
        self.build = build
        self.folder = BUILD / name
        self.folder.mkdir(parents=True, exist_ok=True)
        self.results_file = self.folder / "results.jsonl"
        self.tests_state = digest(tracked(f"tests/{name}", "tests/support"))
        self.reached = {}  # for each mutant the tests that reach it
        self.seconds = {}  # how long each test takes
        self.results = {}  # of the mutants whose result still holds
        self.survived = set()  # the last time, whatever has changed since

    def run(self, program, tests, environment, limit):
        """True when every test passes, None when they take longer than `limit`."""
        flags = self.folder / f"flags-{os.getpid()}-{environment['MUTANT']}-{program.name}"
        flags.write_text("--gtest_filter=" + ":".join(tests) + "\n--gtest_fail_fast\n--gtest_brief=1\n")
        work = self.folder / f"run-{environment['MUTANT']}"
        work.mkdir(exist_ok=True)
        process = subprocess.Popen(
            [str(program), f"--gtest_flagfile={flags}"], env=os.environ | environment | {"TMPDIR": str(work)},
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=program.parent,
            start_new_session=True, preexec_fn=limit_resources)  # fmt: skip
        try:
            return process.wait(limit) == 0
        except subprocess.TimeoutExpired:
            return None
        finally:
            try:
                os.killpg(process.pid, 9)
            except ProcessLookupError:
                pass
            process.wait()
            flags.unlink(missing_ok=True)
            shutil.rmtree(work, ignore_errors=True)

    def reach(self):
        """Runs each test once. The trace is in the build directory, which is the one that tests with a root directory
        of their own can reach."""
        for target in LAYERS[self.name][1]:
            program = self.build.program(target)
            listing = subprocess.check_output([str(program), "--gtest_list_tests"], text=True, cwd=program.parent)
            for test in test_names(listing):
                trace = self.build.folder / f"trace-{self.name}"
                trace.write_bytes(bytes(self.build.count))
                begin = time.monotonic()
                if not self.run(program, [test], {"MUTANT": "-1", "MUTANT_TRACE": str(trace)}, 300):
                    print(f"  {self.name}: {test} fails without a mutant and is left out", flush=True)
                    continue
                self.seconds[target, test] = time.monotonic() - begin
                for number, byte in enumerate(trace.read_bytes()):
                    if byte:
                        self.reached.setdefault(number, []).append((target, test))

    def survives(self, mutant):
        """Runs the quick tests first, and a few at a time, so that a mutant that hangs is found out soon."""
        batches = []
        tests = sorted(self.reached.get(mutant.number, []), key=lambda test: (test[0], self.seconds[test]))
        total = BATCH
        for target, test in tests:
            total += self.seconds[target, test]
            if total >= BATCH or batches[-1][0] != target:
                batches.append((target, []))
                total = self.seconds[target, test]
            batches[-1][1].append(test)
        return all(self.passes(self.build.program(target), names, str(mutant.number)) for target, names in batches)

    def passes(self, program, tests, number):
        """A mutant that hangs is killed. How long is too long depends on what else the machine has to do."""
        limit = 5 + 5 * sum(self.seconds[program.name, test] for test in tests)
        while True:
            passed = self.run(program, tests, {"MUTANT": number}, limit)
            if passed is not None:
                return passed
            begin = time.monotonic()
            self.run(program, tests, {"MUTANT": "-1"}, None)
            usual = time.monotonic() - begin
            if 4 * usual <= limit:
                return False
            limit = 10 * usual

    def wanted(self, options, chosen):
        """The mutants that count, and those of them that are to be run."""
        mutants = [m for m in self.build.mutants(self.name) if chosen is None or m.key in chosen]
        if options.survivors:
            mutants = [m for m in mutants if m.key in self.survived]
        return mutants, [m for m in mutants if options.survivors or m.key not in self.results]

    def read_results(self, fresh):
        """A result holds as long as the mutant's file stays the same. Survivors run again when tests have changed."""
        if fresh:
            self.results_file.unlink(missing_ok=True)
        if not self.results_file.exists():
            return
        for line in self.results_file.read_text().splitlines():
            row = json.loads(line)
            key = row["mutant"]
            (self.survived.add if row["survived"] else self.survived.discard)(key)
            if row["source"] == self.build.state.get(key.split(": ")[0]) and (
                not row["survived"] or row["tests"] == self.tests_state
            ):
                self.results[key] = row["survived"]
            else:
                self.results.pop(key, None)

    def note(self, mutant, survived):
        self.results[mutant.key] = survived
        state = self.build.state[mutant.key.split(": ")[0]]
        row = {"mutant": mutant.key, "survived": survived, "source": state, "tests": self.tests_state}
        with self.results_file.open("a") as file:
            file.write(json.dumps(row) + "\n")


def limit_resources():
    """A mutant that allocates or writes without end must not take the machine with it."""
    import resource

    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_CPU, (120, 120))


def test_names(listing):
    suite = ""
    for line in listing.splitlines():
        name = line.split("#")[0].rstrip()
        if name and not name.startswith(" "):
            suite = name
        elif name.strip():
            yield suite + name.strip()


def explained():
    """The survivors that are known, each with its reason: `mutant => reason`."""
    known = {}
    for line in EXPLANATIONS.read_text().splitlines():
        if line and not line.startswith("#") and " => " in line:
            key, reason = line.split(" => ", 1)
            known[key.strip()] = reason.strip()
    return known


def run(layer, options, chosen):
    """Runs the mutants of a layer that are to be run, and returns how many there are and which survive."""
    mutants, todo = layer.wanted(options, chosen)
    left_out = layer.build.not_compiled(layer.name)
    print(f"{layer.name}: {len(mutants)} mutants, {len(todo)} to run, {left_out} did not compile", flush=True)
    if todo:
        layer.reach()
        done = 0
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            runs = {pool.submit(layer.survives, mutant): mutant for mutant in todo}
            for finished in concurrent.futures.as_completed(runs):
                layer.note(runs[finished], finished.result())
                done += 1
                if done % 100 == 0:
                    print(f"  {layer.name}: {done} of {len(todo)}", flush=True)
    return len(mutants), [m for m in mutants if layer.results[m.key]]


def lock_build():
    """Two runs at a time would change each other's sources."""
    BUILD.mkdir(parents=True, exist_ok=True)
    lock = (BUILD / "lock").open("w")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        sys.exit(f"Another run is using {BUILD}")
    return lock


def main():
    parser = argparse.ArgumentParser(prog="mutate.sh")
    parser.add_argument("layer", nargs="*", choices=[[], *LAYERS], default=[])
    parser.add_argument("--sample", type=int, metavar="N", help="run N mutants, chosen at random")
    parser.add_argument("--seed", type=int, default=None, help="the sample's seed")
    parser.add_argument("--survivors", action="store_true", help="run the survivors of the last run again")
    parser.add_argument("--fresh", action="store_true", help="forget earlier results")
    parser.add_argument("-j", "--jobs", type=int, default=os.cpu_count(), help="how many run at a time")
    options = parser.parse_args()
    layers = options.layer or list(LAYERS)
    lock = lock_build()  # held until the end
    build = Build(options.jobs)
    chosen = None
    if options.sample:
        seed = options.seed if options.seed is not None else int(time.time())
        every = [m.key for layer in layers for m in build.mutants(layer)]
        chosen = set(random.Random(seed).sample(every, min(options.sample, len(every))))
        print(f"A sample of {len(chosen)} mutants, seed {seed}")
    layers = [Layer(name, build) for name in layers]
    for layer in layers:
        layer.read_results(options.fresh)
    targets = [target for layer in layers if layer.wanted(options, chosen)[1] for target in LAYERS[layer.name][1]]
    if targets:  # all at once, because a mutant that does not compile costs a build
        build.compile(targets)
    known = explained()
    total, survived, unexplained = 0, 0, 0
    for layer in layers:
        count, survivors = run(layer, options, chosen)
        killed = count - len(survivors)
        print(f"{layer.name}: {killed} of {count} killed ({100 * killed / max(count, 1):.1f} %)", flush=True)
        for mutant in survivors:
            reason = known.get(mutant.key)
            print(f"  survived: line {mutant.line}: {mutant.key}" + (f" => {reason}" if reason else ""))
            unexplained += not reason
        total += count
        survived += len(survivors)
    if options.survivors:
        print(f"{total - survived} of {total} earlier survivors are killed now")
        return 0
    rate = (total - survived) / max(total, 1)
    print(f"All: {total - survived} of {total} killed ({100 * rate:.1f} %), {unexplained} survivors unexplained")
    if chosen is not None:  # few, so that a single one weighs much
        return 0 if total - unexplained >= WANTED * total else 1
    return 0 if rate >= WANTED and not unexplained else 1


if __name__ == "__main__":
    sys.exit(main())
