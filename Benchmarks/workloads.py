"""What is measured: each operation, on its data, beside the `svn` command that does the same."""

from dataclasses import dataclass

import data
import livedin


@dataclass(frozen=True)
class Sizes:
    """How much data the run works on."""

    tree: int
    folder: int
    revisions: int
    file: int
    lines: int  # of each of two compared files
    others: tuple  # sizes of the other trees whose status shows how time and memory grow


FULL = Sizes(tree=50_000, folder=20_000, revisions=20_000, file=100_000_000, lines=50_000, others=(5_000, 200_000))
QUICK = Sizes(tree=4_000, folder=1_000, revisions=600, file=10_000_000, lines=10_000, others=(1_000,))
TINY = Sizes(tree=400, folder=100, revisions=60, file=100_000, lines=500, others=(100,))

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


@dataclass(frozen=True)
class Cancelling:
    """A status scan of all items that is cancelled."""

    name: str
    title: str
    folder: object
    goal: float | None = None  # the longest time in seconds from the cancelling to the end


def lines(output):
    return output.count(b"\n")


def log_entries(output):
    return sum(line == b"-" * 72 for line in output.split(b"\n")) - 1


VERB_ALL = Goals(call=0.8, svn=0.75)
VERB_CHANGED = Goals(call=0.65, svn=0.75)
VERB_LIVED_IN_ALL = Goals(call=0.75, svn=0.75)
STATUS_ALL = Goals(call=1.6, svn=1.3, bytes=600)
STATUS_CHANGED = Goals(call=1.15, svn=1.3)
LIVED_IN_ALL = Goals(call=1.3, svn=1.3, bytes=600)
LIVED_IN_CHANGED = Goals(call=1.12, svn=1.3)
ONE_FOLDER_ALL = Goals(call=1.15, svn=1.3, bytes=600)
ONE_FOLDER_CHANGED = Goals(call=1.05, svn=1.3)


def status_all(name, title, path, items, goals=STATUS_ALL, shows_growth=False, svn_items=lines):
    return Workload(name, title, "status-all", str(path), ("status", "-v", str(path)), items, goals,
                    svn_items=svn_items, shows_growth=shows_growth)


def status_changed(name, title, path, changed, goals=STATUS_CHANGED, svn_items=lines):
    return Workload(name, title, "status-changed", str(path), ("status", str(path)), changed, goals,
                    svn_items=svn_items)


def aggregating_workloads(title, path, items):
    everything = ("status", "-v", str(path))
    yield Workload("status-aggregated", f"{title}, all with aggregation", "status-aggregated", str(path), everything,
                   items, STATUS_ALL, svn_items=lines)
    yield Workload("status-folder-aggregated", f"{title}, the top folder with aggregation", "status-folder-aggregated",
                   str(path), everything, 1, Goals(svn=1.3), plain_items=items)


def status_workloads(tree, folder):
    clean, edited = tree.record["items"], tree.record["edited items"]
    title = f"status of {clean:,} items"
    yield status_all("status-all", f"{title}, all", tree.working_copy, clean, shows_growth=True)
    yield status_changed("status-changed", f"{title}, changed ones (none is)", tree.working_copy, 0)
    yield from aggregating_workloads(title, tree.working_copy, clean)
    yield status_all("status-one-folder", f"status of one folder of {folder.record['items']:,} items, all",
                     folder.working_copy, folder.record["items"], ONE_FOLDER_ALL)
    title = f"status of {edited:,} items, {tree.record['changed']:,} changed"
    yield status_all("status-edited-all", f"{title}, all", tree.edited_copy, edited)
    yield status_changed("status-edited-changed", f"{title}, those", tree.edited_copy, tree.record["changed"])
    lived_in, unusual = tree.record["lived-in items"], tree.record["unusual"]
    title = f"status of {lived_in:,} lived-in items, {unusual:,} unusual"
    # Conflicts, externals and moves take further lines of svn's.
    yield status_all("status-lived-in-all", f"{title}, all", tree.lived_in_copy, lived_in, LIVED_IN_ALL, svn_items=None)
    yield status_changed("status-lived-in-changed", f"{title}, those", tree.lived_in_copy, unusual, LIVED_IN_CHANGED,
                         svn_items=None)
    yield from verb_workloads(tree)
    title = f"status of one folder of {folder.record['edited items']:,} items, {folder.record['changed']:,} changed"
    yield status_all("status-edited-one-folder", f"{title}, all", folder.edited_copy, folder.record["edited items"],
                     ONE_FOLDER_ALL)
    yield status_changed("status-edited-one-folder-changed", f"{title}, those", folder.edited_copy,
                         folder.record["changed"], ONE_FOLDER_CHANGED)


