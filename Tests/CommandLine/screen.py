#!/usr/bin/python
"""Tests what hsvn does for people at a terminal, and for nobody else: pager, text that cannot control the terminal,
suggestions, progress; and the graph of a log.

usage: screen.py HSVN
"""

import hashlib
import os
import pty
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import fixtures

HSVN = os.path.realpath(sys.argv[1])
SVN = "svn"
# What is no character, what controls a terminal, and what turns lines around.
HOSTILE = "a\x1b]0;evil\x07b\rc\x08d\x7fe\u009b31mf\u202eg\u2066h\u200fi\u2028j\u061ck \u00e4\u20ac\tend"
HARMLESS = ("a?\\027]0;evil?\\007b?\\013c?\\008d?\\127e?\\194?\\15531mf{U+202E}g{U+2066}h{U+200F}i{U+2028}j{U+061C}k "
            "\u00e4\u20ac\tend")


class Run:
    """hsvn as the leader of a terminal of its own."""

    def __init__(self, *arguments, folder, environment):
        self.bytes = b""
        given = {**fixtures.environment(folder), "LC_ALL": "C.UTF-8", "TERM": "xterm", "HSVN_PAGER": "", **environment}
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            try:
                os.chdir(folder)
                signal.signal(signal.SIGINT, signal.SIG_DFL)
                os.execve(HSVN, ["hsvn", *arguments], {name: value for name, value in given.items() if value is not None})
            finally:
                os._exit(127)

    @property
    def shown(self):
        return self.bytes.decode("utf-8", "surrogateescape").replace("\r\n", "\n")

    def read(self, pattern=None):
        """Reads until a pattern is shown, or until the end."""
        deadline = time.monotonic() + 60
        while pattern is None or not re.search(pattern, self.shown):
            if not select.select([self.terminal], [], [], max(0, deadline - time.monotonic()))[0]:
                raise TimeoutError(repr(self.shown))
            try:
                piece = os.read(self.terminal, 65536)
            except OSError:  # how a terminal ends
                piece = b""
            if not piece:
                break
            self.bytes += piece

    def type(self, text):
        os.write(self.terminal, text.encode())

    def end(self):
        """What was shown and how the program ended."""
        self.read()
        os.close(self.terminal)
        return self.shown, os.waitstatus_to_exitcode(os.waitpid(self.process, 0)[1])


def run(*arguments, folder, **environment):
    return Run(*arguments, folder=folder, environment=environment).end()


def piped(program, *arguments, folder, **environment):
    ran = subprocess.run([program, *arguments], cwd=folder, stdin=subprocess.DEVNULL, capture_output=True, check=False,
                         env={**fixtures.environment(folder), "LC_ALL": "C.UTF-8", **environment}, timeout=60)
    return ran.stdout, ran.returncode


