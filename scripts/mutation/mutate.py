# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

"""Mutation testing: which small changes of the product do its tests not notice?

All mutants of a layer are compiled into one build, each behind a switch that is read from the environment (switch.h).
A mutant that does not compile is taken out and does not count. Each test is then run once to see which mutants it
reaches, and each mutant is run against the tests that reach it, until one fails. What no test reaches has survived.

See ../mutate.sh for the usage.
"""

import argparse
import concurrent.futures
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

import clang.cindex
from clang.cindex import CursorKind

ROOT = pathlib.Path(__file__).resolve().parents[2]
HERE = pathlib.Path(__file__).resolve().parent
BUILD = ROOT / "build" / "mutation"
EXPLANATIONS = HERE / "survivors.txt"
WANTED = 0.92

# The layers, each with its sources and the test programs that it is held by.
LAYERS = {
    "platform": ("ZSpace/platform", ["platform_tests"]),
    "core": ("ZSpace/core", ["core_tests"]),
    "string": ("ZSpace/string", ["string_tests"]),
    "value": ("ZSpace/value", ["value_tests"]),
    "object": ("ZSpace/object", ["object_tests"]),
    "stream": ("ZSpace/stream", ["stream_tests"]),
    "system": ("ZSpace/system", ["system_tests"]),
    "log": ("ZSpace/log", ["log_tests", "front_end_tests"]),
    "app": ("app", ["app_tests"]),
}
# Not built on this host, or built without tests.
LEFT_OUT = re.compile(r"platform/(darwin|foundation|unsupported)/")

OPERATORS = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
    "+": "-", "-": "+", "*": "+", "/": "*", "%": "/",
    "&&": "||", "||": "&&", "&": "|", "|": "&", "<<": ">>", ">>": "<<",
}  # fmt: skip
ASSIGNMENTS = {"+=": "-=", "-=": "+=", "|=": "&=", "&=": "|=", "*=": "+="}
STATEMENTS = {CursorKind.CALL_EXPR, CursorKind.BINARY_OPERATOR, CursorKind.UNARY_OPERATOR,
              CursorKind.COMPOUND_ASSIGNMENT_OPERATOR}  # fmt: skip


class Mutant:
    """One change: the bytes [begin, end) of a file are wrapped so that `changed` acts while the switch is on."""

    def __init__(self, begin, end, kind, changed, form):
        self.begin, self.end, self.kind, self.changed, self.form = begin, end, kind, changed, form
        self.number = -1
        self.key = ""
        self.line = 0


def flat(text):
    """`text` on one line, without comments, so that a copy of it does not move the lines below."""
    text = re.sub(r"//[^\n]*|/\*.*?\*/", " ", text, flags=re.S)
    return re.sub(r"\s*\n\s*", " ", text)


class Source:
    """A file with the mutants that were found in it."""

    def __init__(self, name):
        self.name = name
        self.data = (ROOT / name).read_bytes()
        self.mutants = []
        self.spans = []

    def text(self, begin, end):
        return self.data[begin:end].decode()

    def add(self, begin, end, kind, changed, form="({on} ? ({changed}) : ({original}))"):
        if begin < end and not any(m.begin == begin and m.end == end and m.kind == kind for m in self.mutants):
            self.mutants.append(Mutant(begin, end, kind, flat(changed), form))

    def name_mutants(self):
        """Gives each mutant a key that survives changes elsewhere in the file."""
        self.mutants.sort(key=lambda m: (m.begin, -m.end, m.kind))
        seen = {}
        for mutant in self.mutants:
            mutant.line = self.data.count(b"\n", 0, mutant.begin) + 1
            what = f"{self.name}: {mutant.kind}: {flat(self.text(mutant.begin, mutant.end))}"
            what = what if len(what) < 150 else what[:150] + "..."
            seen[what] = seen.get(what, 0) + 1
            mutant.key = what if seen[what] == 1 else f"{what} ({seen[what]})"

    def mutated(self, disabled):
        """The text with every mutant that is not disabled; notes where each one stands in it."""
        self.spans = []
        used = [m for m in self.mutants if m.key not in disabled]
        return self._render(0, len(self.data), used, 0)

    def _render(self, begin, end, mutants, offset):
        out = bytearray()
        position = begin
        index = 0
        while index < len(mutants):
            mutant = mutants[index]
            inner = []
            index += 1
            while index < len(mutants) and mutants[index].begin < mutant.end:
                if mutants[index].end <= mutant.end:
                    inner.append(mutants[index])
                index += 1
            out += self.data[position:mutant.begin]
            head, tail = mutant.form.replace("{on}", f"mutation::on({mutant.number})").replace(
                "{changed}", mutant.changed).split("{original}")  # fmt: skip
            start = offset + len(out)
            out += head.encode()
            out += self._render(mutant.begin, mutant.end, inner, offset + len(out))
            out += tail.encode()
            self.spans.append((start, offset + len(out), mutant))
            position = mutant.end
        out += self.data[position:end]
        return bytes(out)


