"""What is measured: each operation, on its data, beside the `svn` command that does the same."""

from dataclasses import dataclass

import data


@dataclass(frozen=True)
class Sizes:
    """How much data the run works on."""

    tree: int
    folder: int
    revisions: int
    file: int
    others: tuple  # sizes of the other trees whose status shows how time and memory grow


FULL = Sizes(tree=50_000, folder=20_000, revisions=20_000, file=100_000_000, others=(5_000, 200_000))
QUICK = Sizes(tree=4_000, folder=1_000, revisions=600, file=10_000_000, others=(1_000,))
TINY = Sizes(tree=200, folder=100, revisions=60, file=100_000, others=(100,))

PER_FOLDER = 20


@dataclass(frozen=True)
class Goals:
    """Upper bounds; None where there is none."""

    call: float | None = None  # the call's time in units of the plain client's
    svn: float | None = None  # the whole process's time in units of the svn program's
    bytes: int | None = None  # memory of an item


@dataclass(frozen=True)
class Workload:
    name: str
    title: str
    operation: str
    target: str = ""
    svn: tuple = ()  # arguments of the svn program
    items: int = 1
    goals: Goals = Goals()
    plain_items: int | None = None  # where the plain client counts other things than the library reports
    svn_items: object = None  # counts the items in the svn program's output; None where that is not to be counted
    bundles: int = 1  # how many the library finds at start-up
    shows_growth: bool = False


def lines(output):
    return output.count(b"\n")


def log_entries(output):
    return sum(line == b"-" * 72 for line in output.split(b"\n")) - 1


STATUS_ALL = Goals(call=1.6, svn=1.3, bytes=700)
STATUS_CHANGED = Goals(call=1.15, svn=1.3)


def status_of_tree(tree, name, goals):
    items = tree.record["items"]
    return Workload(name, f"status of {items:,} items, all", "status-all", str(tree.working_copy),
                    ("status", "-v", str(tree.working_copy)), items, goals, svn_items=lines, shows_growth=True)


def status_workloads(tree, folder):
    path, items, changed = str(tree.working_copy), tree.record["items"], tree.record["changed"]
    title = f"status of {items:,} items"
    everything = ("status", "-v", path)
    yield status_of_tree(tree, "status-all", STATUS_ALL)
    yield Workload("status-changed", f"{title}, the {changed:,} changed ones", "status-changed", path,
                   ("status", path), changed, STATUS_CHANGED, svn_items=lines)
    yield Workload("status-aggregated", f"{title}, all with aggregation", "status-aggregated", path, everything, items,
                   STATUS_ALL, svn_items=lines)
    yield Workload("status-folder-aggregated", f"{title}, the top folder with aggregation",
                   "status-folder-aggregated", path, everything, 1, Goals(svn=1.3), plain_items=items)
    flat = folder.record["items"]
    yield Workload("status-one-folder", f"status of one folder of {flat:,} items", "status-all",
                   str(folder.working_copy), ("status", "-v", str(folder.working_copy)), flat, STATUS_ALL,
                   svn_items=lines)


def reading_workloads(folder, history, large, server):
    revisions = history.record["items"]
    for scheme, url in (("file", history.url()), ("svn", server.url(history))):
        yield Workload(f"log-{scheme}", f"log of {revisions:,} revisions with paths, {scheme}://", "log", url,
                       ("log", "-v", url), revisions, Goals(call=1.3), svn_items=log_entries)
    entries = folder.record["entries"]
    yield Workload("list", f"listing of {entries:,} entries", "list", folder.url("trunk"),
                   ("list", "-v", folder.url("trunk")), entries, Goals(call=1.2),
                   svn_items=lambda output: lines(output) - 1)  # the first line tells of the folder itself
    size = large.record["items"]
    yield Workload("cat", f"contents of a file of {size // 1000:,} kB", "cat", large.url("large.txt"),
                   ("cat", large.url("large.txt")), size, Goals(call=1.1), svn_items=len)


def start_workloads():
    for bundles in (1, 4):
        yield Workload(f"start-{bundles}", f"start-up with {bundles} bundle{'s' if bundles > 1 else ''}", "start",
                       svn=("--version", "--quiet"), bundles=bundles)


def growth_workloads(trees):
    for tree in trees:
        yield status_of_tree(tree, f"status-all-{tree.record['files']}", Goals(bytes=STATUS_ALL.bytes))


class DataSets:
    """The data sets of a run."""

    def __init__(self, cache, sizes):
        self.tree = data.TreeData(cache, sizes.tree, PER_FOLDER)
        self.folder = data.TreeData(cache, sizes.folder, sizes.folder)
        self.history = data.LogData(cache, sizes.revisions)
        self.large = data.FileData(cache, sizes.file)
        self.others = [data.TreeData(cache, files, PER_FOLDER) for files in sizes.others]

    def make(self, log):
        for data_set in [self.tree, self.folder, self.history, self.large] + self.others:
            data_set.make(log)


def all_workloads(data_sets, server):
    yield from start_workloads()
    yield from status_workloads(data_sets.tree, data_sets.folder)
    yield from reading_workloads(data_sets.folder, data_sets.history, data_sets.large, server)
    yield from growth_workloads(data_sets.others)
