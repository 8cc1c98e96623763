#!/usr/bin/python3
"""Runs hsvn against a hostile server: whatever is answered, it neither crashes nor hangs nor writes outside its target.

usage: hostile.py HSVN [COMMAND ...]
"""

import concurrent.futures
import contextlib
import os
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest

import fixtures
import hostileserver

HSVN = os.path.abspath(sys.argv[1])
TIME_LIMIT = 20  # of one call, in seconds

DRIVEN = list(hostileserver.DRIVES)
BROKEN = [name + time for name in hostileserver.ANSWERS for time in ("", "+early")]
ROOTS = list(hostileserver.ROOTS)
NUMBERED = [name + time for name in hostileserver.NUMBERS for time in ("", "+early")]
LOGINS = list(hostileserver.LOGINS)
NAMED = ["honest", *hostileserver.NAMES, *NUMBERED, "bare", "kind-odd", "kind-odd+early", "kind-none+early", "bad-date",
         "no-date", "no-author"]
LISTED = NAMED + [name + "-dir" for name in hostileserver.NAMES]
FEW = ["honest", *hostileserver.PATHS, "no-date", "minus-one", "most+early", "kind-none+early"]

# Of each command its arguments, where "URL" and "TARGET" are replaced, and what it is attacked with.
COMMANDS = {
    "checkout": ("checkout URL TARGET", DRIVEN + BROKEN + ROOTS),
    "export": ("export URL TARGET", DRIVEN + BROKEN),
    "export-file": ("export URL/file TARGET", NAMED + BROKEN),
    "update": ("update TARGET", DRIVEN + BROKEN),
    "switch": ("switch --ignore-ancestry URL TARGET", DRIVEN + BROKEN),
    "switch-related": ("switch URL TARGET", FEW),
    "merge": ("merge --ignore-ancestry -r0:1 URL TARGET", DRIVEN + BROKEN + ROOTS),
    "merge-related": ("merge URL/branch TARGET", FEW + BROKEN),
    "merge-change": ("merge -c1 URL TARGET", FEW),
    "status": ("status -u TARGET", DRIVEN + BROKEN),
    "diff": ("diff --summarize --notice-ancestry --old URL@1 --new URL@1", DRIVEN + BROKEN),
    "diff-wc": ("diff -r1 TARGET", DRIVEN),
    "list": ("list -R URL", LISTED + BROKEN),
    "list-locks": ("list -v URL", NAMED + BROKEN),
    "log": ("log -v URL", NAMED + BROKEN),
    "log-merged": ("log -g -v URL/deep/er", FEW + ["nested", "ended"]),
    "cat": ("cat URL/file", NAMED + BROKEN),
    "cat-wc": ("cat -rHEAD TARGET/honest", FEW),
    "blame": ("blame URL/file", NAMED + BROKEN),
    "blame-merged": ("blame -g URL/file", FEW),
    "info": ("info -R URL", LISTED + BROKEN + ROOTS + LOGINS),
    "info-deep": ("info -R URL/deep/er", FEW),
    "info-wc": ("info -rHEAD TARGET", FEW),
    "proplist": ("proplist -v -R URL", LISTED + BROKEN),
    "propget": ("propget -R svn:externals URL", LISTED),
    "inherited": ("proplist -v --show-inherited-props URL/deep/er", NAMED + BROKEN),
    "revprop": ("proplist -v --revprop -r1 URL", FEW),
    "revprop-set": ("propset --revprop -r1 x y URL", FEW),
    "lock": ("lock URL/file", FEW + BROKEN),
    "lock-wc": ("lock TARGET/honest", FEW),
    "unlock": ("unlock --force URL/file", FEW + BROKEN),
    "mkdir": ("mkdir -m x URL/new", FEW + BROKEN),
    "copy": ("copy -m x URL/file URL/new", FEW + BROKEN),
    "copy-here": ("copy URL/deep TARGET/new", FEW),
    "move": ("move -m x URL/file URL/new", FEW),
    "delete": ("delete -m x URL/file", FEW),
    "import": ("import -m x TARGET URL/new", FEW),
    "relocate": ("relocate URL TARGET", FEW + ROOTS),
}


class Attack:
    """One call in a folder of its own, where the target is three levels down beside a folder that links lead to."""

    def __init__(self, root, server, command, attack):
        self.folder = os.path.join(root, command, attack)
        self.target = os.path.join(self.folder, "far/above/target")
        self.arguments = [word.replace("URL", f"{server}/{attack}").replace("TARGET", self.target)
                          for word in COMMANDS[command][0].split()]
        os.makedirs(os.path.join(self.folder, "far/above/outside"))
        if command not in ("checkout", "export", "export-file"):
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


@contextlib.contextmanager
def waiting_arguments(attack, root):
    """Of a call that waits for a server or for the program of a tunnel: for a connection, for its first word, for its
    last, or for it to take what is sent."""
    tunnels = {"tunnel-silent": "sleep 100",
               "tunnel-full": f"(head -c 100000; exec sleep 100) | svnserve -t -r {root}/repository"}
    sent = ["import", "-m", "x", os.path.join(root, "sent")]
    if attack == "tunnel-full":
        subprocess.run(["svnadmin", "create", os.path.join(root, "repository")], check=True)
        with open(os.path.join(root, "sent"), "wb") as file:
            file.write(os.urandom(2 ** 25))
    if attack in tunnels:
        fixtures.write(root, "tunnel", tunnels[attack])
        arguments = sent if attack == "tunnel-full" else ["info"]
        yield [*arguments, "svn+waiting://host/new", f"--config-option=config:tunnels:waiting=sh {root}/tunnel"]
    else:
        with hostileserver.waiting(attack) as url:
            yield ["info", url]


@contextlib.contextmanager
def waiting_call(attack):
    with tempfile.TemporaryDirectory() as root, waiting_arguments(attack, root) as arguments:
        with subprocess.Popen([HSVN, *arguments], env=fixtures.environment(root), stdin=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, start_new_session=True) as call:
            try:
                time.sleep(0.5)
                yield call
            finally:
                with contextlib.suppress(ProcessLookupError):
                    os.killpg(call.pid, signal.SIGKILL)  # what a tunnel has started, too


class Attacks(unittest.TestCase):
    def test_no_server_holds_who_gives_up(self):
        for attack in ("unconnected", "silent", "endless", "tunnel-silent", "tunnel-full"):
            with self.subTest(attack), waiting_call(attack) as call:
                self.assertIsNone(call.poll())
                call.send_signal(signal.SIGINT)
                self.assertEqual(call.wait(TIME_LIMIT), -signal.SIGINT)

    def test_no_answer_harms(self):
        with tempfile.TemporaryDirectory() as root, hostileserver.running() as server:
            subprocess.run([HSVN, "checkout", "-q", server + "/whole", os.path.join(root, "honest")], check=True,
                           env=fixtures.environment(root), timeout=TIME_LIMIT)
            with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
                rows = [(command, attack) for command, (_, attacks) in COMMANDS.items() for attack in attacks
                        if command in sys.argv[2:] or not sys.argv[2:]]
                faults = pool.map(lambda row: Attack(root, server, *row).fault(), rows)
                for row, fault in zip(rows, faults):
                    with self.subTest(row):
                        self.assertIsNone(fault)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
