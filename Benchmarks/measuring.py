"""Runs the programs side by side and takes the medians."""

import json
import os
import shutil
import socket
import statistics
import subprocess
import tempfile
import time
from dataclasses import dataclass


@dataclass(frozen=True)
class Cost:
    """Medians over all rounds."""

    elapsed: float  # seconds
    cpu: float  # seconds of the processor, user and system together
    peak: int = 0  # bytes of memory; 0 where it was not measured


@dataclass(frozen=True)
class Result:
    workload: object
    rounds: int
    processes: dict  # Cost by program: library, plain, svn
    calls: dict  # Cost by program: library, plain; empty where the call alone is not measured
    bytes_per_item: float


@dataclass(frozen=True)
class Cancelled:
    """What cancelling a status scan again and again showed, in seconds."""

    cancelling: object
    times: int
    scan: float  # the whole scan's time
    median: float  # from the moment of cancelling to the exception
    longest: float


class Server:
    """An svnserve of the cache folder on a port of its own."""

    def __init__(self, root):
        self._root = root

    def __enter__(self):
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            self._port = probe.getsockname()[1]
        self._process = subprocess.Popen([
            "svnserve", "--daemon", "--foreground", "--root", str(self._root), "--listen-host", "127.0.0.1",
            "--listen-port", str(self._port), "--read-only"
        ])
        self._wait_until_it_listens()
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait()

    def _wait_until_it_listens(self):
        for _ in range(100):
            try:
                socket.create_connection(("127.0.0.1", self._port), timeout=1).close()
                return
            except OSError:
                time.sleep(0.05)
        raise RuntimeError("svnserve does not answer")

    def url(self, data_set):
        return f"svn://127.0.0.1:{self._port}/{data_set.repository.relative_to(self._root)}"


class Bench:
    """Measures workloads with the programs of a build folder.

    Every program runs with the same private home folder, and never sees the user's configuration.
    """

    def __init__(self, build, rounds, seconds):
        """Takes at most so many rounds of a workload, and no further one after so many seconds."""
        self._programs = build / "bin"
        self._package = build / "lib/HSVN/Versions/A"
        self._rounds = rounds
        self._seconds = seconds
        self._scratch = tempfile.TemporaryDirectory(prefix="hsvn-bench-")
        self._environment = os.environ | {"HOME": self._scratch.name, "LC_ALL": "C.UTF-8"}

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._scratch.cleanup()

    def measure(self, workload):
        environment = self._environment | self._package_of(workload.bundles)
        commands = self._commands(workload)
        outputs = {name: self._output(command, environment) for name, command in commands.items()}
        self._check_counts(workload, outputs)
        rounds = self._process_rounds(commands, environment)
        calls = {} if workload.operation == "start" else self._calls(workload, len(rounds), environment)
        processes = {name: median([costs[name] for costs in rounds]) for name in commands}
        held = report_of(outputs["library"])["bytes"]
        return Result(workload, len(rounds), processes, calls, held / max(1, workload.items))

    def cancel(self, cancelling):
        times = max(1, 2 * self._rounds)
        output = self._output([str(self._programs / "bench_cancel"), str(cancelling.folder), str(times)],
                              self._environment)
        found = {name: value / 1e6 for name, value in report_of(output).items()}
        return Cancelled(cancelling, times, found["scan"], found["median"], found["longest"])

    def _commands(self, workload):
        arguments = [workload.operation] + ([workload.target] if workload.target else [])
        return {
            "library": [str(self._programs / "bench_library"), *arguments],
            "plain": [str(self._programs / "bench_plain"), *arguments],
            "svn": ["svn", "--non-interactive", *workload.svn] if workload.target else ["svn", *workload.svn],
        }

    @staticmethod
    def _output(command, environment):
        return subprocess.run(command, check=True, env=environment, stdout=subprocess.PIPE).stdout

    @staticmethod
    def _check_counts(workload, outputs):
        """The three programs must have done the same, or their times say nothing."""
        counted = workload.items if workload.plain_items is None else workload.plain_items
        counts = {
            "library": (report_of(outputs["library"])["items"], workload.items),
            "plain": (report_of(outputs["plain"])["items"], counted),
        }
        if workload.svn_items:
            counts["svn"] = (workload.svn_items(outputs["svn"]), counted)
        for program, (found, expected) in counts.items():
            if found != expected:
                raise RuntimeError(f"{workload.name}: {program} reported {found} items, not {expected}")

    def _process_rounds(self, commands, environment):
        """Each round runs every program once, in an order that changes from round to round."""
        rounds = []
        started = time.monotonic()
        while len(rounds) < self._rounds and (not rounds or time.monotonic() - started < self._seconds):
            names = list(commands) if len(rounds) % 2 == 0 else list(reversed(commands))
            rounds.append({name: self._run(commands[name], environment) for name in names})
        return rounds

    def _run(self, command, environment):
        report = os.path.join(self._scratch.name, "report")
        subprocess.run([str(self._programs / "bench_measure"), report, *command], check=True, env=environment,
                       stdout=subprocess.DEVNULL)
        with open(report, encoding="ascii") as file:
            values = dict(line.split() for line in file)
        return Cost(float(values["elapsed"]), float(values["cpu"]), int(values["peak"]))

    def _calls(self, workload, repetitions, environment):
        output = self._output([
            str(self._programs / "bench_calls"), workload.operation, workload.target, "--benchmark_format=json",
            f"--benchmark_repetitions={repetitions}", "--benchmark_enable_random_interleaving=true"
        ], environment)
        runs = [run for run in json.loads(output)["benchmarks"] if run["run_type"] == "iteration"]
        return {
            name: median([
                Cost(run["real_time"] / 1000, run["cpu_time"] / 1000) for run in runs if run["name"].startswith(name)
            ])
            for name in ("library", "plain")
        }

    def _package_of(self, bundles):
        """Environment that makes the programs load the library from a package with that many bundles.

        The further ones are the installed bundle under older versions, which never have to be opened.
        """
        if bundles == 1:
            return {}
        package = os.path.join(self._scratch.name, f"package-{bundles}", "Versions", "A")
        if not os.path.exists(package):
            shutil.copytree(self._package, package, symlinks=True)
            self._add_older_bundles(package, bundles - 1)
        return {"LD_LIBRARY_PATH": package}

    @staticmethod
    def _add_older_bundles(package, count):
        folder = os.path.join(package, "Subversion")
        installed = os.path.join(folder, os.listdir(folder)[0])
        for minor, working_copy_format in [(4, 8), (5, 9), (6, 10)][:count]:
            older = shutil.copytree(installed, os.path.join(folder, f"Subversion-1.{minor}.bundle"))
            with open(os.path.join(older, "Info.json"), encoding="utf-8") as file:
                information = json.load(file)
            information |= {"CFBundleVersion": f"1.{minor}.0", "HSVNWorkingCopyFormatVersion": working_copy_format}
            with open(os.path.join(older, "Info.json"), "w", encoding="utf-8") as file:
                json.dump(information, file)


def report_of(output):
    return {name: int(value) for name, value in (line.split() for line in output.decode().splitlines())}


def median(costs):
    return Cost(
        statistics.median(cost.elapsed for cost in costs),
        statistics.median(cost.cpu for cost in costs),
        round(statistics.median(cost.peak for cost in costs)),
    )
