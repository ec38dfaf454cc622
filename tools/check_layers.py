#!/usr/bin/env python3
"""Holds the includes of src/ to the ranks of the house (docs/architecture.md, "Layout and ranks").

A room may use rooms of a lower rank only. Every arrow that goes up, or to another room of the same
rank, is printed with its file and line, and the exit status is 1. So is a header of forms and
controls that an engine or a format reaches, on whatever way, and a page that names another page.
"""
import pathlib
import re
import sys

# A file belongs to the room with the longest name that its path begins with.
RANKS = {
    "base": 0,
    "platform/ui": 1,
    "platform/ui/headless": 1,
    "platform": 2,
    "platform/host": 2,
    "platform/host/disk": 2,
    "platform/windows": 2,
    "archive": 3,
    "platform/error_report": 3,
    "core/program": 4,
    "discovery/products": 5,
    "backup/format": 6,
    "logs/run": 6,
    "backup/run": 7,
    "restore/run": 7,
    "schedule/run": 7,
    "core/pages": 8,
    "discovery/pages": 9,
    "backup/pages": 9,
    "restore/pages": 9,
    "schedule/pages": 9,
    "logs/pages": 9,
    "core/main": 10,
    "play": 11,
    "app/desktop": 12,
    "app/console": 12,
}
# Arrows inside a rank: what implements an interface stands beside it.
BESIDE = {
    ("platform/ui/headless", "platform/ui"),
    ("platform/host", "platform"),
    ("platform/host/disk", "platform"),
    ("platform/host/disk", "platform/host"),
    ("platform/windows", "platform"),
}
# Only these name a binding.
BINDINGS = ("platform/host", "platform/host/disk", "platform/windows")
NAME_BINDINGS = ("play", "app/desktop", "app/console")
# Rooms that reach no form and no control.
WITHOUT_FORMS = ("backup/run", "restore/run", "schedule/run", "backup/format", "logs/run")

# Rooms whose pages know no other page: values go over the session, the way over the page table.
PAGES = ("discovery/pages", "backup/pages", "restore/pages", "schedule/pages", "logs/pages")
# The same holds for the forms of core/main, whose other files know every page.
MAIN = "core/main"
MAIN_WINDOW = "FrmWelcome"
# But for these, each with its reason.
NAMES_A_PAGE = {
    ("discovery/pages/selection_tree.cpp", "discovery/pages/FrmTwo.h"): "a part of FrmTwo",
    ("backup/pages/frmFinish.cpp", "backup/pages/FrmProcess.h"):
        "the run's own dialog: shown inside the run, gone with it, in no wizard's order",
}

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')


def room_of(path):
    """The room of a file below src/, or None for a file that is in none."""
    parts = path.split("/")[:-1]
    while parts:
        room = "/".join(parts)
        if room in RANKS:
            return room
        parts.pop()
    return None


def read_includes(src):
    """For each file its own includes, as (line number, path below src)."""
    includes = {}
    for file in sorted(src.rglob("*")):
        if file.suffix not in (".h", ".cpp"):
            continue
        lines = file.read_text(encoding="utf-8").splitlines()
        found = [(n, m.group(1)) for n, m in enumerate(map(INCLUDE.match, lines), 1) if m]
        includes[file.relative_to(src).as_posix()] = found
    return includes


def wrong_arrow(room, target):
    """Why a room may not use another one, or None."""
    if target == room or (room, target) in BESIDE:
        return None
    if target in BINDINGS and room not in NAME_BINDINGS:
        return f"{room} names the binding {target}"
    if RANKS[target] < RANKS[room]:
        return None
    way = "up" if RANKS[target] > RANKS[room] else "across"
    return f"{room} ({RANKS[room]}) reaches {way} to {target} ({RANKS[target]})"


def named_page(file, included):
    """Why a file of a room of pages may not include a header, or None."""
    own, page = pathlib.PurePosixPath(file).stem, pathlib.PurePosixPath(included).stem
    if room_of(file) == MAIN:
        holds = own.lower().startswith("frm") and own != MAIN_WINDOW
    else:
        holds = room_of(file) in PAGES and (file, included) not in NAMES_A_PAGE
    if not holds or not page.lower().startswith("frm") or page == own:
        return None
    return f"names the page {page}"


def form_header_on_the_way(file, includes):
    """The chain of includes from a file to a header of forms, or None."""
    waiting, seen = [[file]], {file}
    while waiting:
        chain = waiting.pop(0)
        for _, included in includes.get(chain[-1], []):
            if included in seen or included not in includes:
                continue
            if included.startswith("platform/ui/"):
                return chain + [included]
            seen.add(included)
            waiting.append(chain + [included])
    return None


def main():
    src = pathlib.Path(__file__).resolve().parent.parent / "src"
    includes = read_includes(src)
    problems = []
    for file, found in includes.items():
        room = room_of(file)
        if room is None:
            problems.append(f"src/{file}:1: is in no room")
            continue
        for line, included in found:
            target = room_of(included)
            if included not in includes:
                continue  # made by the build
            why = wrong_arrow(room, target) or named_page(file, included)
            if why:
                problems.append(f"src/{file}:{line}: {why} ({included})")
        if room in WITHOUT_FORMS:
            chain = form_header_on_the_way(file, includes)
            if chain:
                problems.append(f"src/{file}:1: an engine reaches forms: {' -> '.join(chain)}")
    for problem in problems:
        print(problem)
    if problems:
        print(f"{len(problems)} wrong includes in {len(includes)} files")
    return 1 if problems or not includes else 0


if __name__ == "__main__":
    sys.exit(main())