class Finder:
    """Finds the mutants in the functions of a file."""

    def __init__(self, source):
        self.source = source

    def visit(self, cursor, in_function):
        for child in cursor.get_children():
            location = child.extent.start
            if location.file and pathlib.Path(location.file.name).resolve() != ROOT / self.source.name:
                continue
            self.look(child, cursor, in_function)

    def look(self, cursor, parent, in_function):
        kind = cursor.kind
        if kind in (CursorKind.STATIC_ASSERT, CursorKind.CASE_STMT, CursorKind.ENUM_DECL, CursorKind.CXX_METHOD,
                    CursorKind.TYPE_ALIAS_DECL) and kind != CursorKind.CXX_METHOD:  # fmt: skip
            if kind == CursorKind.CASE_STMT:  # the label is a constant, the statement is not
                for child in list(cursor.get_children())[1:]:
                    self.look(child, cursor, in_function)
            return
        if kind == CursorKind.VAR_DECL and self.is_constant(cursor):
            return
        inside = in_function or kind == CursorKind.COMPOUND_STMT
        if inside and not self.is_macro(cursor):
            self.mutate(cursor, parent)
        self.visit(cursor, inside)

    def is_constant(self, cursor):
        return "constexpr" in self.text(cursor).split("=")[0]

    def is_macro(self, cursor):
        text = self.text(cursor)
        return not text or re.search(r"\b(EXPECT|assert|offsetof|va_arg|va_start|va_end|va_copy)\b", text) is not None

    def text(self, cursor):
        return self.source.text(cursor.extent.start.offset, cursor.extent.end.offset)

    def range(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def mutate(self, cursor, parent):
        kind = cursor.kind
        children = list(cursor.get_children())
        if parent.kind == CursorKind.COMPOUND_STMT and kind in STATEMENTS | {CursorKind.UNEXPOSED_EXPR}:
            begin, end = self.range(cursor)
            if not self.text(cursor).startswith("(void)"):
                self.source.add(begin, end, "remove", "", "do {{ if (!{on}) {{ {original}; }} }} while (false)"
                                .replace("{{", "{").replace("}}", "}"))  # fmt: skip
        if kind == CursorKind.BINARY_OPERATOR and len(children) == 2:
            self.operator(cursor, children, OPERATORS)
        elif kind == CursorKind.COMPOUND_ASSIGNMENT_OPERATOR and len(children) == 2:
            self.operator(cursor, children, ASSIGNMENTS)
        elif kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.CONDITIONAL_OPERATOR):
            self.condition(cursor, children)
        elif kind == CursorKind.INTEGER_LITERAL:
            self.number(cursor, parent)
        elif kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            other = "false" if self.text(cursor) == "true" else "true"
            self.source.add(*self.range(cursor), "flag", other)
        elif kind == CursorKind.CALL_EXPR:
            self.arguments(cursor)

    def operator(self, cursor, children, table):
        left_end, right_begin = children[0].extent.end.offset, children[1].extent.start.offset
        between = flat(self.source.text(left_end, right_begin)).strip()
        begin, end = self.range(cursor)
        if between in table and begin <= left_end <= right_begin <= end:
            changed = self.source.text(begin, left_end) + " " + table[between] + " " + self.source.text(right_begin, end)
            self.source.add(begin, end, f"{between} to {table[between]}", changed)

    def condition(self, cursor, children):
        if not children:
            return
        head = self.source.text(cursor.extent.start.offset, children[0].extent.start.offset)
        condition = children[0]
        if "constexpr" in head or condition.kind in (CursorKind.VAR_DECL, CursorKind.DECL_STMT):
            return
        begin, end = self.range(condition)
        self.source.add(begin, end, "negate", f"!({self.source.text(begin, end)})",
                        "({on} ? static_cast<bool>({changed}) : static_cast<bool>({original}))")  # fmt: skip

    def number(self, cursor, parent):
        text = self.text(cursor)
        begin, end = self.range(cursor)
        before = self.source.text(max(0, begin - 1), begin)
        if not re.fullmatch(r"(0[xX])?[0-9a-fA-F']+[uUlL]*", text) or before in "[<":
            return
        self.source.add(begin, end, "number", f"{text} + 1" if text.rstrip("uUlL") != "1" else f"{text} - 1")

    def arguments(self, cursor):
        arguments = list(cursor.get_arguments())
        if len(arguments) < 2 or cursor.spelling.startswith("operator"):
            return
        begin, end = self.range(cursor)
        first, second = arguments[0].extent, arguments[1].extent
        b1, e1, b2, e2 = first.start.offset, first.end.offset, second.start.offset, second.end.offset
        if not begin < b1 < e1 < b2 < e2 <= end or self.source.text(b1, e1) == self.source.text(b2, e2):
            return
        text = self.source.text
        if text(end - 1, end) != ")":
            return  # braces: a construction, which a conditional may not copy
        changed = text(begin, b1) + text(b2, e2) + text(e1, b2) + text(b1, e1) + text(e2, end)
        self.source.add(begin, end, "swap", changed)