class WithFolder(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.root = os.path.realpath(cls.folder.name)
        cls.url = f"file://{cls.root}/repository"


class WithRepository(WithFolder):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.wc = fixtures.make_repository(cls.root)


class Pager(WithRepository):
    MARKING = "sed s/^/paged:/"

    def test_long_output_goes_through_the_pager_of_the_environment(self):
        plain, _ = run("log", folder=self.wc)
        marked = re.sub("(?m)^(?=.)|^(?=\n)", "paged:", plain)
        self.assertIn("Change iota", plain)
        for environment, options, expected in [
                ({"HSVN_PAGER": self.MARKING}, [], marked),
                ({"HSVN_PAGER": self.MARKING, "PAGER": "cat"}, [], marked),
                ({"HSVN_PAGER": None, "PAGER": self.MARKING}, [], marked),
                ({"HSVN_PAGER": "", "PAGER": self.MARKING}, [], plain),
                ({"HSVN_PAGER": "cat", "PAGER": self.MARKING}, [], plain),
                ({"HSVN_PAGER": None, "PAGER": ""}, [], plain),
                ({"HSVN_PAGER": self.MARKING}, ["--no-pager"], plain),
                ({"HSVN_PAGER": self.MARKING, "TERM": "dumb"}, [], plain),
                ({"HSVN_PAGER": self.MARKING, "TERM": None}, [], plain),
                ({"HSVN_PAGER": 'echo "$LESS $LV"; cat'}, [], "FRX -c\n" + plain),
                ({"HSVN_PAGER": 'echo "$LESS $LV"; cat', "LESS": "M"}, [], "M -c\n" + plain),
                ({"HSVN_PAGER": "nowhere -x"}, [],
                 "hsvn: warning: cannot start the pager 'nowhere -x': No such file or directory\n" + plain),
                ({"HSVN_PAGER": None, "PAGER": None, "PATH": "/nowhere"}, [], plain)]:
            shown, code = run("log", *options, folder=self.wc, **environment)
            self.assertEqual((shown, code), (expected, 0), (environment, options))

    def test_what_is_long_is_paged(self):
        for command, isPaged in [("blame iota", True), ("cat iota", True), ("diff -c 4", True), ("help", True),
                                 ("info -R", True), ("info", False), ("list -R", True), ("log --xml", True),
                                 ("mergeinfo ^/branches/one", True), ("propget color iota", True),
                                 ("proplist -v iota", True), ("status -v", False), ("update -r 5", False),
                                 ("diff -c 4 --diff-cmd echo", False)]:
            shown, code = run(*command.split(), folder=self.wc, HSVN_PAGER=self.MARKING)
            self.assertEqual(code, 0, command)
            self.assertEqual(set(line.startswith("paged:") for line in shown.splitlines()), {isPaged}, command)

    def test_nothing_is_paged_that_is_no_terminal(self):
        self.assertEqual(piped(HSVN, "log", folder=self.wc, HSVN_PAGER=self.MARKING, TERM="xterm"),
                         piped(SVN, "log", folder=self.wc))

    def test_leaving_the_pager_is_silent_and_failures_are_those_of_the_program(self):
        fixtures.write(self.wc, "long", "line\n" * 200000)
        fixtures.run_svn(self.wc, "add", "long")
        self.assertEqual(run("diff", folder=self.wc, HSVN_PAGER="head -1"), ("Index: long\n", 0))
        fixtures.run_svn(self.wc, "revert", "long")
        shown, code = run("cat", "iota", "nowhere", folder=self.wc, HSVN_PAGER=self.MARKING)
        self.assertEqual(code, 1)
        self.assertEqual(shown.splitlines()[:2], ["paged:first", "paged:second"])
        self.assertIn("\npaged:hsvn: E200009: ", shown)

    def test_interrupts_do_not_end_the_program_before_its_pager(self):
        pager = "trap '' INT; read first; echo ready; read answer < /dev/tty; echo left $answer; cat > /dev/null"
        started = Run("log", folder=self.wc, environment={"HSVN_PAGER": pager})
        started.read("ready")
        started.type("\x03")
        started.type("\x03")
        started.type("at last\n")
        self.assertIn("left at last\n", started.end()[0])


class Questions(WithRepository):
    """What Subversion asks on the terminal."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        fixtures.demand_password(cls.root)
        with open(os.path.join(cls.root, "repository/conf/svnserve.conf"), "a", encoding="utf-8") as file:
            file.write("realm = Realm\x1b]0;evil\x07 of \u202eall\u2066\u009b2J\u061c \u00e4\n")
        port = fixtures.free_port()
        fixtures.write(cls.root, "server", f"svn://127.0.0.1:{port}/repository")
        cls.url = fixtures.server_url(cls.root)
        cls.options = ["--username", "harry", "--no-auth-cache"]
        cls.enterClassContext(fixtures.server_of(cls.root))

    def test_a_server_does_not_control_the_terminal_that_it_is_asked_for_on(self):
        started = Run("info", "--show-item", "revision", *self.options, self.url, folder=self.wc, environment={})
        started.read("Password for 'harry': ")
        self.assertIn("> Realm?\\027]0;evil?\\007 of {U+202E}all{U+2066}?\\194?\\1552J{U+061C} \u00e4\n", started.shown)
        started.type(fixtures.SECRET + "\n")
        self.assertRegex(started.end()[0], r"\n\D*6\D*$")

    def test_what_is_asked_after_the_pager_began_is_seen_and_answered(self):
        pager = "sed s/^/paged:/; echo shown; read answer < /dev/tty; echo left by $answer"
        started = Run("cat", "iota", f"{self.url}/trunk/A/mu", *self.options, folder=self.wc,
                      environment={"HSVN_PAGER": pager})
        for shown, answer in [("paged:first\npaged:second\nshown\n", "me"),
                              ("left by me\n[^/]*Authentication realm: .*\nPassword for 'harry': ", fixtures.SECRET),
                              ("paged:This is A/mu.\nshown\n", "all")]:
            started.read(shown)
            started.type(answer + "\n")
        shown, code = started.end()
        self.assertIn("left by all\n", shown)
        self.assertEqual(code, 0)


class SafeText(WithRepository):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        fixtures.write(cls.wc, "hostile", HOSTILE + "\n")
        with open(os.path.join(cls.wc, "invalid"), "wb") as file:
            file.write(b"\xff\xe4\n\xe2\x82\r\nend\xe2\x82")
        with open(os.path.join(cls.wc, "large"), "w", encoding="utf-8") as file:
            file.write("x" + "\u20ac" * 100000)
        fixtures.run_svn(cls.wc, "add", "hostile", "invalid", "large")
        fixtures.run_svn(cls.wc, "commit", "-m", "Add files")
        fixtures.run_svn(cls.wc, "update")
        fixtures.write(cls.wc, "message", HOSTILE.replace("\r", ""))
        subprocess.run(["svnadmin", "setrevprop", cls.root + "/repository", "-r7", "svn:log",
                        cls.wc + "/message"], check=True, env={**os.environ, "LC_ALL": "C.UTF-8"})
        with open(os.path.join(cls.wc, "name\u202e\x1b[31m\nM       iota"), "w", encoding="utf-8"):
            pass

    def test_nothing_from_elsewhere_controls_a_terminal(self):
        for command, expected in [
                (["log", "-r7"], HARMLESS.replace("?\\013", "") + "\n---"),
                (["cat", "hostile"], HARMLESS + "\n"), (["blame", "hostile"], HARMLESS.partition("?\\013")[2] + "\n"),
                (["diff", "-c7", "hostile"], "?\\013+" + HARMLESS.partition("?\\013")[2] + "\n"),
                (["diff", "--word", "-c7", "hostile"], "?\\013+" + HARMLESS.partition("?\\013")[2] + "\n"),
                (["cat", "invalid"], "?\\255?\\228\n?\\226?\\130\r\nend?\\226?\\130"),
                (["cat", "large"], "x" + "\u20ac" * 100000),
                (["status"], "\x1b[36m?       name{U+202E}?\\027[31m?\\010M       iota\x1b[0m\n"),
                (["info", "no\x1b[1mwhere\u202e"], "no?\\027[1mwhere{U+202E}'"),
                (["st\x1b[1m"], "'st?\\027[1m'")]:
            for pager in ["", "tee"]:
                self.assertIn(expected, run(*command, folder=self.wc, HSVN_PAGER=pager)[0], command)
            expected = piped(SVN, *command, folder=self.wc)
            if "--word" not in command:
                self.assertEqual(piped(HSVN, *command, folder=self.wc), expected, command)

    def test_the_locale_tells_what_a_character_is(self):
        for locale in ["C", "C.UTF-8"]:
            self.assertEqual(run("cat", "hostile", folder=self.wc, LC_ALL=locale), (HARMLESS + "\n", 0))


class Suggestions(WithRepository):
    def test_what_is_misspelled_is_suggested_on_a_terminal_only(self):
        for arguments, hint in [("stats", "'status'"), ("help lgo", "'log'"), ("status --verbos", "'--verbose'"),
                                ("log --limt=3", "'--limit'"), ("log -r HAED", "'HEAD'"), ("log -r 1:comitted", "'COMMITTED'"),
                                ("cat iota@HAED", "'HEAD'"), ("info A/B/lamda", None), ("info keyword/x", "'keywords'"), ("list a/C", "'A/C'"),
                                ("cat keyword", "'keywords'"), ("info ^/trunk/iotta", "'URL/trunk/iota'"),
                                ("list ^/trnuk", "'URL/trunk'"), ("log -r 99", "HEAD is 6"), ("cat iota@77", "HEAD is 6"),
                                ("lock keyword", "'keywords'"), ("wholly-unlike", None), ("info wholly/unlike", None)]:
            shown, code = run(*arguments.split(), folder=self.wc)
            self.assertEqual(code, 1 if "help" not in arguments else 0, arguments)
            if hint:
                self.assertIn(hint.replace("URL", self.url), shown, arguments)
            else:
                self.assertNotIn("id you mean", shown, arguments)
            ran = subprocess.run([HSVN, *arguments.split()], cwd=self.wc, capture_output=True, text=True, check=False,
                                 env=fixtures.environment(self.wc))
            self.assertNotRegex(ran.stderr, "id you mean|HEAD is", arguments)


class Progress(WithRepository):
    # Hands a server's answers on in small pieces, so that they take their time.
    TUNNEL = """import os, subprocess, sys, threading, time
server = subprocess.Popen(["svnserve", "-t", "-r", {root!r}], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
def relay():
    while block := os.read(0, 65536):
        os.write(server.stdin.fileno(), block)
    server.stdin.close()
threading.Thread(target=relay, daemon=True).start()
started = time.monotonic()
while block := os.read(server.stdout.fileno(), 32):
    time.sleep(0.2 if time.monotonic() < started + 4 else 0)
    os.write(1, block)
"""

    def test_whatever_takes_long_shows_that_it_goes_on(self):
        fixtures.write(self.root, "tunnel.py", self.TUNNEL.format(root=self.root))
        tunnel = {"SVN_SSH": f"{sys.executable} {self.root}/tunnel.py"}
        url = "svn+ssh://nowhere/repository/trunk"
        commands = [["blame", url + "/iota"], ["list", "-R", url], ["log", "-v", url], ["diff", "-r2:6", url],
                    ["propget", "-R", "color", url], ["info", "-R", url], ["cat", url + "/iota"],
                    ["export", url, self.root + "/exported"]]
        for verb, started in [(each[0], Run(*each, folder=self.wc, environment=tunnel)) for each in commands]:
            shown, code = started.end()
            self.assertEqual(code, 0, shown)
            self.assertRegex(shown, r"\x1b7\x1b\[\?7l [^\x1b]*( s|/s)\x1b", verb)


class Graph(WithFolder):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        os.mkdir(os.path.join(cls.root, "home"))
        url = cls.url
        subprocess.run(["svnadmin", "create", cls.root + "/repository"], check=True)
        svn = lambda *words: fixtures.run_svn(os.path.join(cls.root, "wc"), *words)
        os.mkdir(os.path.join(cls.root, "wc"))
        wc = os.path.join(cls.root, "wc")

        def commit(name, *, branch, message):
            svn("switch", "-q", "--ignore-ancestry", f"{url}/{branch}")
            fixtures.write(wc, name, message + "\n")
            svn("add", "-q", "--force", name)
            svn("commit", "-q", "-m", message)
            svn("update", "-q")

        def merge(source, *, into):
            svn("switch", "-q", "--ignore-ancestry", f"{url}/{into}")
            svn("merge", "-q", f"{url}/{source}")
            svn("commit", "-q", "-m", f"Merge {source} into {into}")
            svn("update", "-q")

        fixtures.run_svn(cls.root, "mkdir", "-q", "-m", "Lay out", *(f"{url}/{each}" for each in ("trunk", "branches", "tags")))
        fixtures.run_svn(cls.root, "checkout", "-q", url + "/trunk", "wc")
        commit("a", branch="trunk", message="Add a")  # r2
        svn("copy", "-q", "-m", "Branch one", url + "/trunk", url + "/branches/one")  # r3
        commit("b", branch="branches/one", message="Add b")  # r4
        commit("c", branch="trunk", message="Add c")  # r5
        svn("copy", "-q", "-m", "Tag", url + "/trunk", url + "/tags/1")  # r6
        merge("trunk", into="branches/one")  # r7
        svn("move", "-q", "-m", "Rename one", url + "/branches/one", url + "/branches/uno")  # r8
        commit("d", branch="branches/uno", message="Add d")  # r9
        merge("branches/uno", into="trunk")  # r10
        commit("e", branch="trunk", message="Add e")  # r11
        svn("copy", "-q", "-m", "Copy a file", url + "/trunk/a", url + "/trunk/f")  # r12
        svn("update", "-q")
        cls.wc = wc

    def graph(self, *arguments):
        ran = subprocess.run([HSVN, "log", "--graph", *arguments], cwd=self.wc, capture_output=True, text=True, check=True,
                             env=fixtures.environment(self.wc), timeout=60)
        return ran.stdout

    def drawn(self, *arguments):
        """The columns, with numbers instead of texts."""
        return "\n".join(re.sub(r" +(r\d+) .*", r" \1", line) for line in self.graph("-q", *arguments).splitlines())

    def test_branches_copies_and_merges_are_drawn(self):
        of_all = ("* r12", "* r11", "* r10", "|\\", "| * r9", "| * r8", "| * r7", "|/|", "| | * r6", "|_|/", "* | r5",
                  "| * r4", "| * r3", "|/", "* r2", "* r1")
        of_trunk = [line for line in of_all if line not in ("| | * r6", "|_|/")]
        for arguments, expected in [(["^/"], of_all), ([], of_trunk), (["a"], ["* r2"]),
                                    (["^/", "-l", "3"], ["* r12", "* r11", "* r10"]),
                                    (["-r", "5:2"], ["* r5", "* r2"]), (["-r", "2:5"], ["* r5", "* r2"]),
                                    (["^/", "-r", "3:5"], ["* r5", "* r4", "* r3"]),
                                    (["^/branches/uno"], ["* r9", "* r8", "* r7", "|\\", "| * r5", "* | r4", "* | r3", "|/",
                                                          "* r2", "* r1"]),
                                    (["^/branches/one@7", "--stop-on-copy"],
                                     ["* r7", "|\\", "| * r5", "* r4", "* r3"])]:
            self.assertEqual(self.drawn(*arguments).splitlines(), list(expected), arguments)

        # What a search leaves out is no gap.
        stars = [re.sub(r" +(r\d+) .*", r" \1", line) for line in self.graph("^/", "--search", "add").splitlines() if "*" in line]
        self.assertEqual(stars, ["* r11", "| * r9", "* | r5", "| * r4", "* r2"])

    def test_merge_information_without_a_slash_ends_nothing(self):
        repository = shutil.copytree(self.root + "/repository", self.root + "/copy")
        url = f"file://{repository}/trunk"
        fixtures.write(repository + "/db", "fsfs.conf", "[deltification]\ncompression = none\n")
        former = subprocess.run(["svn", "propget", "--strict", "svn:mergeinfo", url], check=True, capture_output=True).stdout
        value = former + b"\n/elsewhere/x:2"
        subprocess.run(["svnmucc", "-m", "Tell merges", "propset", "svn:mergeinfo", value, url], check=True,
                       capture_output=True)
        # No program writes it: the bytes are changed, with the checksum of the properties.
        path = repository + "/db/revs/0/13"
        with open(path, "rb") as file:
            text = file.read()
        odd = value.replace(b"/elsewhere/x", b"elsewhere/xy")
        listed = b"K 13\nsvn:mergeinfo\nV %d\n%s\nEND\n"
        sums = [hashlib.md5(listed % (len(each), each)).hexdigest().encode() for each in (value, odd)]
        for before, after in [(b"/elsewhere/x:2", b"elsewhere/xy:2"), sums]:
            self.assertIn(before, text)
            text = text.replace(before, after)
        os.chmod(path, 0o644)
        with open(path, "wb") as file:
            file.write(text)
        self.assertEqual(self.drawn("-r", "13:12", url).splitlines(), ["* r13", "* r12"])

    def test_texts_stand_beside_the_columns(self):
        lines = re.sub(r"r(\d+) \|.*", r"r\1", self.graph("-v", "^/")).splitlines()
        self.assertEqual(lines[lines.index("*   r10"):lines.index("| * r8")], [
            "*   r10", "|\\  Changed paths:", "| |    M /trunk", "| |    A /trunk/b (from /branches/uno/b:9)",
            "| |    A /trunk/d (from /branches/uno/d:9)", "| |", "| | Merge branches/uno into trunk", "| |", "| * r9",
            "| | Changed paths:", "| |    A /branches/uno/d", "| |", "| | Add d", "| |"])

    def test_what_does_not_go_with_a_graph_is_refused(self):
        for option in ["--xml", "--json", "--diff"]:
            ran = subprocess.run([HSVN, "log", "--graph", option], cwd=self.wc, capture_output=True, text=True, check=False,
                                 env=fixtures.environment(self.wc))
            self.assertEqual((ran.returncode, ran.stdout), (1, ""))
            self.assertIn(f"E205000: --graph and {option} are mutually exclusive", ran.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[2:])
