#!/usr/bin/env python3
"""Measures how soon `hsvn --version` has answered beside `svn --version`: whole processes in turn, medians."""

import argparse
import os
import statistics
import sys
import tempfile
import time

GOAL = 1.15


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("hsvn", help="the program, of an optimized build")
    parser.add_argument("--svn", default="svn", help="the program it is compared with (default: %(default)s)")
    parser.add_argument("--rounds", type=int, default=101, help="runs of each program (default: %(default)s)")
    return parser.parse_args()


def seconds(program, environment, nowhere):
    """Time from starting the program to its end. Spawned, not forked: Python's own part counts as little as can be."""
    start = time.perf_counter()
    process = os.posix_spawnp(program, [program, "--version"], environment,
                              file_actions=[(os.POSIX_SPAWN_DUP2, nowhere, 1)])
    _, status = os.waitpid(process, 0)
    taken = time.perf_counter() - start
    if status != 0:
        sys.exit(f"startup: {program} --version failed")
    return taken


def main():
    arguments = parse_arguments()
    times = {arguments.svn: [], arguments.hsvn: []}
    with tempfile.TemporaryDirectory() as home, open(os.devnull, "w", encoding="utf-8") as nowhere:
        environment = {**os.environ, "HOME": home, "LC_ALL": "C"}
        for program in times:
            seconds(program, environment, nowhere.fileno())  # from the disk into memory
        for _ in range(arguments.rounds):
            for program, taken in times.items():
                taken.append(seconds(program, environment, nowhere.fileno()))
    svn, hsvn = (statistics.median(times[program]) for program in (arguments.svn, arguments.hsvn))
    print(f"start-up: svn --version {svn * 1000:.2f} ms, hsvn --version {hsvn * 1000:.2f} ms: {hsvn / svn:.2f} times, "
          f"goal {GOAL}: {'met' if hsvn / svn <= GOAL else '**missed**'}")


if __name__ == "__main__":
    main()
