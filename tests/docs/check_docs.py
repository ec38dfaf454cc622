#!/usr/bin/env python3
"""Keeps the documentation honest. Each line "ok: ..." or "FAILED: ..." is one test; the last line
counts them.

  check_docs.py --console FILE     the pages, the help's sources and the console edition
  check_docs.py --help-file FILE   the compiled help file, read by an independent tool
"""
import html
import html.parser
import os
import re
import subprocess
import sys
import tempfile
import urllib.parse

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
HELP = os.path.join(ROOT, "resources", "help")
PAGE_FOLDERS = ("core", "discovery", "backup", "restore", "schedule", "logs")


def read(*parts, encoding="utf-8"):
    with open(os.path.join(ROOT, *parts), encoding=encoding) as file:
        return file.read()


def page_sources():
    for folder in PAGE_FOLDERS:
        for place, _, names in sorted(os.walk(os.path.join(ROOT, "src", folder))):
            for name in sorted(names):
                if name.endswith((".cpp", ".h")):
                    path = os.path.relpath(os.path.join(place, name), ROOT)
                    yield path, read(path)


def help_pages():
    return {name: read("resources", "help", name, encoding="cp1252")
            for name in sorted(os.listdir(HELP)) if name.endswith(".htm")}


def plain(text):
    """What a person reads of a page, every run of blanks as one."""
    return re.sub(r"\s+", " ", html.unescape(re.sub(r"<[^>]*>", " ", text)).replace("\xa0", " "))


# --- The console edition --------------------------------------------------------------------------

def usage(console):
    return subprocess.run([console, "--help"], capture_output=True, text=True, check=True).stdout


def commands_of(text):
    """The commands of usage lines, without names and options: "machine new", "backup"."""
    found = set()
    for line in text.splitlines():
        line = re.sub(r"\\f.|\\&", "", line).replace("\\-", "-").strip()
        if not line.startswith("quorvale "):
            continue
        line = re.sub(r"^quorvale\s+(\[?--machine DIR\]?\s+|--disk DISK (\[[^\]]*\][. ]*)*)?", "", line)
        words = re.match(r"[a-z]+(?: (?:new|sample|users|from)\b)?", line)
        if words:
            found.add(words[0])
        group = re.match(r"(\w+) \[([^\]]*)\]", line)
        if group and "|" in group[2]:
            found |= {f"{group[1]} {part.split()[0]}" for part in group[2].split("|")}
    return found


def options_of(text):
    return set(re.findall(r"--[a-z][a-z-]*", re.sub(r"\\f.", "", text).replace("\\-", "-")))


def check_console(console):
    """The same commands and options in the help, on the console page and in the man page."""
    help_text = usage(console)
    page = read("docs", "console.md")
    manual = read("docs", "quorvale.1")
    synopsis = manual.split(".SH SYNOPSIS")[1].split(".SH")[0]
    problems = []
    known = commands_of(help_text)
    if len(known) < 8:
        problems.append(f"only these commands were found in the help: {sorted(known)}")
    shown = page.split("```")[1]
    for name, text in (("console.md", shown), ("quorvale.1", synopsis)):
        for command in sorted(commands_of(text) ^ known):
            problems.append(f"{name}: \"{command}\" is in only one of it and --help")
    # The page and the manual may tell no option that the program does not take.
    taken = options_of(help_text) | {"--help"}
    for name, text in (("console.md", page), ("quorvale.1", manual)):
        for option in sorted(options_of(text) - taken):
            problems.append(f"{name}: --help has no {option}")
        for option in sorted(taken - options_of(text) - {"--help"}):
            problems.append(f"{name} does not tell {option}")
    return problems


def check_commands_are_known(console):
    """Each command that --help names is one that the program knows."""
    problems = []
    for command in sorted(commands_of(usage(console))):
        said = subprocess.run([console] + command.split() + ["--no-such-option"],
                              capture_output=True, text=True)
        words = said.stdout + said.stderr
        if said.returncode != 2 or "There is no command" in words:
            problems.append(f"{command}: {words.strip()[:200]}")
    said = subprocess.run([console, "no-such-command"], capture_output=True, text=True)
    if "There is no command" not in said.stdout + said.stderr:
        problems.append("an unknown command is not told: this test would prove nothing")
    return problems


