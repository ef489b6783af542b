#!/usr/bin/env python3
"""Changes src/ in one place after the other and tells which of the changes the tests see.

    tests/mutation/mutate.py [--count 60] [--seed 1] [--only REGEX]

The mutants are drawn evenly over src/ and over four kinds: an operator, a constant, a condition, a
removed call. Each is built in a copy of the project below build/mutation, in the preset dev. Its
tests are linked and run one after the other, the last to have seen a mutant first, up to the first
that fails. One that does not compile is replaced by another one.
Survivors are printed at the end: each wants a test, or a word of why nobody can see it.
"""
import argparse
import difflib
import json
import os
import random
import re
import shutil
import signal
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
COPY = ROOT / "build" / "mutation"
PRESET = "dev"
TOO_LONG = 900  # seconds for one command; an endless loop counts as seen
SLOW = ("events", "kill", "corpus", "faults", "inifiles")

OPERATORS = {" == ": " != ", " != ": " == ", " < ": " <= ", " <= ": " < ", " > ": " >= ",
             " >= ": " > ", " && ": " || ", " || ": " && ", " + ": " - ", " - ": " + ",
             " += ": " -= ", "++": "--"}


def masked(line):
    """The line with its texts and comments blanked, so that places in it stay the same."""
    line = re.sub(r'"(\\.|[^"\\])*"', lambda text: "\"" + "_" * (len(text[0]) - 2) + "\"", line)
    line = re.sub(r"'(\\.|[^'\\])+'", lambda text: "'" + "_" * (len(text[0]) - 2) + "'", line)
    return re.sub(r"//.*", lambda text: " " * len(text[0]), line)


def mutations(line):
    """Each possible mutation of a line: its kind and the new line."""
    code = masked(line)
    if not code.strip() or code.lstrip().startswith(("#", "case ", "Q_")) or "qDebug" in code:
        return
    for old, new in OPERATORS.items():
        for found in re.finditer(re.escape(old), code):
            yield "operator", line[:found.start()] + new + line[found.end():]
    for found in re.finditer(r"(?<![\w.])\d+(?![\w.])", code):
        yield "constant", line[:found.start()] + str(int(found[0]) + 1) + line[found.end():]
    for old, new in (("true", "false"), ("false", "true")):
        for found in re.finditer(rf"\b{old}\b", code):
            yield "constant", line[:found.start()] + new + line[found.end():]
    if found := re.match(r"\s*(?:\} else )?(?:if|while) \((.*)\)( \{)?\s*$", code):
        start, end = found.span(1)
        yield "condition", line[:start] + "!(" + line[start:end] + ")" + line[end:]
    if re.match(r"\s+(\*?[\w.]+(->|::))*\w+\(.*\);\s*$", code) and "return" not in code:
        yield "removed call", re.match(r"\s*", line)[0] + ";\n"


def candidates(only):
    """The places of the files that match, with what may stand there, by kind."""
    by_kind = {}
    for path in sorted((ROOT / "src").glob("*.[ch]*")):
        for number, line in enumerate(path.read_text().splitlines(keepends=True)):
            if not re.search(only, f"{path.name}: {line}"):
                continue
            for kind, mutant in mutations(line):
                by_kind.setdefault(kind, []).append((path.relative_to(ROOT), number, mutant))
    return by_kind


def run(command):
    """What the command prints in the copy, and whether it succeeds; None if it takes too long."""
    process = subprocess.Popen(command, cwd=COPY, stdout=subprocess.PIPE, text=True,
                               stderr=subprocess.STDOUT, start_new_session=True)
    try:
        return process.communicate(timeout=TOO_LONG)[0], process.returncode == 0
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()
        return "", None


def tests():
    """The names of the tests and what is built for each, the slowest ones last."""
    described = json.loads(run(["ctest", "--preset", PRESET, "--show-only=json-v1"])[0])
    targets = [(test["name"], Path(test["command"][0]).name) for test in described["tests"]]
    return sorted(((name, target if target.startswith("tst_") else "varlune")
                   for name, target in targets), key=lambda test: test[0] in SLOW)


def verdict(path, number, mutant, order):
    """The test that sees the mutant, None if none does, and the diff; no diff if it cannot be built.
    Moves that test to the front of the order."""
    original = (ROOT / path).read_text()
    lines = original.splitlines(keepends=True)
    changed = lines[:number] + [mutant] + lines[number + 1:]
    (COPY / path).write_text("".join(changed))
    diff = "".join(difflib.unified_diff(lines, changed, str(path), str(path), n=1))
    try:
        if not run(["cmake", "--build", "--preset", PRESET, "--target", "varlune"])[1]:
            return None, None
        for test in order:
            name, target = test
            run(["cmake", "--build", "--preset", PRESET, "--target", target])
            if not run(["ctest", "--preset", PRESET, "--tests-regex", f"^{name}$"])[1]:
                if name not in SLOW:
                    order.remove(test)
                    order.insert(0, test)
                return name, diff
        return None, diff
    finally:
        (COPY / path).write_text(original)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--count", type=int, default=60)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", default="", help="of file name and line")
    arguments = parser.parse_args()

    files = subprocess.check_output(["git", "ls-files", "-z"], cwd=ROOT, text=True).split("\0")[:-1]
    for name in files:
        (COPY / name).parent.mkdir(parents=True, exist_ok=True)
        if not (COPY / name).exists() or (COPY / name).read_bytes() != (ROOT / name).read_bytes():
            shutil.copy(ROOT / name, COPY / name)
    for command in (["cmake", "--preset", PRESET], ["cmake", "--build", "--preset", PRESET]):
        output, succeeded = run(command)
        if not succeeded:
            raise SystemExit(output or "the project itself takes too long to build")

    draw = random.Random(arguments.seed)
    waiting = {kind: draw.sample(found, len(found))
               for kind, found in candidates(arguments.only).items()}
    order, survivors, drawn = tests(), [], 0
    while drawn < arguments.count and any(waiting.values()):
        for kind, found in waiting.items():
            seen, diff = None, None
            while found and drawn < arguments.count and diff is None:
                seen, diff = verdict(*found.pop(), order)
            if diff is None:
                continue
            drawn += 1
            print(f"{drawn}. {kind}: {'killed by ' + seen if seen else 'SURVIVED'}\n{diff}",
                  flush=True)
            if not seen:
                survivors.append(diff)
    print(f"{drawn - len(survivors)} of {drawn} killed")
    print("".join(survivors), end="")


main()