def files_of(layer):
    folder = ROOT / LAYERS[layer][0]
    names = subprocess.check_output(["git", "-C", str(ROOT), "ls-files", str(folder)], text=True).split()
    return [name for name in names if name.endswith((".h", ".cpp")) and not LEFT_OUT.search(name)]


def find_mutants(layer):
    index = clang.cindex.Index.create()
    sources = []
    for name in files_of(layer):
        source = Source(name)
        unit = index.parse(str(ROOT / name), args=["-x", "c++", "-std=c++20", f"-I{ROOT}"])
        Finder(source).visit(unit.cursor, False)
        source.name_mutants()
        sources.append(source)
    number = 0
    for source in sources:
        for mutant in source.mutants:
            mutant.number = number
            number += 1
    return sources


class Layer:
    """A layer's mutated build, and the runs of its tests."""

    def __init__(self, name):
        self.name = name
        self.folder = BUILD / name
        self.tree = self.folder / "tree"
        self.build = self.folder / "build"
        self.disabled_file = self.folder / "not-compiled.json"
        self.results_file = self.folder / "results.jsonl"
        self.sources = find_mutants(name)
        self.disabled = set(json.loads(self.disabled_file.read_text())) if self.disabled_file.exists() else set()
        self.results = {}

    def mutants(self):
        return [m for s in self.sources for m in s.mutants if m.key not in self.disabled]

    def write_tree(self):
        """Copies what git tracks, with this layer's files mutated; files that stay the same keep their time."""
        names = subprocess.check_output(["git", "-C", str(ROOT), "ls-files"], text=True).splitlines()
        mutated = {source.name: source.mutated(self.disabled) for source in self.sources}
        for name in names:
            target = self.tree / name
            if not (ROOT / name).is_file():
                continue
            data = mutated.get(name) or (ROOT / name).read_bytes()
            if target.exists() and target.read_bytes() == data:
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(data)
            shutil.copymode(ROOT / name, target)

    def configure(self):
        if (self.build / "build.ninja").exists():
            return
        flags = f"-w -O1 -ferror-limit=0 -include {HERE / 'switch.h'}"
        command = ["cmake", "-S", str(self.tree), "-B", str(self.build), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                   "-DCMAKE_CXX_COMPILER=clang++", f"-DCMAKE_CXX_FLAGS={flags}", "-DZSPACE_BUILD_EXAMPLES=OFF",
                   "-DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON"]  # fmt: skip
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)

    def compile(self):
        """Builds, taking out what does not compile, until all that is left does."""
        for attempt in range(40):
            self.write_tree()
            self.configure()
            targets = LAYERS[self.name][1]
            run = subprocess.run(["cmake", "--build", str(self.build), "--target", *targets, "--", "-k", "0"],
                                 capture_output=True, text=True)  # fmt: skip
            if run.returncode == 0:
                self.disabled_file.write_text(json.dumps(sorted(self.disabled)))
                return
            bad = self.blamed(run.stdout + run.stderr)
            if not bad:
                sys.exit(f"{self.name} does not build, and no mutant is to blame:\n{run.stdout[-3000:]}")
            self.disabled |= bad
            print(f"  {self.name}: taking out {len(bad)} mutants that do not compile", flush=True)
        sys.exit(f"{self.name} still does not build")

    def blamed(self, output):
        bad = set()
        for source in self.sources:
            path = "tree/" + source.name  # the compiler is given a relative path
            # A template's errors name the place where it is used; the notes lead back to it.
            pattern = re.escape(path) + r":(\d+):(\d+): (?:fatal )?error|" + re.escape(path) + r":(\d+):(\d+): note"
            data = (self.tree / source.name).read_bytes()
            lines = [0]
            for match in re.finditer(b"\n", data):
                lines.append(match.end())
            errors, notes = set(), set()
            for a, b, c, d in re.findall(pattern, output):
                (errors if a else notes).add((int(a or c), int(b or d)))
            for line, column in errors:
                bad |= self.around(source, lines[line - 1] + column - 1)
            if not errors and not bad:
                for line, column in notes:
                    bad |= self.around(source, lines[line - 1] + column - 1)
        return bad

    @staticmethod
    def around(source, offset):
        spans = [span for span in source.spans if span[0] <= offset < span[1]]
        return {min(spans, key=lambda span: span[1] - span[0])[2].key} if spans else set()

    def program(self, target):
        return next(self.build.glob(f"tests/*/{target}"))

    def run(self, program, tests, environment, limit):
        """True when every test passes in time."""
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
            return False
        finally:
            try:
                os.killpg(process.pid, 9)
            except ProcessLookupError:
                pass
            process.wait()
            flags.unlink(missing_ok=True)
            shutil.rmtree(work, ignore_errors=True)

    def reach(self):
        """For each mutant the tests that reach it, and how long each test takes."""
        count = max((m.number for s in self.sources for m in s.mutants), default=0) + 1
        reached = {}
        seconds = {}
        for target in LAYERS[self.name][1]:
            program = self.program(target)
            listing = subprocess.check_output([str(program), "--gtest_list_tests"], text=True, cwd=program.parent)
            for test in test_names(listing):
                trace = self.folder / "trace"
                trace.write_bytes(bytes(count))
                begin = time.monotonic()
                passed = self.run(program, [test], {"MUTANT": "-1", "MUTANT_TRACE": str(trace)}, 60)
                if not passed:
                    print(f"  {self.name}: {test} fails without a mutant and is left out", flush=True)
                    continue
                seconds[target, test] = time.monotonic() - begin
                for number, byte in enumerate(trace.read_bytes()):
                    if byte:
                        reached.setdefault(number, []).append((target, test))
        return reached, seconds

    def survives(self, mutant, reached, seconds):
        by_target = {}
        for target, test in reached.get(mutant.number, []):
            by_target.setdefault(target, []).append(test)
        for target, tests in by_target.items():
            usual = sum(seconds[target, test] for test in tests)
            program = self.program(target)
            if not self.run(program, tests, {"MUTANT": str(mutant.number)}, 10 + 5 * usual):
                return False
        return True

    def read_results(self):
        if self.results_file.exists():
            for line in self.results_file.read_text().splitlines():
                row = json.loads(line)
                self.results[row["mutant"]] = row["survived"]

    def note(self, mutant, survived):
        self.results[mutant.key] = survived
        with self.results_file.open("a") as file:
            file.write(json.dumps({"mutant": mutant.key, "survived": survived}) + "\n")


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


