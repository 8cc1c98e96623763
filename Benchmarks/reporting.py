"""The table of results."""

import datetime
import os
import platform
import subprocess

BUSY = 1.5  # the load average from which on others have worked beside the benchmarks, which load one processor
BEGIN = "<!-- Tools/bench writes from here -->"
END = "<!-- to here -->"


def milliseconds(seconds):
    return f"{seconds * 1000:,.1f}" if seconds < 0.1 else f"{seconds * 1000:,.0f}"


def megabytes(count):
    return f"{count / 1e6:,.1f}"


def ratio(costs, other, of="elapsed"):
    base = getattr(costs[other], of)
    return getattr(costs["library"], of) / base if base else float("nan")


def table(titles, rows):
    yield "| " + " | ".join(titles) + " |"
    yield "|" + "|".join(["---"] + ["---:"] * (len(titles) - 1)) + "|"
    for row in rows:
        yield "| " + " | ".join(row) + " |"
    yield ""


def call_rows(results):
    for result in results:
        calls = result.calls
        if calls:
            yield [
                result.workload.title, milliseconds(calls["library"].elapsed), milliseconds(calls["plain"].elapsed),
                f"{ratio(calls, 'plain'):.2f}", f"{ratio(calls, 'plain', 'cpu'):.2f}"
            ]


def process_rows(results):
    for result in results:
        costs = result.processes
        yield [
            result.workload.title, *(milliseconds(costs[name].elapsed) for name in ("library", "plain", "svn")),
            f"{ratio(costs, 'plain'):.2f}", f"{ratio(costs, 'svn'):.2f}", f"{ratio(costs, 'plain', 'cpu'):.2f}",
            f"{ratio(costs, 'svn', 'cpu'):.2f}"
        ]


def holds_an_object_per_item(result):
    workload = result.workload
    return workload.operation not in ("start", "cat", "status-verb-all", "status-verb-changed") and workload.plain_items is None and workload.items > 0


def memory_rows(results):
    for result in results:
        peaks = [megabytes(result.processes[name].peak) for name in ("library", "plain", "svn")]
        held = f"{result.bytes_per_item:,.0f}" if holds_an_object_per_item(result) else "-"
        yield [result.workload.title, *peaks, held]


def growth_rows(results):
    for result in sorted(results, key=lambda each: each.workload.items):
        if result.workload.shows_growth:
            items, calls = result.workload.items, result.calls
            yield [
                f"{items:,}", *(f"{calls[name].elapsed / items * 1e6:.2f}" for name in ("library", "plain")),
                f"{result.bytes_per_item:,.0f}", f"{result.processes['library'].peak / items:,.0f}"
            ]


def cancelling_rows(cancelled):
    for each in cancelled:
        times = (milliseconds(time) for time in (each.scan, each.median, each.longest))
        yield [each.cancelling.title, f"{each.times}", *times]


def goal_row(title, figure, value, goal):
    shown = f"{value:,.0f}" if goal >= 100 else f"{value:.2f}"
    return [title, figure, shown, f"{goal:g}", "met" if value <= goal else "**missed**"]


def goal_rows(results, cancelled):
    for result in results:
        goals = result.workload.goals
        found = [
            ("call, in units of the plain client's", ratio(result.calls, "plain") if result.calls else None, goals.call),
            ("process, in units of svn's", ratio(result.processes, "svn"), goals.svn),
            ("bytes an item", result.bytes_per_item, goals.bytes),
        ]
        for what, value, goal in found:
            if goal is not None:
                yield goal_row(result.workload.title, what, value, goal)
    for each in cancelled:
        if each.cancelling.goal is not None:
            yield goal_row(each.cancelling.title, "longest wait when cancelled, ms", each.longest * 1000,
                           each.cancelling.goal * 1000)


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        names = [line.split(":", 1)[1].strip() for line in file if line.startswith("model name")]
    return names[0] if names else platform.machine()


def circumstances(results, path_length):
    subversion = subprocess.run(["svn", "--version", "--quiet"], check=True, stdout=subprocess.PIPE).stdout.decode()
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES")
    rounds = sorted({result.rounds for result in results} or {1})
    shown_rounds = f"{rounds[0]} to {rounds[-1]}" if len(rounds) > 1 else f"{rounds[0]}"
    return (f"Measured on {datetime.date.today():%d %B %Y}: {processor()}, {os.cpu_count()} processors, "
            f"{memory / 1e9:.0f} GB of memory, {platform.system()} {platform.release()}, Subversion {subversion.strip()}; "
            f"medians of {shown_rounds} rounds; load average {os.getloadavg()[0]:.1f} at the end; "
            f"paths of {path_length:.0f} characters.")


def section(title, titles, rows):
    """A table under its title; nothing without rows."""
    rows = list(rows)
    return [f"### {title}", "", *table(titles, rows)] if rows else []


def goals(results, cancelled):
    """What was reached of the goals; nothing is judged where other programs have used the machine."""
    load = os.getloadavg()[0]
    if load > BUSY:
        return ["### Goals", "", f"Not judged: the machine was busy, with a load average of {load:.1f}.", ""]
    return section("Goals", ["benchmark", "figure", "measured", "at most", ""], goal_rows(results, cancelled))


def report(results, cancelled, path_length, with_goals):
    """The whole report as Markdown; the goals are those of the full sizes."""
    text = [circumstances(results, path_length), ""]
    text += section("The call alone", ["milliseconds", "library", "plain client", "ratio", "ratio of CPU time"],
                    call_rows(results))
    text += section("The whole process", [
        "milliseconds", "library", "plain client", "`svn`", "ratio to plain", "ratio to `svn`", "CPU: to plain",
        "CPU: to `svn`"
    ], process_rows(results))
    text += section("Memory", ["peak, MB", "library", "plain client", "`svn`", "bytes an item"], memory_rows(results))
    text += section("Growth of a status scan", [
        "items", "library, µs an item", "plain client, µs an item", "bytes an item", "peak bytes an item"
    ], growth_rows(results))
    text += section("Cancelling a status scan", ["milliseconds", "times", "whole scan", "median wait", "longest wait"],
                    cancelling_rows(cancelled))
    if with_goals:
        text += goals(results, cancelled)
    return "\n".join(text)


def write_into(document, text):
    """Puts the report between the two marks of a document."""
    content = document.read_text(encoding="utf-8")
    before, _, rest = content.partition(BEGIN)
    _, mark, after = rest.partition(END)
    if not mark:
        raise RuntimeError(f"{document} lacks the marks between which the results belong")
    document.write_text(f"{before}{BEGIN}\n\n{text}\n{END}{after}", encoding="utf-8")
