#!/usr/bin/python
"""Runs command lines through Subversion's svn and through hsvn, started under the same name, on copies of the same
working copy, and compares what they print, how they end and what they leave behind.

usage: compare.py HSVN TABLE [GROUP] [--over svn|http] [--user NUMBER]

With --over the repositories are behind a server; with --user the programs run without the rights of root, which the
states that forbid something ask for by themselves.

Each line of a table is a working copy's state, "|" and a command line; a line "[name]" begins a group. Where Subversion
itself prints its items in an order that changes from run to run, a "~" before the state leaves the order out.
A command line that begins with "svnadmin" is run through Subversion's svnadmin and hsvn.
"""

import argparse
import contextlib
import difflib
import os
import re
import shlex
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import urllib.parse
import xml.etree.ElementTree as ElementTree

import fixtures
import webserver

# One row in so many, others each day: a program built with sanitizers is slow.
EVERY = int(os.environ.get("HSVN_EVERY_COMMAND_LINE", "1"))


def read_table(path, wanted):
    group = None
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            line = line.rstrip("\n")
            if line.startswith("[") and line.endswith("]"):
                group = line[1:-1]
            elif line and not line.startswith("#") and (wanted is None or group == wanted):
                state, command = line.split("|", 1)
                yield state.strip(" ~"), not state.startswith("~"), command.strip()


def with_ordered_attributes(text):
    """XML whose attributes are in alphabetical order: svn writes them in a new random order each time."""

    def ordered(match):
        attributes = sorted(re.findall(r'\n   [^=]+="[^"]*"', match.group(2)))
        return match.group(1) + "".join(attributes) + match.group(3)

    return re.sub(r'(<[a-z-]+)((?:\n   [^=>]+="[^"]*")+)(/?>)', ordered, text)


# What of a new repository is never twice the same.
UNIQUE = re.compile(r"/(db/(uuid|revprops/0(/0)?|revs/0/p0|rep-cache\.db|__db\.\S+|log\.\d+|revisions|transactions|uuids|nodes|changes"
                    r"|representations|strings|copies|miscellaneous|node-origins|checksum-reps|lock-tokens|locks))$")


def snapshot(folder, *left_out):
    """Every file's permissions and contents below a folder, some of its folders and Subversion's own data aside."""
    files = {}
    for base, folders, names in os.walk(folder):
        folders[:] = [name for name in folders
                      if name != ".svn" and os.path.relpath(os.path.join(base, name), folder) not in left_out]
        for name in names + folders:
            path = os.path.join(base, name)
            shown = os.path.relpath(path, folder)
            files[shown] = [oct(os.lstat(path).st_mode)]
            if os.path.isfile(path) and not UNIQUE.search(path):
                with open(path, "rb") as file:
                    files[shown].append(file.read())
    return files


def look(folder, *command):
    """What Subversion itself says, whichever program ran."""
    return subprocess.run(command, cwd=folder, check=False, env=fixtures.environment(folder),
                          capture_output=True).stdout.decode("latin-1")


def dump(repository):
    """Everything that a repository holds, its identity and the times of its revisions aside."""
    dumped = subprocess.run(["svnadmin", "dump", "--quiet", repository], check=False, capture_output=True)
    text = dumped.stdout if dumped.returncode == 0 else dumped.stderr
    text = re.sub(rb"\nUUID: .*\n", b"\n", text)
    return re.sub(rb"\nK 8\nsvn:date\nV \d+\n.*\n", b"\n", text).decode("latin-1")


def unordered(text):
    """The items of an output, whatever their order: entries of XML, else lines."""
    return sorted(re.split(r"(?=<entry\n)|(?<=\n)", text.replace("</target>\n", "")))


def items_of(text):
    """Texts that begin with "Path: ", in an order: locks come in any, as do tree conflicts within a folder of items that
    are not versioned."""
    return sorted(re.split(r"^Path: ", text, flags=re.MULTILINE))


