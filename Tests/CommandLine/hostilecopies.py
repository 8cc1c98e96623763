#!/usr/bin/python3
"""Runs hsvn on hostile working copies: whatever their administrative area holds, it ends with an answer or an error.

usage: hostilecopies.py HSVN
"""

import concurrent.futures
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import fixtures

HSVN = os.path.abspath(sys.argv[1])
TIME_LIMIT = 20  # of one call, in seconds

COMMANDS = ["status -v", "status -u", "info -R", "update", "revert -R", "cleanup"]

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
    os.remove(os.path.join(area, "wc.db"))
    for name in ("entries", "format"):
        fixtures.write(area, name, f"{what}\n")


def fault(copy, command, what):
    """What is wrong with the end of a command on a damaged copy, or nothing."""
    with tempfile.TemporaryDirectory() as folder:
        target = shutil.copytree(copy, os.path.join(folder, "copy"))
        damage(target, what)
        try:
            result = subprocess.run([HSVN, *command.split(), target, "--non-interactive"], check=False, timeout=TIME_LIMIT,
                                    env=fixtures.environment(folder), stdin=subprocess.DEVNULL, capture_output=True)
        except subprocess.TimeoutExpired:
            return "hangs"
        if result.returncode not in (0, 1) or (result.returncode == 1 and not result.stderr.startswith(b"hsvn: ")):
            return f"ends with {result.returncode}: {result.stderr[-300:]}"
        return None


class Attacks(unittest.TestCase):
    def test_no_working_copy_harms(self):
        with tempfile.TemporaryDirectory() as root, concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            copy = make(root)
            rows = [(command, what) for command in COMMANDS for what in FORMATS]
            for row, found in zip(rows, pool.map(lambda row: fault(copy, *row), rows)):
                with self.subTest(row):
                    self.assertIsNone(found)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