def check_manual_layout(_):
    manual = os.path.join(ROOT, "docs", "quorvale.1")
    done = subprocess.run(["groff", "-man", "-ww", "-Tutf8", manual], capture_output=True, text=True)
    return done.stderr.splitlines() + ([] if done.stdout else ["nothing was set"])


# --- Help -----------------------------------------------------------------------------------------

def asked_topics():
    topics = {}
    for name, text in page_sources():
        for topic in re.findall(r"\"([^\"\n]+\.htm)\"", text):
            topics.setdefault(topic, []).append(name)
    return topics


def check_topics(_):
    pages = help_pages()
    topics = asked_topics()
    problems = [f"{', '.join(where)}: there is no topic \"{topic}\""
                for topic, where in topics.items() if topic not in pages]
    problems += [f"no page asks for \"{page}\"" for page in pages if page not in topics]
    return problems


def anchors(text):
    return set(re.findall(r"<a name=\"([^\"]+)\"", text))


def check_help_links(_):
    pages = help_pages()
    problems = []
    targets = [(name, link) for name, text in pages.items()
               for link in re.findall(r"(?:href|src)=\"([^\"]+)\"", text)]
    for name in ("Quorvale.hhc", "Quorvale.hhk"):
        targets += [(name, link) for link in
                    re.findall(r'name="Local" value="([^"]+)"', read("resources", "help", name))]
    if len(targets) < 40:
        problems.append(f"only {len(targets)} links were found")
    for name, link in targets:
        file, _, anchor = urllib.parse.unquote(link).partition("#")
        file = file or name
        if not os.path.exists(os.path.join(HELP, file)):
            problems.append(f"{name}: {link}")
        elif anchor and anchor not in anchors(pages.get(file, "")):
            problems.append(f"{name}: {link} (no such place)")
    listed = read("resources", "help", "Quorvale.hhp").split("[FILES]")[1].split("\n")
    for page in pages:
        if page not in [line.strip() for line in listed]:
            problems.append(f"Quorvale.hhp does not list {page}")
    return problems


class Nesting(html.parser.HTMLParser):
    """Notes elements that are not closed, or closed in another order."""

    ALONE = {"br", "meta", "link", "img", "hr"}

    def __init__(self):
        super().__init__()
        self.open, self.problems = [], []

    def handle_starttag(self, tag, attrs):
        if tag not in self.ALONE:
            self.open.append(tag)

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.problems.append(f"line {self.getpos()[0]}: </{tag}>")


def check_help_pages(_):
    problems = []
    for name, text in help_pages().items():
        nesting = Nesting()
        nesting.feed(text)
        problems += [f"{name}: {problem}" for problem in nesting.problems]
        problems += [f"{name}: <{tag}> stays open" for tag in nesting.open]
        title = re.search("<title>(.*?)</title>", text)
        heading = re.search("<h1>(.*?)</h1>", text)
        if not title or not heading or title[1] != heading[1]:
            problems.append(f"{name}: title and heading differ")
    return problems


def string_literals(code):
    """The text of the string literals, those that stand beside each other joined."""
    joined = re.sub(r'"\s+"', "", code)
    return [bytes(text, "utf-8").decode("unicode_escape")
            for text in re.findall(r'"((?:[^"\\]|\\.)*)"', joined)]


def call_arguments(text, start):
    depth, place, quoted = 1, start, False
    while depth and place < len(text):
        c = text[place]
        if quoted:
            if c == "\\":
                place += 1
            elif c == '"':
                quoted = False
        elif c == '"':
            quoted = True
        elif c == "(":
            depth += 1
        elif c == ")":
            depth -= 1
        place += 1
    return text[start:place - 1]


def messages():
    """What the pages show in message boxes: "file: text" pieces of some length."""
    found = []
    for name, text in page_sources():
        constants = {match[1]: match[2] for match in re.finditer(
            r"constexpr char (k\w+)\[\] =\s*((?:\"(?:[^\"\\]|\\.)*\"\s*)+);", text)}
        for call in re.finditer(r"\b(?:Inform|Warn|Ask|Refuse)\(", text):
            arguments = call_arguments(text, call.end())
            for constant, value in constants.items():
                arguments = re.sub(rf"\b{constant}\b", lambda _: value, arguments)
            for literal in string_literals(arguments):
                for piece in re.split(r"[\r\n]+", literal):
                    piece = re.sub(r"\s+", " ", piece).strip(" \"[]?:.,")
                    if len(piece) >= 8 and not set(piece) <= {"-"}:
                        found.append((name, piece))
    return found


