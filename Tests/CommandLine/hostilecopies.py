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
import subprocess
import sys
import tempfile
import unittest

import fixtures

HSVN = os.path.abspath(sys.argv[1])
TIME_LIMIT = 20  # of one call, in seconds

COMMANDS = ["status -v", "status -u", "info -R", "diff", "update", "revert -R", "cleanup", "resolve --accept working -R"]

PATHS = ["..", "/x", "a//b", "folder/../b", "folder/"]
CONFLICT = "((6 update ((10 subversion {root} 0  {path} {revision} 4 file))) ({kind}))"
MARKERS = "(4 text ((17 ../victim/precious 17 ../victim/precious 17 ../victim/precious)))"
ENDLESS = "WITH RECURSIVE endless(n) AS (SELECT 1 UNION ALL SELECT n FROM endless)"
# What is done to the database.
DAMAGES = [
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
    area = os.path.join(copy, ".svn")
    if isinstance(what, int):
        os.remove(os.path.join(area, "wc.db"))
        for name in ("entries", "format"):
            fixtures.write(area, name, f"{what}\n")
        return
    with contextlib.closing(sqlite3.connect(os.path.join(area, "wc.db"))) as database, database:
        database.executescript(what)


def fault(copy, command, what):
    """What is wrong with the end of a command on a damaged copy, or nothing."""
    with tempfile.TemporaryDirectory() as folder:
        target = shutil.copytree(copy, os.path.join(folder, "copy"))
        precious = pathlib.Path(folder, "victim", "precious")
        precious.parent.mkdir()
        precious.write_text("another's", encoding="utf-8")
        damage(target, what)
        try:
            result = subprocess.run([HSVN, *command.split(), target, "--non-interactive"], check=False, timeout=TIME_LIMIT,
                                    env=fixtures.environment(folder), stdin=subprocess.DEVNULL, capture_output=True)
        except subprocess.TimeoutExpired:
            return "hangs"
        if result.returncode not in (0, 1) or (result.returncode == 1 and not result.stderr.startswith(b"hsvn: ")):
            return f"ends with {result.returncode}: {result.stderr[-300:]}"
        is_untouched = precious.is_file() and precious.read_text(encoding="utf-8") == "another's"
        return None if is_untouched else "changes what lies beside"


class Attacks(unittest.TestCase):
    def test_no_working_copy_harms(self):
        with tempfile.TemporaryDirectory() as root, concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            copy = make(root)
            rows = [(command, what) for command in COMMANDS for what in DAMAGES + FORMATS]
            for row, found in zip(rows, pool.map(lambda row: fault(copy, *row), rows)):
                with self.subTest(row):
                    self.assertIsNone(found)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
