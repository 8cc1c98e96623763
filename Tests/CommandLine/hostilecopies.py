#!/usr/bin/python3
"""Runs hsvn on hostile working copies: whatever their administrative area holds, it ends with an answer or an error,
and nothing beside the working copy is touched.

usage: hostilecopies.py HSVN
"""

import concurrent.futures
import contextlib
import os
import pathlib
import shutil
import sqlite3
import struct
import subprocess
import sys
import tempfile
import unittest

import fixtures

HSVN = os.path.abspath(sys.argv[1])
TIME_LIMIT = 20  # of one call, in seconds

COMMANDS = ["status -v", "status -u", "info -R", "diff", "update", "revert -R", "cleanup",
            "cleanup --vacuum-pristines --remove-unversioned --remove-ignored --include-externals",
            "resolve --accept working -R", "upgrade"]

PATHS = ["..", "/x", "a//b", "folder/../b", "folder/"]
CONFLICT = "((6 update ((10 subversion {root} 0  {path} {revision} 4 file))) ({kind}))"
MARKERS = "(4 text ((17 ../victim/precious 17 ../victim/precious 17 ../victim/precious)))"
LINK = "ln -s ../victim link"  # at which nothing versioned is
PLACE = "1 AS wc_id, '{path}' AS local_relpath, {depth} AS op_depth, 'nowhere' AS parent_relpath, repos_id, repos_path"
ENDLESS = "WITH RECURSIVE endless(n) AS (SELECT 1 UNION ALL SELECT n FROM endless)"


def add_node(path, kind, depth, further="0"):
    """A row that differs from that of another item in its place, and in whether it was moved there."""
    return (f"INSERT INTO nodes SELECT {PLACE.format(path=path, depth=depth)}, revision, 'normal', {further}, NULL,"
            " kind, properties, depth, checksum, NULL, 1, 1, 'x', NULL, NULL, NULL, NULL, NULL FROM nodes"
            f" WHERE local_relpath = '{kind}'")


def add_work(work):
    return f"INSERT INTO work_queue(work) VALUES ('{work}')"


def name_in_journal(copy):
    """A journal of several databases, with the name of another file at its end."""
    name = os.path.join(os.path.dirname(copy), "victim/precious").encode()
    mark = bytes.fromhex("d9d505f920a163d7")
    with open(os.path.join(copy, ".svn/wc.db-journal"), "wb") as journal:
        journal.write((mark + struct.pack(">IIIII", 0, 1, 1, 512, 4096)).ljust(512, b"\0")
                      + struct.pack(">I", 2 ** 18 + 1) + name + struct.pack(">II", len(name), sum(name)) + mark)


def tangle(copy):
    """Pages of a table that lead to one and the same page a hundred times each, six pages deep."""
    path = os.path.join(copy, ".svn/wc.db")
    with contextlib.closing(sqlite3.connect(path)) as database:
        root, = database.execute("SELECT rootpage FROM sqlite_master WHERE name = 'ACTUAL_NODE'").fetchone()
    pages = bytearray(pathlib.Path(path).read_bytes())
    size = int.from_bytes(pages[16:18], "big")
    last, start = len(pages) // size, (root - 1) * size

    def page(child):
        cells = [size - 5 * (index + 1) for index in range(100)]
        return struct.pack(">BHHHBI100H", 5, 0, 100, cells[-1], 0, child, *cells).ljust(size - 500, b"\0") \
            + struct.pack(">IB", child, 1) * 100

    pages += b"".join(page(last + depth) for depth in range(2, 8)) + pages[start:start + size]
    pages[start:start + size] = page(last + 1)
    pages[28:32] = struct.pack(">I", last + 7)
    pathlib.Path(path).write_bytes(pages)


