#!/usr/bin/env python3
"""Runs the test programs that CMake has registered in a build folder and counts their test cases.

  run_programs.py BUILD LOGS [CTEST_OPTION]...

ctest knows all programs: the build registers each as it makes it. It tells how a program ended, and
GoogleTest's own report what each test came to. A program that crashes, hangs, was not built or runs
no test counts as one failed test. LOGS takes ctest's report and each program's output. The last
line is "N passed, N failed", and ", N skipped" where tests left themselves out.
"""

import os
import re
import subprocess
import sys
import xml.etree.ElementTree as xml

# Characters that a program wrote and that XML cannot hold would make ctest's report unreadable.
UNREADABLE = re.compile(r"[^\t\n\r\x20-\ud7ff\ue000-\ufffd]")
NOISE = re.compile(r"^\[       OK \]|^\[----------\]|^\[ RUN      \]")


def read_xml(path):
    """None if there is no whole report."""
    try:
        with open(path, encoding="utf-8", errors="replace") as file:
            return xml.fromstring(UNREADABLE.sub("?", file.read()))
    except (OSError, xml.ParseError):
        return None


class Count:
    def __init__(self):
        self.passed = self.failed = self.skipped = 0

    def fail(self, sentence, excerpt=()):
        self.failed += 1
        for line in excerpt:
            print(line)
        print("FAILED: " + sentence)

    def take(self, name, ended_well, report, lines):
        """One program: how it ended, GoogleTest's report of it, what it wrote."""
        if report is None:
            self.fail(name + ": ended before its last test", lines[-60:])
            return
        cases = report.findall("testsuite/testcase")
        if not cases:
            self.fail(name + ": ran no test", lines[-20:])
            return
        bad = [case for case in cases if case.find("failure") is not None]
        left_out = [case for case in cases if case.find("skipped") is not None]
        self.passed += len(cases) - len(bad) - len(left_out)
        self.failed += len(bad)
        self.skipped += len(left_out)
        if bad:
            print("\n".join([line for line in lines if not NOISE.match(line)][-150:]))
            print("FAILED: %s: %d of %d" % (name, len(bad), len(cases)))
        elif not ended_well:
            self.fail(name + ": ended badly after its last test", lines[-60:])
        else:
            print("ok: %s (%d tests)" % (name, len(cases) - len(left_out)))
        for case in left_out:
            print("left out: %s.%s" % (case.get("classname"), case.get("name")))


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    build, logs = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    os.makedirs(logs, exist_ok=True)
    reports = os.path.join(build, "test-results")
    if os.path.isdir(reports):
        for name in os.listdir(reports):
            os.remove(os.path.join(reports, name))
    overview = os.path.join(logs, "ctest.xml")
    if os.path.exists(overview):
        os.remove(overview)
    with open(os.path.join(logs, "ctest.log"), "wb") as log:
        subprocess.run(["ctest", "--test-dir", build, "--output-junit", overview, "--no-tests=error",
                        "--test-output-size-passed", "10000000", "--test-output-size-failed",
                        "10000000"] + sys.argv[3:], stdin=subprocess.DEVNULL, stdout=log,
                       stderr=subprocess.STDOUT, check=False)
    count = Count()
    programs = read_xml(overview)
    if programs is None or not programs.findall("testcase"):
        with open(os.path.join(logs, "ctest.log"), encoding="utf-8", errors="replace") as log:
            count.fail("ctest ran no program", log.read().splitlines()[-40:])
    for program in [] if programs is None else sorted(programs.findall("testcase"),
                                                      key=lambda each: each.get("name")):
        name = program.get("name")
        lines = (program.findtext("system-out") or "").replace("\r", "").splitlines()
        with open(os.path.join(logs, name + ".log"), "w", encoding="utf-8") as log:
            log.write("\n".join(lines) + "\n")
        count.take(name, program.get("status") == "run",
                   read_xml(os.path.join(reports, name + ".xml")), lines)
    print("%d passed, %d failed" % (count.passed, count.failed) +
          (", %d skipped" % count.skipped if count.skipped else ""))
    return 1 if count.failed else 0


if __name__ == "__main__":
    sys.exit(main())