def check_messages(_):
    """Every message that a page can show is explained."""
    text = " ".join(plain(page) for page in help_pages().values())
    all_messages = messages()
    problems = [f"{name}: \"{message}\" is not explained" for name, message in all_messages
                if message not in text]
    if len(all_messages) < 50:
        problems.append(f"only {len(all_messages)} messages were found")
    return problems


def check_compiled_help(chm):
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run(["7z", "x", "-bd", f"-o{folder}", chm],
                              capture_output=True, text=True)
        if done.returncode:
            return [done.stdout[-400:] + done.stderr[-400:]]
        problems = []
        for name in [*help_pages(), "quorvale.css", "Quorvale.hhc", "Quorvale.hhk"]:
            path = os.path.join(folder, name)
            if not os.path.exists(path):
                problems.append(f"{name} is not in it")
                continue
            with open(path, "rb") as packed, open(os.path.join(HELP, name), "rb") as source:
                if packed.read() != source.read():
                    problems.append(f"{name} differs from its source")
        with open(os.path.join(folder, "#SYSTEM"), "rb") as file:
            if b"qvlBackup.htm\0" not in file.read():
                problems.append("the first topic is not named")
        return problems


# --- Pages ----------------------------------------------------------------------------------------

def place_name(heading):
    """The anchor that a heading gets: "What is saved, and what is not"."""
    return re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")


def check_page_links(_):
    problems, count = [], 0
    names = sorted(os.listdir(os.path.join(ROOT, "docs")))
    pages = ["README.md"] + [f"docs/{name}" for name in names if name.endswith(".md")]
    for page in pages:
        text = re.sub(r"```.*?```", "", read(page), flags=re.S)
        for link in re.findall(r"\]\(([^)\s]+)\)", text):
            if re.match(r"[a-z]+:", link):
                continue
            count += 1
            file, _, anchor = link.partition("#")
            target = os.path.normpath(os.path.join(os.path.dirname(page), file)) if file else page
            if not os.path.exists(os.path.join(ROOT, target)):
                problems.append(f"{page}: {link}")
            elif anchor and anchor not in map(place_name,
                                              re.findall(r"^#+ (.*)$", read(target), flags=re.M)):
                problems.append(f"{page}: {link} (no such heading)")
    if count < 15:
        problems.append(f"only {count} links were found")
    return problems


def check_backup_is_readable(console):
    """A reader that was written after the page on the format reads what the program makes."""
    problems = []
    reader = os.path.join(ROOT, "tests", "docs", "read_backup.py")
    with tempfile.TemporaryDirectory() as folder:
        for like in ("xp", "vista"):
            machine, name = os.path.join(folder, like), f"By the page {like}"
            for words in (["machine", "sample", machine, "--like", like],
                          ["--machine", machine, "settings", "set", "chkNoExtension", "1"],
                          ["--machine", machine, "--yes", "backup", name, "--all", "--to", folder]):
                done = subprocess.run([console] + words, capture_output=True, text=True)
                if done.returncode:
                    problems.append(f"{words}: {done.stdout[-300:]}{done.stderr[-300:]}")
            done = subprocess.run([sys.executable, reader, os.path.join(folder, name + ".obk")],
                                  capture_output=True, text=True)
            if done.returncode:
                problems.append(done.stdout[-400:] + done.stderr[-400:])
    return problems


def main():
    if len(sys.argv) != 3 or sys.argv[1] not in ("--console", "--help-file"):
        sys.exit("usage: check_docs.py --console FILE | --help-file FILE")
    file = os.path.abspath(sys.argv[2])
    tests = [("the console's commands and options on its pages", check_console),
             ("the commands of --help are known", check_commands_are_known),
             ("the layout of the man page", check_manual_layout),
             ("help: the topics that pages ask for", check_topics),
             ("help: the pages are well formed", check_help_pages),
             ("help: the links", check_help_links),
             ("help: every message is explained", check_messages),
             ("the links between the pages", check_page_links),
             ("a backup is readable by the page on its format", check_backup_is_readable)]
    if sys.argv[1] == "--help-file":
        tests = [("the contents of the help file", check_compiled_help)]
    failed = 0
    for name, test in tests:
        problems = test(file)
        print(f"FAILED: {name}" if problems else f"ok: {name}")
        for problem in problems:
            print(f"    {problem}")
        failed += bool(problems)
    print(f"{len(tests) - failed} passed, {failed} failed")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