def records(database):
    """The rows of a working copy's database, tokens and times aside."""
    taken_out = {"changed_date", "last_mod_time", "lock_token", "lock_date"}
    with contextlib.closing(sqlite3.connect(f"file:{urllib.parse.quote(database)}?mode=ro", uri=True)) as connection:
        connection.text_factory = bytes
        connection.row_factory = sqlite3.Row
        tables = [row[0].decode() for row in connection.execute("select name from sqlite_master where type = 'table'")]
        return {table: sorted(repr([(name, row[name]) for name in row.keys() if name not in taken_out])
                              for row in connection.execute(f"select * from {table}"))
                for table in tables}


class Part:
    """A part of a state: restored only where something changed it, and looked at with Subversion's own programs only
    where the bytes that two programs left cannot tell that the looks are the same."""

    def __init__(self, root, user):
        self.root = root
        self.user = user

    def entries(self, root):
        """The part's files and folders at the root."""
        raise NotImplementedError

    def raw(self):
        """What a look depends on; None where that cannot be told."""
        raise NotImplementedError

    def look(self):
        """What Subversion says."""
        raise NotImplementedError

    def stamp(self):
        """What changes whenever anything below does: above all times of change, which no program can set back. Programs
        take longer to start than those times take to go on."""
        found = {}
        for entry in self.entries(self.root):
            inside = (os.path.join(base, name) for base, folders, files in os.walk(entry) for name in folders + files)
            for path in [entry, *inside]:
                with contextlib.suppress(FileNotFoundError):  # a server may still tidy up
                    status = os.lstat(path)
                    found[path] = (status.st_ino, status.st_size, status.st_ctime_ns)
        return found

    def save(self):
        self.hand_over()
        for entry in self.entries(self.root):
            copy(entry, os.path.join(self.root + ".saved", os.path.basename(entry)))
        self.pristine = self.stamp()

    def restore(self):
        if self.stamp() == self.pristine:
            return
        for entry in self.entries(self.root):
            shutil.rmtree(entry) if is_folder(entry) else os.remove(entry)
        for entry in self.entries(self.root + ".saved"):
            copy(entry, os.path.join(self.root, os.path.basename(entry)))
        self.hand_over()
        self.pristine = self.stamp()

    def hand_over(self):
        """Gives the part to the user of the programs, and to that of the server."""
        if self.user is not None:
            for entry in self.entries(self.root):
                webserver.give(entry, self.user)


def is_folder(path):
    return os.path.isdir(path) and not os.path.islink(path)


def copy(source, destination):
    """Times stay: Subversion compares them."""
    if is_folder(source):
        shutil.copytree(source, destination, symlinks=True)
    else:
        shutil.copy2(source, destination, follow_symlinks=False)


class WorkingCopies(Part):
    """Everything but the repository."""

    def entries(self, root):
        return [entry.path for entry in os.scandir(root) if entry.name != "repository"]

    def raw(self):
        found = {}
        for base, folders, _ in os.walk(self.root):
            if ".svn" in folders:
                database, journal = (os.path.join(base, ".svn", name) for name in ("wc.db", "wc.db-journal"))
                if not os.path.exists(database) or os.path.exists(journal) and os.path.getsize(journal) > 0:
                    return None
                try:
                    found[base] = records(database)
                except sqlite3.Error:
                    return None
        return found

    def look(self):
        wc = self.root + "/wc"
        held = re.sub(r"(Lock Token|Lock Created|Text Last Updated|Last Changed Date): .*", "",
                      look(wc, "svn", "info", "-R"))
        # Several changelists come in any order; `info` tells each item's.
        return {"status": unordered(look(wc, "svn", "status", "--no-ignore", "-v")),
                "properties": look(wc, "svn", "proplist", "-v", "-R"), "items": items_of(held)}


class Repository(Part):
    def entries(self, root):
        return [path for path in [root + "/repository"] if os.path.exists(path)]

    def hand_over(self):
        super().hand_over()
        fixtures.hand_over(self.root)

    def raw(self):
        found = {}
        for path in self.stamp():
            shown = os.path.relpath(path, self.root)
            if os.path.isfile(path) and "/rep-cache.db" not in shown:
                try:
                    with open(path, "rb") as file:
                        text = file.read()
                except FileNotFoundError:
                    return None
                if "/db/revprops/" in shown:
                    text = re.sub(rb"K 8\nsvn:date\nV \d+\n.*\n", b"", text)
                found[shown] = text
        return found

    def look(self):
        """Tokens and times of locks aside."""
        listed = look(self.root, "svnadmin", "lslocks", self.root + "/repository")
        return {"locks": items_of(re.sub(r"(UUID Token|Created): .*", "", listed)),
                "repository": dump(self.root + "/repository")}


