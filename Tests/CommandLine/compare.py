#!/usr/bin/python
"""Runs command lines through Subversion's svn and through hsvn, started under the same name, on copies of the same
working copy, and compares what they print, how they end and what they leave behind.

usage: compare.py HSVN TABLE [GROUP]

Each line of a table is a working copy's state, "|" and a command line; a line "[name]" begins a group. Where Subversion
itself prints its items in an order that changes from run to run, a "~" before the state leaves the order out.
A command line that begins with "svnadmin" is run through Subversion's svnadmin and hsvn.
"""

import difflib
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

import fixtures


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


def locks(wc, repository):
    """The repository's locks, their tokens and times aside, and those that the working copy holds."""
    listed = re.sub(r"(UUID Token|Created): .*", "", look(wc, "svnadmin", "lslocks", repository))
    held = re.sub(r"(Lock Token|Lock Created|Text Last Updated|Last Changed Date): .*", "",
                  look(wc, "svn", "info", "-R"))
    # Both come in an order of their own: locks always, tree conflicts of items that are not versioned within a folder.
    return "Path: ".join(sorted(listed.split("Path: ")) + sorted(re.split(r"^Path: ", held, flags=re.MULTILINE)))


def dump(repository):
    """Everything that a repository holds, its identity and the times of its revisions aside."""
    dumped = subprocess.run(["svnadmin", "dump", "--quiet", repository], check=False, capture_output=True)
    text = dumped.stdout if dumped.returncode == 0 else dumped.stderr
    text = re.sub(rb"\nUUID: .*\n", b"\n", text)
    return re.sub(rb"\nK 8\nsvn:date\nV \d+\n.*\n", b"\n", text).decode("latin-1")


def unordered(text):
    """The items of an output, whatever their order: entries of XML, else lines."""
    return sorted(re.split(r"(?=<entry\n)|(?<=\n)", text.replace("</target>\n", "")))


class State:
    """A prepared working copy, given anew to each program at the same path."""

    def __init__(self, folder, prepare):
        self.root = folder
        self.wc = fixtures.make_repository(folder)
        prepare(self.wc)
        self.saved = folder + ".saved"
        shutil.copytree(folder, self.saved, symlinks=True)

    def restore(self):
        shutil.rmtree(self.root)
        # Times stay: Subversion compares them.
        shutil.copytree(self.saved, self.root, symlinks=True)
        fixtures.hand_over(self.root)

    def run(self, program, command):
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
        configuration = snapshot(self.root + "/home")
        repository = self.root + "/repository"
        return {"standard output": output, "standard error": ran.stderr.decode("latin-1"), "exit code": ran.returncode,
                "configuration": configuration, "files": snapshot(self.root, "repository", "elsewhere", "home"),
                # Several changelists come in any order; `info` tells each item's.
                "status": unordered(look(self.wc, "svn", "status", "--no-ignore", "-v")),
                "properties": look(self.wc, "svn", "proplist", "-v", "-R"), "locks": locks(self.wc, repository),
                "repository": dump(repository)}


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
        expected, actual = (state.run(program, command) for program in programs)
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
    if not rows:
        sys.exit("no such group")
    with tempfile.TemporaryDirectory() as folder:
        folder = os.path.realpath(folder)
        programs = programs_in(folder, hsvn)
        failures = 0
        for name in sorted({row[0] for row in rows}):
            state = State(os.path.join(folder, name), fixtures.PREPARATIONS[name])
            with fixtures.server_of(state.root):
                failures += compare(state, [row[1:] for row in rows if row[0] == name], programs)
    print(f"{len(rows)} command lines, {failures} differ")
    sys.exit(failures != 0)


if __name__ == "__main__":
    main()
