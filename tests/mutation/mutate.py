#!/usr/bin/env python3
"""Breaks the library one line at a time and sees whether the tests notice.

Picks random lines of the library's sources, changes one operator, constant or order of calls on each, rebuilds, and
runs the test programs. A change that no test notices is a survivor: either a statement without a test, or a change
that cannot be observed.

  tests/mutation/mutate.py --seed 1 --count 60 --report survivors.md

Works on a copy of the tree (--work, made with git worktree), so that the tree at hand stays as it is. A change that
does not compile is replaced by another. Exit status 0 when at most --survivors changes went unnoticed.
"""

import argparse
import os
import pathlib
import random
import re
import subprocess
import sys
import time

FOLDERS = ["mesh", "group", "model", "highlight", "pick"]
TESTS = ["test_mesh", "test_group", "test_model", "test_labels", "test_pick", "test_pick_interface", "test_mesh_picker",
         "test_highlight"]

# (pattern, replacements): one occurrence on a line is replaced by one of them.
OPERATORS = [
    (r"==", ["!="]),
    (r"!=", ["=="]),
    (r"<=", ["<", ">"]),
    (r">=", [">", "<"]),
    (r"(?<=[\w)\]]) < (?=[\w(])", [" <= ", " > "]),
    (r"(?<=[\w)\]]) > (?=[\w(])", [" >= ", " < "]),
    (r"&&", ["||"]),
    (r"\|\|", ["&&"]),
    (r"(?<=[\w)\]]) \+ (?=[\w(])", [" - "]),
    (r"(?<=[\w)\]]) - (?=[\w(])", [" + "]),
    (r"(?<=[\w)\]]) \* (?=[\w(])", [" + "]),
    (r"(?<=[\w)\]]) / (?=[\w(])", [" * "]),
    (r"\+=", ["-="]),
    (r"(?<=\()!(?=\w)", [""]),
    (r"\btrue\b", ["false"]),
    (r"\bfalse\b", ["true"]),
    (r"\bcontinue;", ["break;"]),
]
CONSTANT = re.compile(r"(?<![\w.\"])(\d+)(?![\w.\"])")
# `double point[3]`: an array that is declared larger is one nobody can tell.
EXTENT = re.compile(r"(?:[\w>&*] +\w+|^\s*(?:const |constexpr )?[\w:<>]+ +\w[^=()]*, \w+)\[$")
CALL = re.compile(r"^\s+[\w:>().\-\[\]*]+\(.*\);\s*$")


def mutations_of(lines, number):
    """All changes of line `number` (from 0): (description, {line number: new text})."""
    line = lines[number]
    code = line.split("//")[0]
    stripped = code.strip()
    if not stripped or stripped.startswith(("#", "*", "/*", "using ", "template", "namespace", "static_assert", "class ", "struct ")):
        return []
    found = []
    for pattern, replacements in OPERATORS:
        for match in re.finditer(pattern, code):
            if code[: match.start()].count('"') % 2:
                continue
            for text in replacements:
                new = line[: match.start()] + text + line[match.end() :]
                found.append((f"`{match.group().strip()}` to `{text.strip()}`", {number: new}))
    for match in CONSTANT.finditer(code):
        before = code[: match.start()]
        if before.count('"') % 2 or (EXTENT.search(before) and not re.search(r"\breturn \w+\[$", before)):
            continue
        value = int(match.group(1))
        new = line[: match.start()] + str(value + 1) + line[match.end() :]
        found.append((f"`{value}` to `{value + 1}`", {number: new}))
    if CALL.match(line) and not stripped.startswith(("return", "else", "for", "if", "while")):
        indent = len(line) - len(line.lstrip())
        found.append(("call left out", {number: " " * indent + ";\n"}))
        if number + 1 < len(lines) and CALL.match(lines[number + 1]):
            following = lines[number + 1]
            if len(following) - len(following.lstrip()) == indent:
                found.append(("calls swapped", {number: following, number + 1: line}))
    return found


def run(command, cwd, timeout):
    """Exit status, or None when it took too long; the whole process group goes with it."""
    process = subprocess.Popen(command, cwd=cwd, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
    try:
        return process.wait(timeout)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, 9)
        process.wait()
        return None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=60)
    parser.add_argument("--survivors", type=int, default=10, help="how many are tolerated")
    parser.add_argument("--folders", nargs="*", default=FOLDERS)
    parser.add_argument("--tests", nargs="*", default=TESTS)
    parser.add_argument("--work", default="build/mutation", help="folder of the copy")
    parser.add_argument("--report", help="file for the list of survivors (Markdown)")
    arguments = parser.parse_args()

    root = pathlib.Path(subprocess.check_output(["git", "rev-parse", "--show-toplevel"], text=True).strip())
    work = root / arguments.work
    if not work.exists():
        subprocess.check_call(["git", "worktree", "add", "-q", "--detach", str(work), "HEAD"], cwd=root)
    else:
        subprocess.check_call(["git", "checkout", "-q", "--force", "--detach", subprocess.check_output(["git", "rev-parse", "HEAD"], cwd=root, text=True).strip()], cwd=work)
    # Reading past a list is noticed at once, as under the sanitizers, which would take too long here.
    subprocess.check_call(["cmake", "--preset", "release", "-DCMAKE_CXX_FLAGS=-D_GLIBCXX_ASSERTIONS"], cwd=work, stdout=subprocess.DEVNULL)
    build = ["cmake", "--build", "build/release", "--target", *arguments.tests]
    test = ["ctest", "--test-dir", "build/release", "-R", "^(" + "|".join(arguments.tests) + ")$", "--stop-on-failure"]
    subprocess.check_call(build, cwd=work, stdout=subprocess.DEVNULL)
    begin = time.monotonic()
    if run(test, work, 1800) != 0:
        sys.exit("the tests fail before anything is changed")
    limit = 60 + 10 * (time.monotonic() - begin)

    sources = []
    for folder in arguments.folders:
        sources += sorted((work / folder).rglob("*.cpp"))
    candidates = []
    for source in sources:
        lines = source.read_text().splitlines(keepends=True)
        candidates += [(source, number) for number in range(len(lines)) if mutations_of(lines, number)]
    generator = random.Random(arguments.seed)
    generator.shuffle(candidates)

    noticed, survivors = 0, []
    for source, number in candidates:
        if noticed + len(survivors) == arguments.count:
            break
        original = source.read_text()
        lines = original.splitlines(keepends=True)
        description, changes = generator.choice(mutations_of(lines, number))
        for where, text in changes.items():
            lines[where] = text
        source.write_text("".join(lines))
        name = f"{source.relative_to(work)}:{number + 1}"
        try:
            if run(build, work, 900) != 0:
                continue  # does not compile: no test of the tests
            if run(test, work, limit) == 0:
                survivors.append((name, description, original.splitlines()[number].strip()))
                verdict = "SURVIVED"
            else:
                noticed += 1
                verdict = "noticed"
        finally:
            source.write_text(original)
        print(f"{verdict:9} {name}: {description}", flush=True)

    print(f"{noticed} noticed, {len(survivors)} survived (seed {arguments.seed})")
    if arguments.report:
        with open(arguments.report, "w") as report:
            for name, description, text in survivors:
                report.write(f"- {name}: {description} in `{text}`\n")
    sys.exit(0 if len(survivors) <= arguments.survivors else 1)


if __name__ == "__main__":
    main()
