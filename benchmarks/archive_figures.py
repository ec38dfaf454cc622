#!/usr/bin/env python3
"""Measures the archive component beside common tools, and prints the ratios in one table.

    archive_figures.py [--driver PROGRAM] [--folder FOLDER] [--runs N] [--small]

The driver is the one of an optimised build. Two trees are made in the folder: "profile", 10,000
documents and headers of this system and one file of 300 MB made of its programs, and "one", a
single file of 1 GB. Every round runs each tool once, one after the other, so that all of them meet
the same moments of a busy machine; what is printed are medians. All programs may use two
processors. The folder lies in memory where there is room, so that the disk decides nothing.
On a machine with other work, a system that shares its processors out by program and not by thread
gives a tool of one thread as much as one of two; the ratio of processor times, which is printed
too, is then the one to look at. --small takes a twentieth of everything, to try the script itself.

The last lines are the verdict on each goal; the exit status is 1 if one of them was missed.
"""
import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

SOURCES = ("/usr/share/doc", "/usr/include")
PROGRAMS = ("/usr/bin", "/usr/lib")


class Run:
    """What one run of a program took."""

    def __init__(self, words, folder):
        start = time.monotonic()
        process = subprocess.Popen(words, cwd=folder, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT)
        self.output = process.stdout.read().decode(errors="replace")
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        self.seconds = time.monotonic() - start
        self.processor_seconds = usage.ru_utime + usage.ru_stime
        self.megabytes = 0  # as the driver tells it
        for line in self.output.splitlines():
            if line.startswith("VmHWM:"):
                self.megabytes = int(line.split()[1]) / 1024
        if process.returncode != 0:
            sys.exit(f"{' '.join(words)}\n{self.output}")


def files_below(folders):
    for top in folders:
        for folder, subfolders, names in os.walk(top):
            subfolders.sort()
            for name in sorted(names):
                path = os.path.join(folder, name)
                if os.path.isfile(path) and not os.path.islink(path):
                    yield path


def make_file_of_programs(path, size):
    left = size
    with open(path, "wb") as out:
        while left > 0:
            for source in files_below(PROGRAMS):
                with open(source, "rb") as program:
                    if program.read(4) != b"\x7fELF":
                        continue
                    program.seek(0)
                    data = program.read(left)
                out.write(data)
                left -= len(data)
                if left == 0:
                    return


def make_profile(folder, count, size):
    """`count` documents and headers. Names that differ only in case are one file to Windows."""
    taken = set()
    for source in files_below(SOURCES):
        if len(taken) == count:
            break
        if source.lower() in taken:
            continue
        taken.add(source.lower())
        target = folder + source
        os.makedirs(os.path.dirname(target), exist_ok=True)
        shutil.copy2(source, target)
    make_file_of_programs(os.path.join(folder, "mail.bin"), size)
    return len(taken)


def make_many(folder, count):
    for i in range(count):
        if i % 1000 == 0:
            os.makedirs(os.path.join(folder, f"d{i // 1000}"))
        with open(os.path.join(folder, f"d{i // 1000}", f"f{i}"), "w") as file:
            file.write(str(i))


class Figures:
    def __init__(self, driver, folder, runs):
        self.driver = driver
        self.folder = folder
        self.runs = runs
        self.most_memory = 0
        self.verdicts = []

    def ours(self, *words):
        run = Run([self.driver, *words], self.folder)
        self.most_memory = max(self.most_memory, run.megabytes)
        return run

    def rounds(self, commands):
        """Runs each of the commands (name: function of the round's number) in every round."""
        results = {name: [] for name in commands}
        for number in range(self.runs):
            for name, command in commands.items():
                results[name].append(command(number))
        return results

    def line(self, what, ours, theirs, goal, note=""):
        def median(runs, field):
            return statistics.median(getattr(run, field) for run in runs)

        mine, other = median(ours, "seconds"), median(theirs, "seconds")
        ratio = other / mine
        cpu = median(theirs, "processor_seconds") / median(ours, "processor_seconds")
        print(f"{what:<44}{mine:>9.2f} s{other:>9.2f} s{ratio:>7.2f}  processor time {cpu:.2f}"
              f"{note}", flush=True)
        self.judge(what, ratio >= goal, f"{ratio:.2f} times as fast, goal {goal:.1f}")

    def judge(self, what, met, figure):
        self.verdicts.append((what, met, figure))

    def print_verdicts(self):
        print()
        for what, met, figure in self.verdicts:
            print(f"{'met' if met else 'MISSED':<8}{what}: {figure}")
        return all(met for _, met, _ in self.verdicts)

    def size_of(self, name):
        return os.path.getsize(os.path.join(self.folder, name))

    def tool(self, words, output=None):
        def run(_):
            if output and os.path.exists(os.path.join(self.folder, output)):
                os.remove(os.path.join(self.folder, output))
            return Run(words, self.folder)
        return run

    def backup_rows(self, tree, tools):
        """`tools`: name to (command, its archive, goal, percent that ours may be longer)."""
        archive = f"{tree}.obk"
        commands = {"ours": lambda _: self.ours("zip", archive, "-6", tree)}
        for name, (words, output, _, _) in tools.items():
            commands[name] = self.tool(words, output)
        results = self.rounds(commands)
        for name, (_, output, goal, longer) in tools.items():
            what = f"backup of {tree} against {name}"
            note = ""
            if output:
                percent = (self.size_of(archive) / self.size_of(output) - 1) * 100
                note = f", archive {percent:+.2f} %"
            self.line(what, results["ours"], results[name], goal, note)
            if longer is not None:
                self.judge(what, percent <= longer,
                           f"archive {percent:+.2f} %, at most {longer:+.0f} %")
        return results["ours"]

    def restore_row(self):
        """Into new folders each time: reusing what was just removed is slow on some disks."""
        def restore(name, words):
            def run(number):
                target = os.path.join(self.folder, f"restored_{name}_{number}")
                os.makedirs(target)
                result = (self.ours(*words, target) if name == "ours"
                          else Run([*words, target], self.folder))
                shutil.rmtree(target)
                return result
            return run
        results = self.rounds({
            "ours": restore("ours", ["unzip", "profile.obk"]),
            "unzip": restore("unzip", ["unzip", "-q", "profile.zip", "-d"]),
        })
        self.line("restore of profile against unzip", results["ours"], results["unzip"], 1.5)

    def limit(self, name, ours):
        """No archive is made in less time than the compressing library itself takes."""
        output = Run([self.driver, "limit", name, "-6"], self.folder).output
        alone = float(output.split("alone: ")[1].split()[0])
        seconds = statistics.median(run.seconds for run in ours)
        processor = statistics.median(run.processor_seconds for run in ours)
        print(f"{'the library alone for that, by two':<44}{alone / 2:>9.2f} s, "
              f"{alone / 2 / seconds:.0%} of our time, {alone / processor:.0%} of our processor time",
              flush=True)


