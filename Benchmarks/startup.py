#!/usr/bin/env python3
"""Measures how soon `hsvn --version` has answered beside `svn --version`: whole processes in turn, medians.

Ends with 1 when hsvn takes more than the goal, 1.3 times as long.
"""

import argparse
import os
import statistics
import subprocess
import sys
import tempfile
import time

GOAL = 1.3


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("hsvn", help="the program, of an optimized build")
    parser.add_argument("--svn", default="svn", help="the program it is compared with (default: %(default)s)")
    parser.add_argument("--rounds", type=int, default=101, help="runs of each program (default: %(default)s)")
    return parser.parse_args()


def seconds(program, environment):
    start = time.perf_counter()
    subprocess.run([program, "--version"], env=environment, stdout=subprocess.DEVNULL, check=True)
    return time.perf_counter() - start


def main():
    arguments = parse_arguments()
    times = {arguments.svn: [], arguments.hsvn: []}
    with tempfile.TemporaryDirectory() as home:
        environment = {**os.environ, "HOME": home, "LC_ALL": "C"}
        for program in times:
            seconds(program, environment)  # from the disk into memory
        for _ in range(arguments.rounds):
            for program, taken in times.items():
                taken.append(seconds(program, environment))
    svn, hsvn = (statistics.median(times[program]) for program in (arguments.svn, arguments.hsvn))
    print(f"svn --version {svn * 1000:.2f} ms, hsvn --version {hsvn * 1000:.2f} ms: {hsvn / svn:.2f} times, "
          f"goal {GOAL}")
    sys.exit(hsvn / svn > GOAL)


if __name__ == "__main__":
    main()