# What is done to the files, and to the database afterwards.
FILES = [
    *((LINK, add_work(work)) for work in [
        "(11 file-remove 13 link/precious)", "(10 dir-remove 8 link/sub 1 1)", "(9 file-move 4 file 13 link/precious)",
        "(9 file-move 13 link/precious 5 taken)", "(14 file-translate 4 file 4 file 13 link/precious)",
        "(11 dir-install 8 link/new)", "(15 sync-file-flags 13 link/precious)"]),
    (LINK, f"UPDATE actual_node SET conflict_data = '((6 update ()) ({MARKERS.replace('17 ../victim', '13 link')}))'"),
    # Moves of which one half is made: what has come is put back.
    *((f"{LINK}; rm file", add_node(path, "file", depth, further="1"))
      for path, depth in [("../victim/precious", 3), ("link/precious", 2)]),
    # An upgrade that was interrupted: what the directories held for the former format is removed.
    *((f"{LINK}; mkdir ../victim/.svn ../victim/sub/.svn; touch ../victim/.svn/precious ../victim/sub/.svn/precious",
       add_node(path, "folder", 0) + ";" + add_work("(11 postupgrade)")) for path in ("../victim", "link/sub")),
    # What SQLite would read from or write to in the name of the database, and Subversion in the area.
    *((script, "") for script in [
        "ln -sf ../../victim/precious .svn/wc.db-journal", "ln -s ../../victim/precious .svn/wc.db-wal",
        "mv .svn/wc.db ../victim; ln -s ../../victim/wc.db .svn", "rm .svn/wc.db; mkfifo .svn/wc.db",
        "rm .svn/wc.db; ln -s /dev/zero .svn/wc.db", "rm -r .svn/tmp; ln -s ../../victim .svn/tmp",
        "rm -r .svn/pristine; ln -s ../../victim .svn/pristine",
        "rm .svn/wc.db .svn/entries; mkfifo .svn/entries",
        "rm .svn/wc.db .svn/entries .svn/format; ln -s /dev/zero .svn/format; ln -s /dev/zero .svn/entries"]),
    (name_in_journal, ""),
    # Pages and columns that take for ever to be read.
    (tangle, ""),
    ("", "CREATE TABLE kept AS SELECT 1; DROP TABLE actual_node; CREATE TABLE actual_node(wc_id, local_relpath,"
     " parent_relpath, properties AS (hex(zeroblob(400000000))), conflict_old, conflict_new, conflict_working,"
     " prop_reject, changelist, text_mod, tree_conflict_data, conflict_data, older_checksum, left_checksum,"
     " right_checksum); INSERT INTO actual_node(wc_id, local_relpath, parent_relpath) WITH n(i) AS (SELECT 1 UNION ALL"
     " SELECT i + 1 FROM n LIMIT 300) SELECT 1, 'x' || i, '' FROM n"),
]
# What is done to the database.
DAMAGES = [
    "UPDATE nodes SET checksum = NULL",
    "UPDATE OR REPLACE nodes SET local_relpath = x'00ff28' WHERE kind = 'file'",
    # Views for tables, and triggers, whose rows never end.
    *(f"CREATE TABLE kept AS SELECT * FROM {table}; DROP TABLE {table};"
      f"CREATE VIEW {table} AS {ENDLESS} SELECT kept.* FROM kept, endless"
      for table in ("nodes", "repository", "wcroot", "externals", "actual_node", "work_queue", "pristine")),
    f"DROP VIEW nodes_current; CREATE VIEW nodes_current AS {ENDLESS} SELECT nodes.* FROM nodes, endless",
    *(f"CREATE TRIGGER odd AFTER {change} BEGIN {ENDLESS.replace('WITH', 'INSERT INTO wcroot WITH')}"
      " SELECT n, n FROM endless; END" for change in ("INSERT ON wc_lock", "DELETE ON work_queue")),
    *(f"UPDATE OR REPLACE nodes SET {column} = 'odd' {place}" for column in ("presence", "kind", "op_depth")
      for place in ("", "WHERE local_relpath = ''", "WHERE local_relpath = 'folder'", "WHERE local_relpath = 'gone'")),
    *(f"UPDATE OR REPLACE nodes SET {column} = '{path}' WHERE local_relpath = '{item}'"
      for column in ("local_relpath", "parent_relpath", "repos_path") for path in PATHS for item in ("folder", "gone")),
    *(f"UPDATE OR REPLACE nodes SET moved_to = '{path}' WHERE local_relpath = 'gone'" for path in PATHS),
    *(f"UPDATE OR REPLACE actual_node SET local_relpath = '{path}'" for path in PATHS),
    "UPDATE OR REPLACE nodes SET op_depth = 1 WHERE local_relpath = ''",
    "UPDATE OR REPLACE nodes SET kind = 'symlink' WHERE local_relpath = 'moved'",
    "UPDATE OR REPLACE nodes SET op_depth = -1 WHERE local_relpath = 'folder'",
    "UPDATE OR REPLACE nodes SET local_relpath = '' WHERE local_relpath = 'folder'",
    "UPDATE OR REPLACE nodes SET parent_relpath = ''",
    "UPDATE OR REPLACE nodes SET repos_id = NULL WHERE local_relpath = 'file'",
    "UPDATE OR REPLACE nodes SET repos_id = -1",
    "UPDATE OR REPLACE nodes SET repos_path = NULL",
    "UPDATE nodes SET properties = ''",
    "UPDATE nodes SET properties = replace(hex(zeroblob(500000)), '0', '(')",
    "UPDATE actual_node SET properties = ''",
    "UPDATE repository SET root = ''",
    "UPDATE repository SET root = 'a//b'",
    *(f"INSERT INTO externals SELECT 1, '{path}', '', 1, 'normal', 'dir', '', '', NULL, NULL"
      for path in ("", "..", "/x")),
    # A conflict whose item is not found below its folder.
    "UPDATE actual_node SET changelist = NULL, conflict_data = '((6 update ()) ((4 text (() () ()))))';"
    "UPDATE nodes SET parent_relpath = '.' WHERE local_relpath = 'file'",
    # Conflicts without some of their parts, or with files that are another's.
    *(f"UPDATE actual_node SET conflict_data = '{conflict}'" for conflict in [
        "", "()", "(() ())", "((6 update ()) ((4 tree (1 a))))", "((6 update ()) ((4 text (1 a 1 b))))",
        "((6 update ()) ((4 prop ())))", "((6 update ((10 subversion 1 a))) ((4 tree () 6 edited 4 edit)))",
        CONFLICT.format(root="4 a//b", path="1 x", revision="1 1", kind="4 tree () 6 edited 4 edit"),
        CONFLICT.format(root="8 file:///", path="2 ..", revision="1 1", kind="4 tree () 6 edited 4 edit"),
        CONFLICT.format(root="8 file:///", path="1 x", revision="2 -1", kind="4 tree () 6 edited 4 edit"),
        f"((6 update ()) ({MARKERS}))"]),
    # Work that a clean-up would do elsewhere, or that lacks what it is done to.
    *(f"INSERT INTO work_queue(work) VALUES ('{work}')" for work in [
        "", "()", "(11 file-remove)", "(12 file-install 4 file)", "(9 file-move 4 file)", "(14 file-translate 4 file)",
        "(11 file-remove 18 ../victim/precious)", "(10 dir-remove 9 ../victim 1 1)",
        "(9 file-move 4 file 18 ../victim/precious)", "(12 file-install 18 ../victim/precious 1 0 1 0 4 file)",
        "(14 file-translate 18 ../victim/precious 4 file 18 ../victim/precious)"]),
]
# What the text files state.
FORMATS = [0, 1, 4, 12, 13, 20, 29, 31, 99, -1, 2 ** 40]