def state_of(layer):
    """Changes with the sources and tests that a result depends on."""
    digest = hashlib.sha256()
    for name in subprocess.check_output(["git", "-C", str(ROOT), "ls-files", "ZSpace", "app", "tests"], text=True).split():
        if (ROOT / name).is_file():
            digest.update(name.encode() + (ROOT / name).read_bytes())
    return digest.hexdigest()


def explained():
    """The survivors that are known, each with its reason: `mutant => reason`."""
    known = {}
    for line in EXPLANATIONS.read_text().splitlines():
        if line and not line.startswith("#") and " => " in line:
            key, reason = line.split(" => ", 1)
            known[key.strip()] = reason.strip()
    return known


def run_layer(name, options, chosen):
    layer = Layer(name)
    layer.folder.mkdir(parents=True, exist_ok=True)
    stamp = layer.folder / "state"
    if options.fresh or not stamp.exists() or stamp.read_text() != state_of(name):
        if not options.survivors:
            layer.results_file.unlink(missing_ok=True)
        layer.disabled_file.unlink(missing_ok=True)
        layer.disabled = set()
    layer.read_results()
    before = dict(layer.results)
    layer.compile()
    stamp.write_text(state_of(name))
    mutants = [m for m in layer.mutants() if chosen is None or (name, m.key) in chosen]
    if options.survivors:
        mutants = [m for m in mutants if before.get(m.key)]
        todo = mutants
    else:
        todo = [m for m in mutants if m.key not in layer.results]
    print(f"{name}: {len(mutants)} mutants, {len(todo)} to run, {len(layer.disabled)} did not compile", flush=True)
    if todo:
        reached, seconds = layer.reach()
        done = 0
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            runs = {pool.submit(layer.survives, mutant, reached, seconds): mutant for mutant in todo}
            for run in concurrent.futures.as_completed(runs):
                layer.note(runs[run], run.result())
                done += 1
                if done % 100 == 0:
                    print(f"  {name}: {done} of {len(todo)}", flush=True)
    survivors = [m for m in mutants if layer.results[m.key]]
    return len(mutants), survivors


