#!/usr/bin/env python3
"""Measures check-out, update, export and commit by `hsvn` beside `svn`, and commits in one process.

Whole processes run in turn, each on a working copy or a folder of its own; the medians of what they take are compared.
"""

import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile

import data
import run
import workloads

GOAL = 1.03  # hsvn's processor time in units of svn's
COMMITS = 10
COMMITS_GOAL = 1.1  # the last commit's time in units of the first's
ENVIRONMENT = os.environ | {"LC_ALL": "C.UTF-8"}


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help="build folder that holds hsvn and bench_commits")
    parser.add_argument("--sizes", choices=run.SIZES, default="full", help="how much data (default: full)")
    parser.add_argument("--data", type=pathlib.Path, default=run.default_cache(),
                        help="folder that keeps the data between runs (default: %(default)s)")
    parser.add_argument("--rounds", type=int, default=7, help="runs of each program (default: %(default)s)")
    return parser.parse_args()


class Change:
    """A subcommand that is run again and again on what `prepare` makes anew."""

    def __init__(self, name, arguments, prepare=lambda: None):
        self.name = name
        self.arguments = arguments
        self.prepare = prepare


class Work:
    """The folder in which the programs change things, beside a tree's data."""

    def __init__(self, tree, folder):
        self._tree = tree
        self._repository = folder / "repository"
        self.target = folder / "target"
        shutil.copytree(tree.repository, self._repository)
        self._url = f"file://{self._repository}/trunk"

    def changes(self):
        target = str(self.target)
        middle = str(data.TreeData.REVISIONS // 2)
        yield Change("check-out", ["checkout", "-q", self._url, target])
        yield Change("export", ["export", "-q", self._url, target])
        yield Change("update", ["update", "-q", target], lambda: self._check_out("-r", middle))
        yield Change("commit", ["commit", "-q", "-m", "changed", target], self._edit)

    def _check_out(self, *arguments):
        data.run("svn", "checkout", "-q", *arguments, self._url, self.target)

    def _edit(self):
        self._check_out()
        for name in self._tree.files[::10]:
            with open(self.target / name, "a", encoding="utf-8") as file:
                file.write("one more line\n")

    def clear(self):
        shutil.rmtree(self.target, ignore_errors=True)

    def file(self):
        """One of a new working copy."""
        self.clear()
        self._check_out()
        return self.target / self._tree.files[0]


def processor_time(command):
    """Seconds, user and system together."""
    process = subprocess.Popen(command, env=ENVIRONMENT)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"changing: {' '.join(command)} failed")
    return usage.ru_utime + usage.ru_stime


def measure(work, change, programs, rounds):
    """Medians by program."""
    times = {program: [] for program in programs}
    for number in range(rounds):
        for program in programs if number % 2 == 0 else reversed(programs):
            work.clear()
            change.prepare()
            times[program].append(processor_time([program, "--non-interactive", *change.arguments]))
    return [statistics.median(times[program]) for program in programs]


def judged(ratio, goal):
    return f"{ratio:.2f} | {goal} | {'met' if ratio <= goal else '**missed**'} |"


def commits(build, work, rounds):
    """Medians of the first and the last commit's milliseconds."""
    ends = []
    for _ in range(rounds):
        output = subprocess.run([str(build / "bin/bench_commits"), str(work.file()), str(COMMITS)], check=True,
                                stdout=subprocess.PIPE, env=ENVIRONMENT).stdout.decode()
        ends.append([int(line.split()[1]) / 1000 for line in output.splitlines()])
    return [statistics.median(end[place] for end in ends) for place in (0, 1)]


def main():
    arguments = parse_arguments()
    build = arguments.build.resolve()
    tree = data.TreeData(arguments.data.resolve(), run.SIZES[arguments.sizes].others[0], workloads.PER_FOLDER, False)
    tree.make(run.log)
    with tempfile.TemporaryDirectory(prefix="hsvn-bench-") as folder:
        work = Work(tree, pathlib.Path(folder))
        print(f"| {tree.record['files']:,} files, processor time | svn | hsvn | ratio | at most | |")
        print("|---|---:|---:|---:|---:|---|")
        for change in work.changes():
            svn, hsvn = measure(work, change, ["svn", str(build / "bin/hsvn")], arguments.rounds)
            print(f"| {change.name} | {svn * 1000:,.0f} ms | {hsvn * 1000:,.0f} ms | {judged(hsvn / svn, GOAL)}")
        first, last = commits(build, work, arguments.rounds)
        print(f"| commits in one process: first, {COMMITS}th | {first:,.1f} ms | {last:,.1f} ms | "
              f"{judged(last / first, COMMITS_GOAL)}")


if __name__ == "__main__":
    main()
