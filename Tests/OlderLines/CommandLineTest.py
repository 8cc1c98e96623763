#!/usr/bin/env python3
"""Runs command lines through Subversion's svn and through hsvn on a bundle of an older line, on twin working copies, and
compares what they print and leave behind.

usage: CommandLineTest.py HSVN LIBRARY_FOLDER BUNDLE
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

HSVN, LIBRARY, BUNDLE = sys.argv[1:]
LINE = int(re.search(r"-1\.(\d+)\.bundle$", BUNDLE).group(1))

# In order, each on what those before it left. A number is the first line that does it: those before it say which choice
# they do not have.
COMMANDS = [
    (4, "add a d"),
    (4, "status"),
    (4, "commit -m One"),
    (4, "propset -q color red a"),
    (4, "proplist -v a d"),
    (4, "propget color a"),
    (4, "diff"),
    (4, "diff a d"),
    (4, "diff -x -b a"),
    (4, "commit -m Two a"),
    (4, "update"),
    (4, "diff -r1:2 URL/trunk"),
    (4, "diff -c2 a"),
    (4, "diff --summarize -r1:3 URL/trunk"),
    (5, "diff --depth immediates -c2 URL/trunk"),
    (4, "log -v"),
    (4, "list"),
    (5, "list --depth empty a"),
    (4, "info a --show-item url"),
    (4, "cat a"),
    (4, "blame a"),
    (4, "copy a d"),
    (4, "copy a b"),
    (5, "copy a b d2"),
    (4, "move d/a d/c"),
    (5, "move d/c b e --parents"),
    (4, "revert -R ."),
    (5, "revert --depth files ."),
    (4, "mkdir e1"),
    (5, "mkdir --parents f/g"),
    (4, "remove a"),
    (5, "remove --keep-local d/x"),
    (4, "revert a"),
    (4, "revert -R d"),
    (4, "mkdir -m Three URL/branches/one"),
    (4, "copy -m Four URL/trunk URL/branches"),
    (4, "switch URL/branches/trunk"),
    (4, "switch --depth files URL/trunk@HEAD"),
    (5, "switch --depth empty URL/trunk"),
    (4, "switch URL/trunk"),
    (4, "propset -q --revprop -r1 color green"),
    (4, "propget --revprop -r1 color"),
    (4, "merge -q --dry-run -r4:5 URL/trunk ."),
    (4, "merge -q -c-3 URL/trunk a"),
    (5, "merge -q URL/branches/trunk ."),
    (4, "lock a"),
    (4, "unlock a"),
    (4, "import -m Six plain URL/branches/plain"),
    (4, "export URL/branches/plain out"),
    (4, "resolved a"),
    (4, "log -q -l3 -c1,2 -r4:3 URL"),
    (4, "info --depth immediates URL/trunk --show-item url"),
    (4, "info --depth files . --show-item url"),
    (4, "status --depth files"),
    (4, "status -vu --depth files ."),
    (4, "status -v --depth empty d"),
    (4, "add --parents u/v/w"),
    (4, "cleanup"),
    (4, "relocate URL NEW"),
    (4, "status"),
    (6, "status --trust-server-cert"),
]


def write(*parts, text):
    path = os.path.join(*parts)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


class User:
    """A program with a repository and a working copy of its own."""

    def __init__(self, root, name, program):
        self.root, self.program = os.path.join(root, name), program
        self.wc = os.path.join(self.root, "wc")
        os.makedirs(os.path.join(self.root, "home"))
        repository = os.path.join(self.root, "repository")
        subprocess.run(["svnadmin", "create", repository], check=True)
        write(repository, "hooks/pre-revprop-change", text="#!/bin/sh\n")
        os.chmod(os.path.join(repository, "hooks/pre-revprop-change"), 0o755)
        os.symlink("repository", os.path.join(self.root, "moved"))
        self.url = "file://" + repository
        for words in ["mkdir -q -m Begin URL/trunk URL/branches", "checkout -q URL/trunk ."]:
            os.makedirs(self.wc, exist_ok=True)
            self.run(words, "svn")
        for name in ["a", "d/x", "plain/y", "u/v/w"]:
            write(self.wc, name, text=f"text of {name}\n")

    def run(self, words, program=None):
        words = words.replace("URL", self.url).replace("NEW", f"file://{self.root}/moved")
        done = subprocess.run([program or self.program, "--non-interactive", *words.split()], cwd=self.wc,
                              env={"PATH": os.environ["PATH"], "LC_ALL": "C", "TZ": "UTC", "HOME": self.root + "/home"},
                              capture_output=True, text=True, check=False, timeout=60)
        text = done.stdout.replace(self.root, "ROOT").replace(".done", ".")
        dated = re.sub(r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d.*?\)|\d\d:\d\d(?=\W|$)|opaquelocktoken\S+", "DATE", text)
        return done.returncode, sorted(dated.splitlines()), done.stderr

    def state(self):
        return self.run("status -v", "svn"), self.run("proplist -vR", "svn"), self.run("log -qv URL", "svn")


def package(root):
    """The program with a package that has the bundle of the older line alone."""
    library = os.path.join(root, "lib/HSVN/Versions/A")
    shutil.copytree(LIBRARY, library, symlinks=True, ignore=shutil.ignore_patterns("Subversion"))
    shutil.copytree(BUNDLE, os.path.join(library, "Subversion", os.path.basename(BUNDLE)))
    os.makedirs(os.path.join(root, "bin"))
    return shutil.copy(HSVN, os.path.join(root, "bin", "svn"))


def main():
    failures = 0
    with tempfile.TemporaryDirectory() as root:
        root = os.path.realpath(root)
        program = package(os.path.join(root, "package"))
        theirs, ours = User(root, "theirs", "svn"), User(root, "ours", program)
        version = ours.run("--version")
        failures += 0 if version[0] == 0 and len(version[1]) > 4 else fail("--version", "what the line is", version)
        for first, words in COMMANDS:
            if LINE < first:
                code, _, errors = ours.run(words)
                isRefused = code == 1 and f"Subversion 1.{LINE}" in errors
                failures += 0 if isRefused else fail(words, "a refusal", (code, errors))
                ours.run(words, "svn")
                theirs.run(words)
                continue
            expected, found = theirs.run(words), ours.run(words)
            failures += 0 if expected[:2] == found[:2] else fail(words, expected, found)
            failures += 0 if theirs.state() == ours.state() else fail(words, theirs.state(), ours.state())
    return failures != 0


def fail(words, expected, found):
    print(f"{words}\n    expected {expected}\n    found    {found}")
    return 1


if __name__ == "__main__":
    sys.exit(main())