def sample(layers, count, seed):
    every = [(name, m.key) for name in layers for s in find_mutants(name) for m in s.mutants]
    return set(random.Random(seed).sample(every, min(count, len(every))))


def main():
    parser = argparse.ArgumentParser(prog="mutate.sh")
    parser.add_argument("layer", nargs="*", choices=[[], *LAYERS], default=[])
    parser.add_argument("--sample", type=int, metavar="N", help="run N mutants, chosen at random")
    parser.add_argument("--seed", type=int, default=None, help="the sample's seed")
    parser.add_argument("--survivors", action="store_true", help="run the survivors of the last run again")
    parser.add_argument("--fresh", action="store_true", help="forget earlier results")
    options = parser.parse_args()
    layers = options.layer or list(LAYERS)
    chosen = None
    if options.sample:
        seed = options.seed if options.seed is not None else int(time.time())
        chosen = sample(layers, options.sample, seed)
        layers = [name for name in layers if any(name == layer for layer, _ in chosen)]
        print(f"A sample of {len(chosen)} mutants, seed {seed}")
    known = explained()
    total, survived, unexplained = 0, 0, []
    for name in layers:
        count, survivors = run_layer(name, options, chosen)
        killed = count - len(survivors)
        print(f"{name}: {killed} of {count} killed ({100 * killed / max(count, 1):.1f} %)", flush=True)
        for mutant in survivors:
            reason = known.get(mutant.key)
            print(f"  survived: line {mutant.line}: {mutant.key}" + (f" => {reason}" if reason else ""))
            if not reason:
                unexplained.append(mutant)
        total += count
        survived += len(survivors)
    if options.survivors:
        print(f"{total - survived} of {total} earlier survivors are killed now")
        return 0
    rate = (total - survived) / max(total, 1)
    print(f"All: {total - survived} of {total} killed ({100 * rate:.1f} %), {len(unexplained)} survivors unexplained")
    return 0 if chosen or (rate >= WANTED and not unexplained) else 1


if __name__ == "__main__":
    sys.exit(main())