def make(root):
    """A working copy with an item of each kind."""
    url = "file://" + os.path.join(root, "repository")
    copy = os.path.join(root, "copy")
    subprocess.run(["svnadmin", "create", url.removeprefix("file://")], check=True)
    fixtures.run_svn(root, "checkout", url, "copy")
    os.makedirs(os.path.join(copy, "folder/inner"))
    for name in ("file", "folder/inner/file", "gone"):
        fixtures.write(copy, name, name)
    fixtures.run_svn(copy, "add", "file", "folder", "gone")
    fixtures.run_svn(copy, "commit", "-m", "All")
    fixtures.run_svn(copy, "update")
    fixtures.run_svn(copy, "move", "gone", "moved")
    fixtures.run_svn(copy, "copy", "folder", "copied")
    fixtures.run_svn(copy, "changelist", "list", "file")
    return copy


def damage(copy, what):
    if isinstance(what, tuple):
        script, what = what
        if callable(script):
            script(copy)
        else:
            subprocess.run(["sh", "-ec", script], cwd=copy, check=True)
    area = os.path.join(copy, ".svn")
    if what == "":
        return
    if isinstance(what, int):
        os.remove(os.path.join(area, "wc.db"))
        for name in ("entries", "format"):
            fixtures.write(area, name, f"{what}\n")
        return
    with contextlib.closing(sqlite3.connect(os.path.join(area, "wc.db"))) as database, database:
        database.executescript(what)


def around(folder):
    """All that lies beside a working copy, with what the files hold and who may do what with them."""
    victim = pathlib.Path(folder, "victim")
    return {item: (item.stat().st_mode, item.read_bytes() if item.is_file() else b"") for item in victim.rglob("*")}


def fault(copy, command, what):
    """What is wrong with the end of a command on a damaged copy, or nothing."""
    with tempfile.TemporaryDirectory() as folder:
        target = shutil.copytree(copy, os.path.join(folder, "copy"))
        os.makedirs(os.path.join(folder, "victim/sub"))
        for name in ("precious", "sub/further"):
            fixtures.write(os.path.join(folder, "victim"), name, "another's")
        damage(target, what)
        before = around(folder)
        try:
            result = subprocess.run([HSVN, *command.split(), target, "--non-interactive"], check=False, timeout=TIME_LIMIT,
                                    env=fixtures.environment(folder), stdin=subprocess.DEVNULL, capture_output=True)
        except subprocess.TimeoutExpired:
            return "hangs"
        if result.returncode not in (0, 1) or (result.returncode == 1 and not result.stderr.startswith(b"hsvn: ")):
            return f"ends with {result.returncode}: {result.stderr[-300:]}"
        return None if around(folder) == before else "changes what lies beside"


class Attacks(unittest.TestCase):
    def test_no_working_copy_harms(self):
        with tempfile.TemporaryDirectory() as root, concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            copy = make(root)
            rows = [(command, what) for command in COMMANDS for what in DAMAGES + FILES + FORMATS]
            for row, found in zip(rows, pool.map(lambda row: fault(copy, *row), rows)):
                with self.subTest(row):
                    self.assertIsNone(found)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