def verb_workloads(tree):
    """The verb may use several threads: its goals are for two processors that nothing else uses."""
    for label, title, path, everything, unusual, goals in (
            ("", "verb status of {:,} items", tree.working_copy, tree.record["items"], 0, VERB_ALL),
            ("lived-in-", "verb status of {:,} lived-in items", tree.lived_in_copy, tree.record["lived-in items"],
             tree.record["unusual"], VERB_LIVED_IN_ALL)):
        title = title.format(everything)
        yield Workload(f"status-verb-{label}all", f"{title}, all", "status-verb-all", str(path),
                       ("status", "-v", str(path)), everything, goals)
        yield Workload(f"status-verb-{label}changed", f"{title}, unusual ones ({unusual:,})", "status-verb-changed",
                       str(path), ("status", str(path)), unusual, VERB_CHANGED)


def reading_workloads(folder, history, large, server):
    revisions = history.record["items"]
    for scheme, url in (("file", history.url()), ("svn", server.url(history))):
        yield Workload(f"log-{scheme}", f"log of {revisions:,} revisions with paths, {scheme}://", "log", url,
                       ("log", "-v", url), revisions, Goals(call=1.1), svn_items=log_entries)
    entries = folder.record["entries"]
    yield Workload("list", f"listing of {entries:,} entries", "list", folder.url("trunk"),
                   ("list", "-v", folder.url("trunk")), entries, Goals(call=1.08),
                   svn_items=lambda output: lines(output) - 1)  # the first line tells of the folder itself
    size = large.record["items"]
    yield Workload("cat", f"contents of a file of {size // 1000:,} kB", "cat", large.url("large.txt"),
                   ("cat", large.url("large.txt")), size, Goals(call=1.0), svn_items=len)


def comparing_workloads(pair):
    lines = pair.record["items"]
    before, after = pair.working_copy / "before.txt", pair.working_copy / "after.txt"
    yield Workload("compare", f"comparison of two files of {lines:,} lines with {pair.record['changes']:,} changes",
                   "compare", str(pair.working_copy),
                   ("diff", "--internal-diff", f"--old={before}", f"--new={after}"), lines, Goals(call=1.2, bytes=20))


def start_workloads():
    for bundles in (1, 4):
        yield Workload(f"start-{bundles}", f"start-up with {bundles} bundle{'s' if bundles > 1 else ''}", "start",
                       svn=("--version", "--quiet"), bundles=bundles)


def shape_workloads(deep, foreign):
    for label, title, tree in (("deep", "in folders in one another", deep),
                               ("foreign", "with names outside ASCII", foreign)):
        title = f"status of {tree.record['items']:,} items {title}"
        yield status_all(f"status-{label}-all", f"{title}, all", tree.working_copy, tree.record["items"],
                         Goals(call=1.6, svn=1.3))
        yield status_changed(f"status-{label}-changed", f"{title}, changed ones (none is)", tree.working_copy, 0)


def growth_workloads(trees):
    for tree in trees:
        items = tree.record["items"]
        yield status_all(f"status-all-{tree.record['files']}", f"status of {items:,} items, all", tree.working_copy,
                         items, Goals(bytes=STATUS_ALL.bytes), shows_growth=True)


class DataSets:
    """The data sets of a run."""

    def __init__(self, cache, sizes):
        self.tree = livedin.LivedInData(cache, sizes.tree, PER_FOLDER, True)
        self.folder = data.TreeData(cache, sizes.folder, sizes.folder, True)
        self.history = data.LogData(cache, sizes.revisions)
        self.large = data.FileData(cache, sizes.file)
        self.pair = data.PairData(cache, sizes.lines)
        self.deep = data.DeepTreeData(cache, sizes.folder)
        self.foreign = data.ForeignTreeData(cache, sizes.folder, PER_FOLDER)
        self.others = [data.TreeData(cache, files, PER_FOLDER, False) for files in sizes.others]

    def make(self, log):
        for data_set in [self.tree, self.folder, self.history, self.large, self.pair, self.deep, self.foreign] + self.others:
            data_set.make(log)


def all_cancelling(data_sets):
    tree, folder = data_sets.tree, data_sets.folder
    yield Cancelling("cancel-tree", f"status of {tree.record['items']:,} items, all", tree.working_copy, goal=0.1)
    # No goal: Subversion cannot be stopped while it reads a folder.
    yield Cancelling("cancel-one-folder", f"status of one folder of {folder.record['items']:,} items, all",
                     folder.working_copy)


def all_workloads(data_sets, server):
    yield from start_workloads()
    yield from status_workloads(data_sets.tree, data_sets.folder)
    yield from reading_workloads(data_sets.folder, data_sets.history, data_sets.large, server)
    yield from comparing_workloads(data_sets.pair)
    yield from shape_workloads(data_sets.deep, data_sets.foreign)
    yield from growth_workloads(data_sets.others)
