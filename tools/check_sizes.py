#!/usr/bin/env python3
"""Names every file of src/ that has more than 500 lines, and every function that has more than 60.

A function is what stands, as clang-format lays it out, between a line that ends in "{" behind a
parameter list and the "}" at the same indentation.
"""
import pathlib
import re
import sys

LONGEST_FILE = 500
LONGEST_FUNCTION = 60

NO_FUNCTION = re.compile(r"^\s*(namespace|class|struct|enum|union|extern|if|for|while|switch|else|do|try)\b")
FINISHED = re.compile(r"[;{}:>]$|^\s*//|^#")
OPENS = re.compile(r"^( *)[^ /#}].*\{$")


def functions(lines):
    """(first line, number of lines, text of the first line) of each function."""
    n = 0
    while n < len(lines):
        opening = OPENS.match(lines[n])
        if not opening or NO_FUNCTION.match(lines[n]):
            n += 1
            continue
        # The head of a function may take several lines, and begins behind a finished one.
        head = n
        while head > 0 and lines[head - 1] and not FINISHED.search(lines[head - 1]):
            head -= 1
        is_function = ")" in lines[n] and "(" in "".join(lines[head : n + 1])
        if not is_function or NO_FUNCTION.match(lines[head]) or lines[n].endswith("= {"):
            n += 1
            continue
        closing = re.match(" *", lines[head]).group(0) + "}"
        end = n + 1
        while end < len(lines) and not lines[end].startswith(closing):
            end += 1
        yield head + 1, end - head + 1, lines[head].strip()
        n = end + 1


def main():
    src = pathlib.Path(__file__).resolve().parent.parent / "src"
    problems, files, count = [], 0, 0
    for file in sorted(src.rglob("*")):
        if file.suffix not in (".h", ".cpp"):
            continue
        files += 1
        name = file.relative_to(src.parent)
        lines = file.read_text(encoding="utf-8").splitlines()
        if len(lines) > LONGEST_FILE:
            problems.append(f"{name}:1: {len(lines)} lines")
        for line, length, head in functions(lines):
            count += 1
            if length > LONGEST_FUNCTION:
                problems.append(f"{name}:{line}: {length} lines: {head}")
    for problem in problems:
        print(problem)
    print(f"{count} functions in {files} files looked at")
    return 1 if problems or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
