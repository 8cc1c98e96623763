#!/usr/bin/env python3
"""Makes the data, runs the benchmarks of a build folder and reports the medians.

Every workload is run by three programs in turn: one that uses the library, one that calls the same Subversion function
and only counts, and svn. The call alone is measured beside that in one warm process.
"""

import argparse
import os
import pathlib
import sys

import measuring
import reporting
import workloads

SIZES = {"full": workloads.FULL, "quick": workloads.QUICK, "tiny": workloads.TINY}


def default_cache():
    home = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
    return os.environ.get("HSVN_BENCH_DATA") or os.path.join(home, "hsvn-bench")


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help="build folder that holds the benchmark programs")
    parser.add_argument("--sizes", choices=SIZES, default="full", help="how much data (default: full)")
    parser.add_argument("--data", type=pathlib.Path, default=default_cache(),
                        help="folder that keeps the data between runs (default: %(default)s)")
    parser.add_argument("--only", metavar="NAME,...", help="run these workloads alone; names may end in *")
    parser.add_argument("--rounds", type=int, default=9, help="most rounds of a workload (default: %(default)s)")
    parser.add_argument("--seconds", type=float, default=60,
                        help="begin no further round of a workload after this time (default: %(default)s)")
    parser.add_argument("--document", type=pathlib.Path, help="document that receives the tables")
    return parser.parse_args()


def is_chosen(workload, only):
    return not only or any(pathlib.PurePath(workload.name).match(pattern) for pattern in only.split(","))


def log(text):
    print(text, file=sys.stderr, flush=True)


def run(arguments):
    data_sets = workloads.DataSets(arguments.data.resolve(), SIZES[arguments.sizes])
    data_sets.make(log)
    results, cancelled = [], []
    with measuring.Server(arguments.data.resolve()) as server, \
            measuring.Bench(arguments.build.resolve(), arguments.rounds, arguments.seconds) as bench:
        for workload in workloads.all_workloads(data_sets, server):
            if is_chosen(workload, arguments.only):
                log(f"measuring {workload.name}")
                results.append(bench.measure(workload))
        for cancelling in workloads.all_cancelling(data_sets):
            if is_chosen(cancelling, arguments.only):
                log(f"measuring {cancelling.name}")
                cancelled.append(bench.cancel(cancelling))
    if not results and not cancelled:
        raise RuntimeError(f"no workload is named {arguments.only}")
    return reporting.report(results, cancelled, data_sets.tree.record["path length"], arguments.sizes == "full")


def main():
    arguments = parse_arguments()
    try:
        text = run(arguments)
        if arguments.document:
            reporting.write_into(arguments.document, text)
    except (OSError, RuntimeError, measuring.subprocess.CalledProcessError) as error:
        sys.exit(f"benchmark: {error}")
    print(text)


if __name__ == "__main__":
    main()