def ended(command, **options):
    """A command's end, without a terminal, whoever runs the tests: questions are asked on it otherwise. What takes too long
    is killed with all that it started."""
    with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          start_new_session=True, **options) as running:
        try:
            output, errors = running.communicate(timeout=60)
        except subprocess.TimeoutExpired:
            os.killpg(running.pid, signal.SIGKILL)
            raise
    return subprocess.CompletedProcess(command, running.returncode, output, errors)


class State:
    """A prepared working copy, given as it was to each program, at the path that it was made at: it knows its own."""

    is_one_command = True  # of each line: its documents are whole ones

    def __init__(self, root, name, original=None, over=None, user=None):
        """Of a repository made here, or of a copy of one that was made at the same path.

        @param over  the scheme of a server that all goes through; None for what the state does by itself
        @param user  whom the programs run as; None for who runs the tests
        """
        self.root = root
        self.wc = root + "/wc"
        if original:
            copy(original, root)
        else:
            fixtures.make_repository(root)
        fixtures.PREPARATIONS[name](self.wc)
        self.url = fixtures.put_behind_server(self.wc, over) if over else "file://" + root + "/repository"
        self.identity = {}
        if user is None and name in fixtures.FORBIDDING:
            user = fixtures.NOBODY
        if user is not None and os.geteuid() == 0:
            self.identity = {"user": user, "group": user, "extra_groups": []}
            webserver.make_passable(root)
            os.chown(root, user, user)
        os.mkdir(root + ".saved")
        self.parts = [kind(root, self.identity.get("user")) for kind in (WorkingCopies, Repository)]
        for part in self.parts:
            part.save()

    def remove(self):
        for folder in [self.root, self.root + ".saved"]:
            shutil.rmtree(folder)

    def restore(self):
        for part in self.parts:
            part.restore()

    def run(self, program, command):
        """What a program prints, how it ends and what files it leaves; the raw parts beside them."""
        self.restore()
        words = command.replace("REPOSITORY", self.url).replace("ROOT", self.root)
        words = words.replace("HARRY", "--username harry --password " + fixtures.SECRET)
        environment = {**fixtures.environment(self.wc), "PATH": program + ":" + os.environ["PATH"]}
        words = words if words.startswith("svnadmin ") else "svn " + words
        ran = ended(["/bin/bash", "-c", words], cwd=self.wc, env=environment, **self.identity)
        output = with_ordered_attributes(ran.stdout.decode("latin-1"))
        if self.is_one_command and "--xml" in command and output.startswith("<?xml") and ran.returncode == 0:
            ElementTree.fromstring(output)
        result = {"standard output": output, "exit code": ran.returncode,
                  # Temporary files have a new name each time.
                  "standard error": re.sub(r"/svn-\w{6}'", "/svn-'", ran.stderr.decode("latin-1")),
                  "configuration": snapshot(self.root + "/home"),
                  "files": snapshot(self.root, "repository", "elsewhere", "home")}
        return result, [part.raw() for part in self.parts]

    def whole(self, program, command):
        """Everything that a program does, whatever the other one did."""
        result, _ = self.run(program, command)
        for part in self.parts:
            result.update(part.look())
        return result

    def results(self, programs, command):
        """What each of two programs does. Subversion is asked only about the parts that they left with other bytes: what
        it says depends on nothing else, but other bytes may mean the same."""
        (expected, expected_raw), (actual, actual_raw) = (self.run(program, command) for program in programs)
        unlike = [part for part, *raw in zip(self.parts, expected_raw, actual_raw) if None in raw or raw[0] != raw[1]]
        if unlike:
            for part in unlike:
                actual.update(part.look())
            self.run(programs[0], command)
            for part in unlike:
                expected.update(part.look())
        return expected, actual


