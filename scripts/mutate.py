#!/usr/bin/env python3
"""Tells how many small faults the tests notice: puts one at a time into a copy of the sources,
builds it, runs the tests, and lists the faults that went through.

    scripts/mutate.py                          80 faults anywhere in src
    scripts/mutate.py --seed 3 -n 40           40 others
    scripts/mutate.py src/sensors/Gyro*.cpp    only in these files or folders
    scripts/mutate.py --texts                  one letter of a text that a user can see
    scripts/mutate.py --tests '*Gyro*'         judged by these tests alone (a GoogleTest filter)
    scripts/mutate.py --list                   every candidate, nothing is built

The same seed, files and sources give the same faults. A survivor is either equivalent (no input
tells it from the original) or a row that a test lacks: read each one. Log lines are left alone,
and so are the bodies for other systems. The exit status is 1 if fewer than --least percent are
noticed (default 0: only told).
"""
import argparse
import os
import random
import re
import shutil
import subprocess
import sys
from collections import namedtuple
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
OTHER_SYSTEMS = "Windows"
TEST_TIMEOUT_S = 180  # a test run that takes longer hangs, which counts as noticed

Fault = namedtuple("Fault", "file line before after")


def next_number(match):
    text = match.group(0)
    return repr(float(text) * 1.01 + 0.001) if "." in text else str(int(text) + 1)


# What is replaced by what, in code outside of texts.
SWAPS = [
    (r"(?<= )<(?= )", "<="), (r"(?<= )<=(?= )", "<"), (r"(?<= )>(?= )", ">="),
    (r"(?<= )>=(?= )", ">"), (r"==", "!="), (r"!=", "=="), (r"&&", "||"), (r"\|\|", "&&"),
    (r"(?<= )\+(?= )", "-"), (r"(?<= )-(?= )", "+"), (r"(?<= )\*(?= )", "/"),
    (r"(?<= )/(?= )", "*"), (r"\+=", "-="), (r"-=", "+="), (r"\+\+", "--"), (r"--", "++"),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"), (r"\bbreak;", ";"), (r"\bcontinue;", ";"),
    (r"\bstd::min\b", "std::max"), (r"\bstd::max\b", "std::min"),
    (r"(?<![\w.'])\d+(\.\d+)?(?![\w.'])", next_number),
    (r"(?<=if )\((?!const|auto)(?=.*\) \{$)", "(!("),  # closed by close_negation
    (r"^\s+(?!return\b|throw\b|else\b)[\w.>:-]+\([^;]*\);$", ";"),  # a call that isn't made
]
UNTOUCHED = re.compile(
    r"TAVOCAL_LOG|TAVOCAL_SCOPE|^\s*//|^\s*#|^\s*$|static_assert|^using|^namespace|\btemplate\b"
    r"|^\s*\"|\bnoexcept\b|= default|= delete|\boperator\b")
TEXT_LITERAL = re.compile(r'"((?:\\.|[^"\\])*)"')


def without_texts(line):
    """The line with its literals and its comment blanked out, every character in its place."""
    line = TEXT_LITERAL.sub(lambda m: '"' + "\0" * len(m.group(1)) + '"', line)
    return re.sub(r"//.*", lambda m: "\0" * len(m.group(0)), line)


def close_negation(line):
    return re.sub(r"\) \{$", ")) {", line) if "if (!(" in line else line


def code_faults(file, lines):
    for number, line in enumerate(lines):
        if UNTOUCHED.search(line):
            continue
        code = without_texts(line)
        declares = re.search(r"\b(const|std::\w+)\b.*[&*<>]\s*\w", code)
        for pattern, new in SWAPS:
            if declares and new in ("<=", "<", ">=", ">", "/", "*"):
                continue
            for match in re.finditer(pattern, code):
                text = new(match) if callable(new) else new
                after = line[: match.start()] + text + line[match.end():]
                if new == "(!(":
                    after = close_negation(after)
                yield Fault(file, number, line, after)