def room_in(folder):
    info = os.statvfs(folder)
    return info.f_bavail * info.f_frsize


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    here = os.path.dirname(os.path.abspath(__file__))
    parser.add_argument("--driver", default=os.path.join(
        here, "..", "build", "host-release", "benchmarks", "archive_driver"))
    parser.add_argument("--folder")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--small", action="store_true")
    arguments = parser.parse_args()
    scale = 20 if arguments.small else 1
    base = arguments.folder
    if base is None:
        memory = "/dev/shm"
        base = memory if os.path.isdir(memory) and room_in(memory) > 10e9 else None
    os.sched_setaffinity(0, set(sorted(os.sched_getaffinity(0))[:2]))

    with tempfile.TemporaryDirectory(dir=base) as folder:
        figures = Figures(os.path.abspath(arguments.driver), folder, arguments.runs)
        print(f"{len(os.sched_getaffinity(0))} processors, load {os.getloadavg()[0]:.1f}, "
              f"in {folder}")
        count = make_profile(os.path.join(folder, "profile"), 10_000 // scale,
                             300_000_000 // scale)
        os.makedirs(os.path.join(folder, "one"))
        make_file_of_programs(os.path.join(folder, "one", "mail.bin"), 1_000_000_000 // scale)
        print(f"profile: {count} small files and one of {300 // scale} MB; "
              f"one: a file of {1000 // scale} MB")
        print(f"{'':<44}{'ours':>11}{'theirs':>11}  ratio")
        figures.backup_rows("profile", {
            "zip -6": (["zip", "-q", "-6", "-r", "profile.zip", "profile"], "profile.zip", 3, 1),
            "7z -mx=5 -mmt=2": (["7z", "a", "-bd", "-tzip", "-mx=5", "-mmt=2", "profile.7z.zip",
                                 "profile"], "profile.7z.zip", 5, None),
        })
        ours = figures.backup_rows("one", {
            "zip -6": (["zip", "-q", "-6", "-r", "one.zip", "one"], "one.zip", 3.5, 0),
            "pigz -6": (["pigz", "-6", "-k", "-f", "one/mail.bin"], None, 1.8, None),
        })
        figures.limit("one/mail.bin", ours)
        figures.restore_row()

        with open(os.path.join(folder, "sparse"), "wb") as file:
            file.truncate(10_000_000_000 // scale)
        sparse = figures.ours("zip", "sparse.obk", "-6", "sparse")
        print(f"{'backup of a sparse file of 10 GB':<44}{sparse.seconds:>9.2f} s")
        figures.judge("peak memory of all of these", figures.most_memory < 64,
                      f"{figures.most_memory:.1f} MiB, goal 64")

        make_many(os.path.join(folder, "many"), 100_000 // scale)
        figures.ours("zip", "many.obk", "-6", "many")
        listings = [Run([figures.driver, "list", "many.obk"], folder)
                    for _ in range(arguments.runs)]
        seconds = statistics.median(run.seconds for run in listings)
        memory = max(run.megabytes for run in listings)
        figures.judge("listing of 100,000 entries", seconds < 0.3 and memory < 100,
                      f"{seconds:.3f} s, {memory:.1f} MiB, goals 0.3 s and 100 MiB")
        print(f"load at the end {os.getloadavg()[0]:.1f}")
        return 0 if figures.print_verdicts() else 1


sys.exit(main())