def difference(expected, actual):
    """The lines that differ, svn's with "-", ours with "+"."""

    def lines(value):
        text = value.decode("latin-1") if isinstance(value, bytes) else value
        return text.split("\n") if isinstance(text, str) else [repr(item) for item in text] if isinstance(
            text, list) else [f"{key}: {item!r}" for key, item in text.items()] if isinstance(text, dict) else [repr(text)]

    return difflib.unified_diff(lines(expected), lines(actual), "svn", "hsvn", lineterm="", n=1)


STREAMS = {"standard output", "standard error"}


def outcome(result, is_ordered):
    """A result as something that can be compared and counted; the order of its lines may be left out."""

    def fixed(key, value):
        if isinstance(value, dict):
            return sorted(value.items())
        return unordered(value) if key in STREAMS and not is_ordered else value

    return repr(sorted((key, fixed(key, value)) for key, value in result.items()))


def differs(state, command, programs, is_ordered, attempts=1):
    """What differs, as a text; None if nothing does.

    Subversion answers some commands in several ways, by the order of its hash tables or by the time that a server takes:
    only what no answer of several attempts has in common differs then.
    """
    expected, actual = state.results(programs, command)
    if outcome(expected, is_ordered) == outcome(actual, is_ordered):
        return None
    if attempts > 1:
        answers = [[state.whole(program, command) for program in programs] for _ in range(attempts)]
        theirs, ours = ({outcome(each, is_ordered) for each in side} for side in zip(*answers))
        if theirs & ours:
            return None
        expected, actual = answers[0]
    return "\n".join(f"  {what} differs\n" + "\n".join(line[:300] for line in difference(value, actual[what]))
                     for what, value in expected.items() if actual[what] != value)


def compare(state, rows, programs, attempts):
    failures = 0
    for is_ordered, command in rows:
        if text := differs(state, command, programs, is_ordered and attempts == 1, attempts):
            failures += 1
            print(f"svn {command}\n{text}")
    return failures


def programs_in(folder, hsvn):
    """Puts Subversion's programs and hsvn, under the same names, into a folder each; the two folders.

    The library goes beside them, for those who must not look into the folder where it was built.
    """
    package = os.path.join(os.path.dirname(os.path.dirname(os.path.realpath(hsvn))), "lib/HSVN")
    shutil.copytree(package, os.path.join(folder, "lib/HSVN"), symlinks=True)
    programs = [os.path.join(folder, name) for name in ("original", "ours")]
    for program, binary in zip(programs, [shutil.which("svn"), os.path.realpath(hsvn, strict=True)]):
        os.mkdir(program)
        # A copy, as users put it in the place of another svn: everything is found from there too.
        shutil.copy(binary, os.path.join(program, "svn"))
        administration = shutil.which("svnadmin") if program.endswith("original") else binary
        shutil.copy(administration, os.path.join(program, "svnadmin"))
    return programs


def states_in(folder, names, **options):
    """The states, one after the other, each with its server under way."""
    root = os.path.join(folder, "state")
    fixtures.make_repository(root)
    os.rename(root, root + ".original")
    for name in names:
        state = State(root, name, root + ".original", **options)
        with fixtures.server_of(root):
            yield name, state
        state.remove()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("hsvn")
    parser.add_argument("table")
    parser.add_argument("group", nargs="?")
    parser.add_argument("--over", choices=["svn", "http"])
    parser.add_argument("--user", type=int)
    arguments = parser.parse_args()
    rows = list(read_table(arguments.table, arguments.group))
    rows = rows[time.localtime().tm_yday % EVERY::EVERY] or rows[:1]
    if not rows:
        sys.exit("no such group")
    with tempfile.TemporaryDirectory() as folder:
        folder = os.path.realpath(folder)
        programs = programs_in(folder, arguments.hsvn)
        failures = 0
        names = sorted({row[0] for row in rows})
        for name, state in states_in(folder, names, over=arguments.over, user=arguments.user):
            failures += compare(state, [row[1:] for row in rows if row[0] == name], programs,
                                6 if arguments.over else 1)
    print(f"{len(rows)} command lines, {failures} differ")
    sys.exit(failures != 0)


if __name__ == "__main__":
    main()
