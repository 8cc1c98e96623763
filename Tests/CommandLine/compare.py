#!/usr/bin/python
"""Runs command lines through Subversion's svn and through hsvn, started under the same name, on copies of the same
working copy, and compares what they print, how they end and what they leave behind.

usage: compare.py HSVN TABLE [GROUP]

Each line of a table is a working copy's state, "|" and a command line; a line "[name]" begins a group. Where Subversion
itself prints its items in an order that changes from run to run, a "~" before the state leaves the order out.
A command line that begins with "svnadmin" is run through Subversion's svnadmin and hsvn.
"""

import contextlib
import difflib
import os
import re
import shlex
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time
import urllib.parse
import xml.etree.ElementTree as ElementTree

import fixtures

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

    def __init__(self, root):
        self.root = root

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
        """Called after it was put back."""


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


class State:
    """A prepared working copy, given as it was to each program, at the path that it was made at: it knows its own."""

    def __init__(self, root, prepare, original=None):
        """Of a repository made here, or of a copy of one that was made at the same path."""
        self.root = root
        self.wc = root + "/wc"
        if original:
            copy(original, root)
        else:
            fixtures.make_repository(root)
        prepare(self.wc)
        os.mkdir(root + ".saved")
        self.parts = [WorkingCopies(root), Repository(root)]
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
        words = command.replace("REPOSITORY", "file://" + self.root + "/repository").replace("ROOT", self.root)
        words = words.replace("HARRY", "--username harry --password " + fixtures.SECRET)
        environment = {**fixtures.environment(self.wc), "PATH": program + ":" + os.environ["PATH"]}
        words = words if words.startswith("svnadmin ") else "svn " + words
        ran = subprocess.run(["/bin/bash", "-c", words], cwd=self.wc, env=environment, check=False,
                             stdin=subprocess.DEVNULL, capture_output=True, timeout=60,
                             # Without a terminal, whoever runs the tests: questions are asked on it otherwise.
                             start_new_session=True)
        output = with_ordered_attributes(ran.stdout.decode("latin-1"))
        if "--xml" in command and output.startswith("<?xml") and ran.returncode == 0:
            ElementTree.fromstring(output)
        result = {"standard output": output, "standard error": ran.stderr.decode("latin-1"), "exit code": ran.returncode,
                  "configuration": snapshot(self.root + "/home"),
                  "files": snapshot(self.root, "repository", "elsewhere", "home")}
        return result, [part.raw() for part in self.parts]

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


def compare(state, rows, programs):
    failures = 0
    for is_ordered, command in rows:
        expected, actual = state.results(programs, command)
        if not is_ordered:
            for result in (expected, actual):
                result["standard output"] = unordered(result["standard output"])
        for what, value in expected.items():
            if actual[what] != value:
                failures += 1
                print(f"svn {command}\n  {what} differs")
                print("\n".join(difference(value, actual[what])))
                break
    return failures


def programs_in(folder, hsvn):
    """Puts Subversion's programs and hsvn, under the same names, into a folder each; the two folders."""
    programs = [os.path.join(folder, name) for name in ("original", "ours")]
    for program, binary in zip(programs, [shutil.which("svn"), os.path.realpath(hsvn, strict=True)]):
        os.mkdir(program)
        # A copy, as users put it in the place of another svn: everything is found from there too.
        shutil.copy(binary, os.path.join(program, "svn"))
        administration = shutil.which("svnadmin") if program.endswith("original") else binary
        shutil.copy(administration, os.path.join(program, "svnadmin"))
    return programs


def main():
    hsvn, table = sys.argv[1:3]
    rows = list(read_table(table, sys.argv[3] if len(sys.argv) > 3 else None))
    rows = rows[time.localtime().tm_yday % EVERY::EVERY] or rows[:1]
    if not rows:
        sys.exit("no such group")
    with tempfile.TemporaryDirectory() as folder:
        folder = os.path.realpath(folder)
        programs = programs_in(folder, hsvn)
        failures = 0
        root = os.path.join(folder, "state")
        fixtures.make_repository(root)
        os.rename(root, root + ".original")
        for name in sorted({row[0] for row in rows}):
            state = State(root, fixtures.PREPARATIONS[name], root + ".original")
            with fixtures.server_of(state.root):
                failures += compare(state, [row[1:] for row in rows if row[0] == name], programs)
            state.remove()
    print(f"{len(rows)} command lines, {failures} differ")
    sys.exit(failures != 0)


if __name__ == "__main__":
    main()
