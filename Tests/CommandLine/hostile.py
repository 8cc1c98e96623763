#!/usr/bin/python3
"""Runs hsvn against a hostile server: whatever is answered, it neither crashes nor hangs nor writes outside its target.

usage: hostile.py HSVN [COMMAND ...]
"""

import concurrent.futures
import contextlib
import os
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unittest

import fixtures
import hostileserver

HSVN = os.path.abspath(sys.argv[1])
TIME_LIMIT = 20  # of one call, in seconds

DRIVEN = list(hostileserver.DRIVES)
BROKEN = [name + time for name in hostileserver.ANSWERS for time in ("", "+early")]
NAMED = ["honest", *hostileserver.NAMES, "bare", "kind-odd", "bad-date", "negative", "huge"]
LISTED = NAMED + [name + "-dir" for name in hostileserver.NAMES]

# Of each command its arguments, where "URL" and "TARGET" are replaced, and what it is attacked with.
COMMANDS = {
    "checkout": ("checkout URL TARGET", DRIVEN),
    "export": ("export URL TARGET", DRIVEN),
    "export-file": ("export URL/file TARGET", NAMED),
    "update": ("update TARGET", DRIVEN),
    "switch": ("switch --ignore-ancestry URL TARGET", DRIVEN),
    "merge": ("merge --ignore-ancestry -r0:1 URL TARGET", DRIVEN),
    "status": ("status -u TARGET", DRIVEN),
    "diff": ("diff --summarize --notice-ancestry --old URL@1 --new URL@1", DRIVEN),
    "list": ("list -R URL", LISTED),
    "list-locks": ("list -v URL", NAMED),
    "log": ("log -v URL", NAMED),
    "cat": ("cat URL/file", NAMED),
    "blame": ("blame URL/file", NAMED),
    "info": ("info -R URL", LISTED),
    "proplist": ("proplist -v -R URL", LISTED),
    "inherited": ("proplist -v --show-inherited-props URL", NAMED),
}

# What Subversion 1.14 does not survive by itself, before it hands anything on: entries "." and "" of a directory, the
# former also as the place of an inherited property, and a file of a comparison whose text has no end.
NOT_SURVIVED = {("info", "dot"), ("info", "dot-dir"), ("info", "empty-dir"), ("proplist", "dot"),
                ("proplist", "dot-dir"), ("proplist", "empty-dir"), ("inherited", "dot"), ("merge", "no-text-end")}


class Attack:
    """One call in a folder of its own, where the target is three levels down beside a folder that links lead to."""

    def __init__(self, root, server, command, attack):
        self.folder = os.path.join(root, command, attack)
        self.target = os.path.join(self.folder, "far/above/target")
        self.arguments = [word.replace("URL", f"{server}/{attack}").replace("TARGET", self.target)
                          for word in COMMANDS[command][0].split()]
        os.makedirs(os.path.join(self.folder, "far/above/outside"))
        if self.target in self.arguments and command not in ("checkout", "export", "export-file"):
            self.prepare(os.path.join(root, "honest"), f"{server}/{attack}")
        self.before = self.around()

    def prepare(self, original, url):
        """Makes the target a working copy of what will be attacked with."""
        shutil.copytree(original, self.target)
        with contextlib.closing(sqlite3.connect(os.path.join(self.target, ".svn/wc.db"))) as database, database:
            database.execute("UPDATE repository SET root = ?", [url])

    def around(self):
        """Everything in the folder but the target."""
        found = []
        for folder, folders, files in os.walk(self.folder):
            found += [os.path.join(folder, name) for name in folders + files]
            folders[:] = [name for name in folders if os.path.join(folder, name) != self.target]
        return sorted(set(found) - {self.target, os.path.join(self.folder, "far/home")})

    def fault(self):
        """What is wrong with the call's end, or nothing."""
        here = os.path.join(self.folder, "far/above")
        try:
            result = subprocess.run([HSVN, *self.arguments, "--non-interactive"], cwd=here, check=False,
                                    env=fixtures.environment(here), stdin=subprocess.DEVNULL, capture_output=True,
                                    timeout=TIME_LIMIT)
        except subprocess.TimeoutExpired:
            return "hangs"
        if result.returncode not in (0, 1):
            return f"ends with {result.returncode}: {result.stderr[-300:]}"
        if result.returncode == 1 and not result.stderr.startswith(b"hsvn: "):
            return f"fails without a reason: {result.stderr[-300:]}"
        outside = set(self.around()) ^ set(self.before)
        if outside or os.path.lexists("/tmp/hsvn-escaped"):
            return f"writes outside: {sorted(outside)}"
        if self.folder.endswith("/honest") and result.returncode != 0:
            return f"refuses an honest server: {result.stderr[-300:]}"
        return None


class Attacks(unittest.TestCase):
    def test_no_answer_harms(self):
        with tempfile.TemporaryDirectory() as root, hostileserver.running() as server:
            subprocess.run([HSVN, "checkout", "-q", server + "/honest", os.path.join(root, "honest")], check=True,
                           env=fixtures.environment(root), timeout=TIME_LIMIT)
            with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
                rows = [(command, attack) for command, (_, attacks) in COMMANDS.items() for attack in attacks + BROKEN
                        if (command, attack) not in NOT_SURVIVED and (command in sys.argv[2:] or not sys.argv[2:])]
                faults = pool.map(lambda row: Attack(root, server, *row).fault(), rows)
                for row, fault in zip(rows, faults):
                    with self.subTest(row):
                        self.assertIsNone(fault)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