def text_faults(file, lines):
    """One letter in the middle of each text of five letters and more that isn't a log line's."""
    for number, line in enumerate(lines):
        near = " ".join(lines[max(0, number - 2): number + 1])
        if re.search(r"TAVOCAL_LOG|TAVOCAL_SCOPE", near) or re.match(r"\s*(//|#)", line):
            continue
        for match in TEXT_LITERAL.finditer(line):
            text = match.group(1)
            letters = [i for i, c in enumerate(text)
                       if c.isalpha() and (i == 0 or text[i - 1] not in "\\%")]
            if len(letters) < 5 or "::" in text:  # a name for the log
                continue
            i = letters[len(letters) // 2]
            wrong = text[:i] + ("k" if text[i] == "q" else "q") + text[i + 1:]
            yield Fault(file, number, line, line[: match.start(1)] + wrong + line[match.end(1):])


def chosen_sources(root, paths):
    for path in paths:
        path = root / path
        if not path.exists():
            sys.exit(f"mutate: there is no {path.relative_to(root)}")
        found = sorted(path.rglob("*")) if path.is_dir() else [path]
        yield from (f for f in found if f.suffix in (".cpp", ".h") and OTHER_SYSTEMS not in f.name)


def all_faults(root, paths, texts):
    faults = []
    for file in chosen_sources(root, paths):
        lines = file.read_text(encoding="utf-8").split("\n")
        faults.extend((text_faults if texts else code_faults)(file.relative_to(root), lines))
    return faults


class Workshop:
    """A copy of the sources with a build of its own."""

    def __init__(self, folder, jobs):
        self.folder = Path(folder).resolve()
        self.root = self.folder / "sources"
        self.build = self.folder / "build"
        self.jobs = str(jobs)

    def prepare(self):
        subprocess.run([ROOT / "scripts" / "setup.sh"], check=True)
        shutil.rmtree(self.root, ignore_errors=True)
        listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=ROOT,
                                stdout=subprocess.PIPE, check=True).stdout.decode().split("\0")
        for name in filter(lambda n: n and (ROOT / n).is_file(), listed):
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / name, self.root / name)  # with a new time: objects are made anew
        linker = "-fuse-ld=lld" if shutil.which("ld.lld") else ""
        # No debugging symbols: most of the time would go into linking them.
        self.must("configure", ["cmake", "-S", self.root, "-B", self.build, "-G", "Ninja",
                                "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O0 -w",
                                f"-DCMAKE_EXE_LINKER_FLAGS={linker}"])
        self.must("build", self.build_command())

    def build_command(self):
        return ["cmake", "--build", self.build, "-j", self.jobs, "--target", "tavocal-tests"]

    def must(self, what, command):
        status, output = self.run(command)
        if status != 0:
            sys.exit(f"mutate: the unchanged sources don't {what}:\n{output[-2000:]}")

    @staticmethod
    def run(command, timeout=None):
        try:
            done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                  stdin=subprocess.DEVNULL, timeout=timeout)
        except subprocess.TimeoutExpired:
            return 124, ""
        return done.returncode, done.stdout.decode("utf-8", "replace")

    def test(self, tests):
        command = [self.build / "tests" / "tavocal-tests", "--gtest_brief=1",
                   "--gtest_fail_fast", f"--gtest_filter={tests}"]
        return self.run(command, TEST_TIMEOUT_S)

    def verdict(self, fault, tests):
        file = self.root / fault.file
        original = file.read_text(encoding="utf-8")
        lines = original.split("\n")
        lines[fault.line] = fault.after
        file.write_text("\n".join(lines), encoding="utf-8")
        try:
            if self.run(self.build_command())[0] != 0:
                return "does not build"
            return "noticed" if self.test(tests)[0] != 0 else "SURVIVED"
        finally:
            file.write_text(original, encoding="utf-8")


def show(verdict, fault):
    print(f"{verdict}: {fault.file}:{fault.line + 1}\n    {fault.before.strip()}\n"
          f"    {fault.after.strip()}", flush=True)


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("paths", nargs="*", default=["src"])
    parser.add_argument("-n", type=int, default=80, help="number of faults that build")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--texts", action="store_true")
    parser.add_argument("--tests", default="*")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--least", type=float, default=0.0)
    parser.add_argument("--work", default=str(ROOT / "build" / "mutate"), help="folder to work in")
    parser.add_argument("-j", type=int, default=os.cpu_count(), help="compilers at once")
    return parser.parse_args()


def main():
    options = parse_arguments()
    faults = all_faults(ROOT, options.paths, options.texts)
    if options.list:
        for fault in faults:
            show("candidate", fault)
        return 0
    workshop = Workshop(options.work, options.j)
    workshop.prepare()
    status, output = workshop.test(options.tests)
    if status != 0:
        sys.exit(f"mutate: the tests fail on the unchanged sources:\n{output[-2000:]}")
    random.Random(options.seed).shuffle(faults)
    noticed, survivors, broken = 0, [], 0
    for fault in faults:
        if noticed + len(survivors) == options.n:
            break
        verdict = workshop.verdict(fault, options.tests)
        if verdict == "does not build":
            broken += 1
            continue
        show(verdict, fault)
        noticed += verdict == "noticed"
        if verdict == "SURVIVED":
            survivors.append(fault)
    judged = noticed + len(survivors)
    share = 100.0 * noticed / max(judged, 1)
    print(f"\n{noticed} of {judged} faults noticed ({share:.0f} %), {broken} did not build, "
          f"seed {options.seed}")
    for fault in survivors:
        show("survivor", fault)
    return 1 if share < options.least else 0


if __name__ == "__main__":
    sys.exit(main())
