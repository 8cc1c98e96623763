#!/usr/bin/python
"""Makes command lines up, the same ones for the same seed, and compares svn and hsvn on them as compare.py does.

usage: generate.py HSVN [--count N] [--seed N] [--part K/N] [--states A,B] [--over svn|http]
                   [--user NUMBER] [--order] [--list]

Options come from what `svn help` lists, targets from the files of the state; every line that differs is printed as a
row of a table, beside a count of the roots of what was expected to differ. What svn itself answers in several ways is
run again, until an answer is common to both or none is likely to be.
"""

import argparse
import collections
import os
import random
import re
import shlex
import subprocess
import sys
import tempfile
import time
import urllib.parse

import compare
import fixtures

# What is meant to differ: of the command line, of the lines that differ, and why.
REASONS = [
    ("", r"\A  svn never ends$", "svn never ends"),
    ("", r"(?m)^--6$|^-.*assertion failed|^-.* Aborted  ", "svn ends the process by an assertion"),
    ("", r"(?m)^\+.*Cannot move '\S*/repository' into its own child", "svn asks for a message before that assertion"),
    ("", r"(?s)\A(?!.*\n\+[^\n]*Segmentation).*\n-[^\n]*Segmentation fault", "svn crashes"),
    ("^forbidden ", r"(?m)^\+.*A/C/(\S+/)?\.svn': Permission denied$", "of what must not be read, the folder is tried first"),
    (r"^scribbled .*\bexport\b", r"Bogus date|(?m:^-A    )", "an export reads the date of what it exports"),
    (r"^scribbled .*\bexport\b", r"(?m)^-wc/\S*svn-\w{6}: ", "svn leaves the temporary file of an export that fails"),
    (r"^scribbled .*--xml", r"(?m)^\+<author>.*\?\\\d{3}", "an author's bytes that are no text would make the XML ill-formed"),
    ("--encoding", "(?m)^-.*\u00c3\u0083\u00c2", "svn goes on in the encoding that it read a message in"),
    (r"^forbidden .*\bcleanup\b", r"(?m)^-'  L ", "svn leaves a working copy locked that it cannot read"),
    (r"\binfo\b.*--show-item", r"(?s)\A  standard output differs\n(?:[^\n]*\n){3} [^\n]+\n\+(\n \Z|\Z|\n(?=  ))",
     "svn leaves the last line unfinished where a later target fails"),
    ("", r"(?m)^-svn: E155009: .*\(?sync-file-flags", "svn cannot set the flags of a missing file, and locks the working copy"),
    (r"^accented .*\bcleanup\b", r"(?m)^-svn: (E|warning: W)155004: Working copy ", "svn leaves a working copy locked whose clean-up fails"),
    (r"\b(help|h|\?)\b", r"(?m)^\+   create$", "help tells of what svn does not have"),
    (r">&-", r"(?m)^\+svn: E000009: Write error: Bad file", "svn writes to whatever it opens in the place of a closed output"),
    (r"cd \.svn;", r"(?m)^\+svn: E200025: '\S*' is reserved", "from within its own folder Subversion is not to change anything"),
    ("", r"(?m)^\+svn: E205000: Non-numeric change argument \(r?\d+-0?\)", "a range of changes without an end goes to r-1 in svn"),
]

# How often a line that differs is run: an answer that svn gives every other time is missed once in a thousand lines.
ATTEMPTS = 6

REVISIONS = ["1", "2", "3", "4", "5", "6", "7", "r3", "HEAD", "BASE", "COMMITTED", "PREV", "head", "{2099-01-01}"]
ODD_REVISIONS = ["0", "99", "{1999-12-31}", "{2020-02-30}", "{nonsense}", "-1", "3.5", "foo", "", "WORKING", "2:", ":3",
                 "2147483648", "9" * 20, "0x2", "+2", " 2", "2 ", "r", "rHEAD", "{}", "{", "{20990101T0000}", "{2099}",
                 "{2099-01-01 00:00 +0100}", "{2099-01-01T00:00:00.000001Z}", "{2099-W01}", "{2099-1-1}", "{00:00}",
                 "{20990101}", "{2099-01-01T00:00+05:30}", "{2099-01-01T24:00Z}", "{2099-01-01 }", "{ 2099-01-01}", "{1969-12-31}",
                 "{yesterday}", "{3 days ago}", "{now}", "Prev", "base", "rr3", "r-1", "{2099-01-01}3", "HEAD:", "1:2:3"]
CHANGES = ["2", "3", "r4", "-4", "-r5", "2-4", "5-3", "r2-r3", "-2-4", "99", "0", "HEAD", "COMMITTED", "2-", "x",
           "3-3", "2-HEAD", "-7-9", "--3", "r", "", "5 2", "2-4-6", "{2099-01-01}", "4-99", "+3"]
TEXTS = ["x", "two words", "a\nb", "", "<&>", "\u00fc"]
NAMES = ["color", "svn:ignore", "svn:keywords", "svn:eol-style", "svn:executable", "svn:mime-type", "svn:externals",
         "svn:needs-lock", "svn:mergeinfo", "svn:global-ignores", "svn:auto-props", "svn:log", "svn:author", "svn:date",
         "svn:bogus", "binary-property", "a b", "svn:kewords", "none", "svn:special", "svn:wc:x", "svn:entry:x", "svn:",
         "SVN:IGNORE", "a:b.c-d_e", "1a", "\u00fc", "-a", "svn:inheritable-auto-props", "svn:original-date"]
VALUES = ["x", "native", "CRLF", "Rev Author", "*.o\n*.tmp", "^/branches/one/A/B there", "^/branches/one/iota file",
          "/branches/one:2-4", "text/plain", "*", "", "a\r\nb", "nonsense", "2020-01-01T00:00:00.000000Z", "*.x = color=y",
          "# none\n-r2 ^/branches/one/A/B there\n^/branches/one/iota@3 file", "there -r3 REPOSITORY/branches/one/A/B",
          "../branches/one/A 'two words'", "application/octet-stream", "Id URL Date", "LF",
          "text/plain; charset=UTF-8", "text", "^/trunk/A/C@5 A/x\n-r 3 ^/trunk/iota y", "^/trunk:1-3,5*", "/trunk:5-3", "native\n",
          "*.x = svn:eol-style=native;color", "^/branches/one/A .", "^/branches/one/A ../x", "-r ^/x y", "x y z", " x ", "-x"]
GOOD = {
    "--depth": ["empty", "files", "immediates", "infinity"],
    "--set-depth": ["exclude", "empty", "files", "immediates", "infinity"],
    "--accept": ["postpone", "working", "base", "mine-conflict", "theirs-conflict", "mine-full", "theirs-full",
                 "recommended", "p", "mf", "tf", "edit", "launch"],
    "--message": TEXTS, "--file": ["../message", "../windows-message", "iota", "../latin-message", "-", "<(echo piped)"],
    "--encoding": ["UTF-8", "ISO-8859-1", "utf-8", "ASCII", "CP1252"],
    "--editor-cmd": ["../editor", "../emptying-editor", "../second-time-editor", "true"],
    "--diff-cmd": ["echo", "true", "cat"], "--diff3-cmd": ["true", "cat"],
    "--extensions": ["-u", "-b", "-w", "-p", "-U1", "--ignore-eol-style", "-u -w", "-U 0", "--context=2", "-U",
                     "--show-c-function -U2", "--unified", "-U x", "--ignore-all-space", "-U-1"],
    "--limit": ["1", "2", "100"], "--strip": ["0", "1"], "--show-revs": ["merged", "eligible"],
    "--targets": ["../list", "../list", "-", "<(echo iota)"], "--with-revprop": ["color=x", "color", "svn:author=me", "empty="],
    "--search": ["*iota*", "Change", "*"], "--search-and": ["*mu*", "change*"], "--changelist": ["list", "other"],
    "--native-eol": ["LF", "CR", "CRLF"], "--old": ["^/trunk", ".", "iota", "^/branches/one@3"],
    "--new": ["^/branches/one", ".", "A", "^/trunk@2"],
    "--show-item": ["kind", "url", "relative-url", "repos-root-url", "repos-uuid", "revision", "last-changed-revision",
                    "last-changed-author", "last-changed-date", "changelist", "wc-root", "schedule", "depth", "repos-size"],
    "--x-viewspec": ["classic", "svn11"], "--username": ["harry", "sally"], "--password": ["x"],
    "--trust-server-cert-failures": ["unknown-ca", "expired,other"], "--config-dir": ["../config", "ROOT/home/other"],
    "--config-option": ["config:helpers:diff-extensions=-U0", "config:miscellany:no-unlock=yes", "config:helpers:diff3-cmd=cat",
                        "config:miscellany:interactive-conflicts=no", "config:auth:password-stores=", "x", "config:a",
                        "config:helpers:merge-tool-cmd=true", "config:miscellany:diff-ignore-content-type=yes",
                        "servers:global:http-proxy-port=x", "config:miscellany:memory-cache-size=x", "config:x:y=z", "other:a:b=c",
                        "config:miscellany:enable-auto-props=maybe", "config:working-copy:exclusive-locking-clients=svn",
                        "config:miscellany:global-ignores=i*", "config:miscellany:enable-auto-props=yes",
                        "config:helpers:editor-cmd=../editor", "config:auto-props:*=color=auto",
                        "config:miscellany:use-commit-times=yes", "servers:global:store-passwords=no",
                        "config:miscellany:log-encoding=ISO-8859-1", "config:working-copy:exclusive-locking=true",
                        "config:helpers:diff-cmd=echo", "config:miscellany:preserved-conflict-file-exts=*"]}
ODD = {"--targets": ["nowhere", "iota", "/dev/null"], "--encoding": ["nothing"], "--message": ["a\0b", "iota"],
       "--file": ["nowhere", "../zero-message", "A", "../mixed-message"], "--changelist": ["none"],
       "--editor-cmd": ["false", "nowhere"], "--diff-cmd": ["false", "nowhere"], "--diff3-cmd": ["false", "nowhere"], "--depth": ["unknown", "exclude"]}
# What people say together with an option.
COMPANIONS = {"--search": "--search-and", "--show-item": "--no-newline", "--xml": "--incremental", "--summarize": "--xml",
              "--show-revs": "--log", "--diff-cmd": "--extensions", "--diff": "--diff-cmd", "--verbose": "--xml",
              "--with-all-revprops": "--xml", "--changelist": "--keep-changelists", "--old": "--new", "--depth": "--force",
              "--show-updates": "--verbose", "--remove-unversioned": "--remove-ignored"}
# Words that the shell makes others of.
# Other ways to write what the repository holds.
URLS = ["^/", "^", "^/nowhere", "^/trunk/../branches", "REPOSITORY", "REPOSITORY/trunk", "^/trunk/iota/below", "REPOSITORY/../none",
        "http:/x", "file://ROOT/none", "^/trunk/", "^//trunk", "file:///", "bogus://x/y", "^/trunk/%69ota", "^/trunk/name with space",
        "^/trunk/name%20with%20space/at%40sign", "REPOSITORY/./trunk//A/", "FILE://ROOT/repository/trunk", "file://localhostROOT/repository",
        "file:ROOT/repository/trunk", "^/trunk?x#y", "^/trunk/%zz", "^/trunk/\u00e9", "svn://127.0.0.1:1/x", "svn+none://x/y", "^trunk",
        "http://127.0.0.1:1/x", "file://nohost/x", "^/trunk/A@/mu", "^/trunk/iota@@", "^/trunk@{2099-01-01}", "^/..", "^/trunk/%2e%2e/x"]
EXPANDED = ["./*", "A/*", "i*a", "A/{mu,C}", "<(echo piped)", "<(echo iota)"]
OPTIONAL = {"--version", "--help"}

# What follows a subcommand: kinds of words, "?" none or one, "+" some, "*" none or some.
FORMS = {
    "add": ["path+", "new"], "auth": ["text?"], "blame": ["file+", "any"], "cat": ["file+", "any+"],
    "changelist": ["text path+"], "checkout": ["url new", "url path", "url", "url url new", "url"],
    "cleanup": ["path?"], "commit": ["path*", "", ""], "copy": ["any new", "any newurl", "any any", "any+ any"],
    "delete": ["any+", "path+", "url+"], "diff": ["any?", "any", "any any", "url url", "url path", "path*", ""],
    "export": ["any new", "any path", "any"], "help": ["topic"], "import": ["path newurl", "path url", "newurl", "new newurl"],
    "info": ["any*"], "list": ["any*", "url"], "lock": ["file+", "url"], "log": ["any?", "url path*", "any"],
    "merge": ["url", "url path", "url url", "any any path", "any"], "mergeinfo": ["url", "url any", "any"],
    "mkdir": ["new+", "newurl+", "path"], "move": ["any new", "url newurl", "path path", "path new", "any+ any"],
    "patch": ["patch path?", "patch"], "propdel": ["name any*", "name path"], "propedit": ["name any", "name path"],
    "propget": ["name any*", "name any"], "proplist": ["any*"], "propset": ["name value path+", "name value any"],
    "relocate": ["url url", "url", "url url path", "url path"], "resolve": ["path*", "path"], "resolved": ["path+"],
    "revert": ["path+", "path"], "status": ["path*", ""], "switch": ["url path?", "url"], "unlock": ["file+", "url"],
    "update": ["path*", ""], "upgrade": ["path*"]}
# What these do without a message is to open an editor that fails.
COMMITTING = {"commit", "import", "mkdir", "delete", "copy", "move"}
# What stands before the program: where it runs and what its environment says.
PLACES = {"A": "cd A", "A/B": "cd A/B", "..": "cd ..", "name with space": "cd 'name with space'", "../home": "cd ../home",
          ".": "ln -s wc ../door; cd ../door", "A/C": "ln -s wc/A ../door; cd ../door/C", ".svn": "cd .svn",
          "../gone": "mkdir ../gone; cd ../gone; rmdir ../gone"}
VARIABLES = ["SVN_EDITOR=../editor", "SVN_EDITOR= VISUAL=true", "TZ=America/New_York", "TZ=Asia/Kolkata", "LC_ALL=C.UTF-8",
             "LC_ALL=none", "LANG=de_DE.UTF-8", "COLUMNS=20", "SVN_MERGE=true", "HOME=/nowhere/none", "LC_ALL=POSIX",
             "LC_ALL= LANG=de_DE.UTF-8", "LC_ALL= LC_CTYPE=C.UTF-8", "LC_ALL= LC_MESSAGES=C.UTF-8", "TZ=:none", "HOME=",
             "SVN_EDITOR=../nowhere", "SVN_EDITOR='exit 3;'", "SVN_EDITOR= EDITOR=../editor", "TMPDIR=/nowhere",
             "LOCPATH=ROOT/.. LC_ALL=latin", "LC_ALL=C LANGUAGE=de", "SVN_EDITOR= VISUAL= EDITOR=", "TZ=UTC+25",
             "SVN_SSH=false", "SVN_MERGE=", "LINES=1", "SVN_I_LOVE_CORRUPTED_WORKING_COPIES_SO_DISABLE_SLEEP_FOR_TIMESTAMPS=yes",
             "APR_ICONV_PATH=/x", "LC_ALL=C.UTF-8 TZ=Europe/Berlin", "PAGER=false", "PATH=/nowhere:$PATH", "TERM=dumb"]
REDIRECTIONS = ["<<< c", "<<< a", "< ../message", "< ../list", "<<< $'yes\\nno'", "<&-", "2>&1", "2>&1 | sort", "> made",
                "> ../made; svn patch ../made", "2> /dev/null",
                "> /dev/full", ">&-", "2>&-", "2> /dev/full", "<&- >&-", "<<< ''", "< ."]
# What a person does to files between two commands, and how a script joins what it runs.
EDITS = ["echo more >> {file}", "printf 'one\\r\\ntwo\\n' > {file}", ": > {file}", "rm -rf {path}", "mkdir {new}",
         "echo new > {new}", "mv {path} {new}", "cp -R {path} {new}", "ln -s nowhere {new}", "chmod +x {file}",
         "chmod a-w {file}", "rm {file}; mkdir {file}", "touch {file}", "rm -f {file}; ln -s A {file}",
         "touch -d 2001-01-01 {path}", "printf x >> {file}", "cp binary {new}", "cp {file} {new}", "chmod 000 {path}"]
JOINTS = {"; ": 4, " && ": 1, " || ": 1, "; echo $?; ": 2}
# What makes conflicts in a state that is prepared for them.
BEGINNINGS = {
    "crossed": ["merge ^/branches/two", "merge -c 8 ^/branches/two", "merge ^/branches/two --accept postpone"],
    "untangled": ["merge ^/branches/one"], "merging": ["merge ^/branches/one"], "outdated": ["update"],
    "tangled": ["update", "update --accept postpone"], "obstructed": ["update", "update --force"], "moving": ["update"],
    "merged": ["merge ^/branches/two"], "external": ["update"], "configured": ["add --force ."], "deep": ["update"],
    "sampled": ["update"], "replaced": ["commit -m x", "revert -R A A3"], "damaged": ["revert -R ."]}
CONFLICTED = {"conflicted", "diverged", "hostile", *BEGINNINGS} - {"external", "configured", "deep", "replaced", "damaged"}
PRIORITIES = {"status": 3, "update": 3, "commit": 2, "diff": 3, "log": 3, "info": 2, "merge": 3, "copy": 2, "move": 2}


class Grammar:
    """Options of every subcommand, as svn lists them."""

    def __init__(self):
        self.options = {name: self.listed(name) for name in FORMS}
        self.aliases = {name: self.aliases_of(name) for name in FORMS}
        self.shared = self.listed("info", "Global options:")

    @staticmethod
    def aliases_of(name):
        text = subprocess.run(["svn", "help", name], check=True, capture_output=True, encoding="utf-8",
                              env=fixtures.environment(".")).stdout
        return re.findall(r"\w+", text.partition(":")[0])

    @staticmethod
    def listed(name, heading="Valid options:"):
        text = subprocess.run(["svn", "help", "--verbose", name], check=True, capture_output=True, encoding="utf-8",
                              env=fixtures.environment(".")).stdout.partition(heading)[2].partition("\n\n")[0]
        return [(long or letter, letter if long else None, bool(argument)) for letter, long, argument in
                re.findall(r"^  (-\w|--[\w-]+)(?: \[(--[\w-]+)\])?( ARG)?", text, re.MULTILINE)]


class Lines:
    """Makes up the command lines of one state."""

    def __init__(self, grammar, state, chance, wc):
        self.grammar, self.state, self.chance = grammar, state, chance
        self.place = "."
        self.paths, self.files = ["."], []
        for base, folders, names in os.walk(wc):
            folders[:] = sorted(name for name in folders if name != ".svn")
            found = sorted(os.path.relpath(os.path.join(base, name), wc) for name in folders + names)
            self.files += [name for name in found if os.path.isfile(os.path.join(wc, name)) and is_text(name)]
            self.paths += [name for name in found if is_text(name)]

    def one_of(self, *weighted):
        choices, weights = zip(*weighted)
        return self.chance.choices(choices, weights)[0]

    def often(self, probability):
        return self.chance.random() < probability

    def revision(self):
        return self.chance.choice(ODD_REVISIONS if self.often(0.06) else REVISIONS)

    def beside(self, word):
        """A word that may lead out of the working copy, so that nothing is made where it would stay."""
        return self.seen(word) if word.startswith("..") else word

    def pegged(self, target, probability=0.15):
        escaped = target + "@" if "@" in target and self.often(0.9) else target
        return escaped + "@" + self.revision() if self.often(probability) and escaped == target else escaped

    def path(self):
        odd = ["nowhere", "A/nowhere", "iota/below", "", "/nowhere", "A/../iota", "./A//B/", "ROOT/wc", "ROOT/wc/iota",
               "../tree", "../fresh", "ROOT/repository", ".svn", "A/.svn/x", "@", "iota@@", "-", "~", "^", "..", "x:y",
               "made", "A/made", "../other", "A/.", "A/./mu", "A//mu", "A/B/..", "ROOT//wc/", "ROOT/door/iota", "./iota@", "iota@HEAD@",
               "iota@{2099-01-01}", "./", "A@", "@HEAD", "iota@", "iota@-1", "ROOT/wc/../wc/A", "%41", "-x", *EXPANDED[:4]]
        path = self.chance.choice(self.paths)
        form = self.one_of(("", 24), ("/", 1), ("ROOT/wc/", 1))
        seen = form + path if len(form) > 1 else self.seen(path) + form
        return self.beside(self.chance.choice(odd)) if self.often(0.1) else seen

    def seen(self, path):
        """A path of the working copy, from where the program runs."""
        if self.place == ".":
            return path
        return os.path.relpath(os.path.join("/root/wc", path), os.path.normpath(os.path.join("/root/wc", self.place)))

    def url(self):
        if self.often(0.15):
            return self.chance.choice(URLS)
        name = self.chance.choice(self.paths + ["A/B/lambda", "A/C/doomed"])
        branch = self.one_of(("^/trunk", 6), ("^/branches/one", 3), ("REPOSITORY/trunk", 1))
        quoted_name = urllib.parse.quote(name) if self.often(0.7) else name
        return branch if self.often(0.4) or name == "." else branch + "/" + quoted_name

    def word(self, kind):
        if kind == "any":
            kind = self.one_of(("path", 3), ("url", 2))
        if kind == "file" and (self.often(0.1) or not self.files):
            kind = "path"
        if kind == "newurl":
            return self.chance.choice(["^/trunk/made", "^/branches/two", "^/trunk/A/made", "^/none/made", "^/made"])
        if kind == "new":
            return self.beside(self.chance.choice(["made", "A/made", "../fresh", "none/made", "A/B/made", "with space",
                                                   "odd@", "."]))
        if kind == "text":
            return self.chance.choice(["list", "other", "a b", "*"])
        if kind == "name":
            return self.chance.choice(NAMES)
        if kind == "value":
            return self.chance.choice(VALUES)
        if kind == "topic":
            return self.chance.choice(["none", "", "a b", "-x", "infoo", "iota"])  # pages have words of their own
        if kind == "patch":
            return self.beside(self.chance.choice(["../plain.patch", "../git.patch", "../deep.patch", "../no.patch",
                                                   "iota", "none"]))
        word = {"path": self.path, "url": self.url, "file": lambda: self.seen(self.chance.choice(self.files))}[kind]()
        return self.pegged(word)

    def words(self, subcommand):
        if self.often(0.03):
            return [self.word("any") for _ in range(self.chance.randrange(4))]
        found = []
        for kind in self.chance.choice(FORMS[subcommand]).split():
            count = {"?": self.chance.randrange(2), "+": self.one_of((1, 6), (2, 3), (3, 1)),
                     "*": self.one_of((0, 4), (1, 4), (2, 2))}.get(kind[-1], 1)
            found += [self.word(kind.strip("?+*")) for _ in range(count)]
        return found

    def argument(self, option):
        if option == "--revision":
            return self.revision() + (":" + self.revision() if self.often(0.4) else "")
        if option == "--change":
            changes = self.chance.choices(CHANGES, k=self.one_of((1, 4), (2, 2), (3, 1)))
            return self.chance.choice([",", ",", ", ", " "]).join(changes)
        if option not in GOOD or self.often(0.04):
            return self.beside(self.chance.choice(["foo", "", "-1", *ODD.get(option, [])]))
        return self.beside(self.chance.choice(GOOD[option]))

    def option(self, found):
        long, letter, takes = found
        name = letter if letter and self.often(0.5) else long[:-1] if self.often(0.004) else long
        if not takes:
            return [name]
        text = self.argument(long)
        if self.often(0.2):
            return [name + text if name == letter else name + "=" + text]
        return [name, text]

    def bundled(self, options):
        """Some options of one letter in one word, at the end one with an argument."""
        letters = [each for each in options if len(each) == 1 and re.fullmatch(r"-\w", each[0])]
        last = [each for each in options if len(each) == 2 and re.fullmatch(r"-\w", each[0])][:1]
        if len(letters + last) < 2 or self.often(0.5):
            return options
        word = "-" + "".join(each[0][1] for each in letters + last)
        return [each for each in options if each not in letters + last] + [[word] + [each[1] for each in last]]

    def chosen(self, name):
        """Options of a subcommand, as it has them."""
        own = [each for each in self.grammar.options[name] if each[0] not in OPTIONAL]
        found = [self.chance.choice(own) for _ in range(self.one_of((0, 3), (1, 4), (2, 3), (3, 2), (4, 1))) if own]
        beside = {COMPANIONS.get(long) for long, *_ in found}
        found += [each for each in own if each[0] in beside and self.often(0.4)]
        if self.often(0.08):
            found.append(self.chance.choice([each for each in self.grammar.shared if each[0] not in OPTIONAL]))
        if self.often(0.01):
            found.append(self.chance.choice(self.grammar.options[self.chance.choice(list(FORMS))]))
        return found

    def subcommand(self):
        names = list(FORMS)
        priorities = {**PRIORITIES, **({"resolve": 12, "revert": 3} if self.state in CONFLICTED else {})}
        return self.chance.choices(names, [priorities.get(each, 1) for each in names])[0]

    def command(self):
        name = self.subcommand()
        chosen = self.chosen(name)
        options = [self.option(each) for each in chosen]
        words = [[word] for word in self.words(name)]
        if name in COMMITTING and self.often(0.85) and not any(each[0] in ("--message", "--file") for each in chosen):
            options.append(["-m", "message"])
        if name in {"propdel", "propget", "propset", "propedit", "proplist"} and self.often(0.1):
            options.append(["--revprop"])
        if name == "propedit" and self.often(0.8):
            options.append(["--editor-cmd", "../editor"])
        if self.state in ("served", "webserved") and self.often(0.9):
            options.append(["HARRY"])
        if name == "resolve" and self.often(0.5):
            options += [["-R"], ["--accept", self.chance.choice(GOOD["--accept"])]]
        # The order of targets counts; options stand anywhere among them, and before the subcommand.
        words.insert(0, [self.chance.choice(self.grammar.aliases[name])])
        for option in self.bundled(options):
            words.insert(self.chance.randrange(0 if self.often(0.1) else 1, len(words) + 1), option)
        if self.often(0.05):
            words.insert(1, ["--"])
        return " ".join(quoted(word) for part in words for word in part)

    def edit(self):
        """What is done to a file without Subversion."""
        paths = [name for name in self.paths if name != "."] or ["made"]
        path, file = (shlex.quote(self.seen(self.chance.choice(names))) for names in (paths, self.files or paths))
        new = shlex.quote(self.seen(self.chance.choice(["made", "A/made", "A/B/made@", "with space"])))
        return self.chance.choice(EDITS).format(path=path, file=file, new=new)

    def run(self):
        """A command with what stands before and after it."""
        variable = self.chance.choice(VARIABLES) + " " if self.often(0.08) else ""
        command = f"{variable}svn {self.command()}"
        redirection = " " + self.chance.choice(REDIRECTIONS) if self.often(0.06) else ""
        # Attributes come in any order, which only the output itself is cleaned of.
        return command if "--xml" in command and ">" in redirection else command + redirection

    def line(self):
        place, going = self.chance.choice(list(PLACES.items())) if self.often(0.14) else (".", None)
        self.place = place
        runs = [self.run() for _ in range(self.one_of((1, 5), (2, 3), (3, 2), (4, 1)))]
        if self.state in BEGINNINGS and self.often(0.5):
            runs.insert(0, "svn " + self.chance.choice(BEGINNINGS[self.state]))
        line = runs.pop(0)
        for run in runs:
            line += self.chance.choices(list(JOINTS), list(JOINTS.values()))[0]
            line += self.edit() + "; " + run if self.often(0.3) else run
        if self.often(0.15):
            line = f"{self.edit()}; {line}"
        if going:
            line = f"{going}; {line}"
        if self.state in ("accented", "sampled") and self.often(0.2):
            line = self.chance.choice(["LC_ALL=C ", "export LOCPATH=ROOT/.. LC_ALL=latin; "]) + line
        if self.often(0.03):
            line = "umask 027; " + line
        return line.removeprefix("svn ") if line.startswith("svn ") else "--version -q; " + line


def is_text(name):
    try:
        name.encode()
        return True
    except UnicodeEncodeError:
        return False


def quoted(word):
    if word in EXPANDED:
        return word
    if "\n" in word or "\r" in word:
        escapes = {"\r": "\\r", "\n": "\\n", "'": "\\'", "\\": "\\\\"}
        return "$'" + "".join(escapes.get(letter, letter) for letter in word) + "'"
    return shlex.quote(word.replace("\0", ""))


class TimelessRuns:
    """Takes out of results what no two runs have in common: the times of the run, tokens, names of temporary files."""

    VARYING = re.compile(r"(\d{4}-\d\d-\d\d[T ]\d\d:\d\d:\d\d)(?:\.\d+Z?| [+-]\d{4} \([^)]*\)|Z)?"
                         r"|[A-Z][a-z]{2} \d\d (?:\d\d:\d\d| \d{4})|opaquelocktoken:[0-9a-f-]*|svn-\w{6}\b|\b\d+-\w+/svn")

    def __init__(self, state):
        self.made = time.strftime("%Y-%m-%d %H:%M:%S", time.gmtime())
        self.run = state.run

    def __call__(self, program, command):
        result, raw = self.run(program, command)
        return {key: self.cleaned(value) for key, value in result.items()}, raw

    def cleaned(self, value):
        if isinstance(value, str):
            return self.VARYING.sub(
                lambda found: "..." if not found[1] or found[1].replace("T", " ") >= self.made else found[0], value)
        if isinstance(value, bytes):
            return self.cleaned(value.decode("latin-1")).encode("latin-1")
        if isinstance(value, dict):
            return {key: self.cleaned(each) for key, each in value.items()}
        return [self.cleaned(each) for each in value] if isinstance(value, list) else value


def differs(state, line, programs, is_ordered):
    """What differs, as compare.py tells it; a program that does not end differs whatever the other one does."""
    try:
        return compare.differs(state, line, programs, is_ordered, ATTEMPTS)
    except subprocess.TimeoutExpired:
        late = []
        for name, program in zip(["svn", "hsvn"], programs):
            try:
                state.run(program, line)
            except subprocess.TimeoutExpired:
                late.append(name)
        return f"  {' and '.join(late) or 'nobody'} never ends"


def reason_of(command, text):
    return next((reason for line, part, reason in REASONS if re.search(line, command) and re.search(part, text)), None)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("hsvn")
    parser.add_argument("--count", type=int, default=400, help="how many lines, over all states")
    parser.add_argument("--seed", default="1")
    parser.add_argument("--part", default="1/1", help="only these states' lines: the Kth of N parts")
    parser.add_argument("--states", default=",".join(fixtures.PREPARATIONS), help="of these states only")
    parser.add_argument("--over", choices=["svn", "http"], help="put the repositories behind a server")
    parser.add_argument("--user", type=int, help="run as this user, without the rights of root")
    parser.add_argument("--order", action="store_true", help="the order of lines counts too")
    parser.add_argument("--list", action="store_true", help="print the lines, run nothing")
    arguments = parser.parse_args()
    names = arguments.states.split(",")
    part, parts = map(int, arguments.part.split("/"))
    count = arguments.count // compare.EVERY
    shares = {name: count * (index + 1) // len(names) - count * index // len(names) for index, name in enumerate(names)}
    grammar = Grammar()
    counts = collections.Counter()
    with tempfile.TemporaryDirectory() as folder:
        folder = os.path.realpath(folder)
        # A locale whose letters are not those of UTF-8: its few categories are complained of.
        subprocess.run(["localedef", "-i", "POSIX", "-f", "ISO-8859-1", os.path.join(folder, "latin")], check=False,
                       capture_output=True)
        programs = compare.programs_in(folder, arguments.hsvn)
        for name, state in compare.states_in(folder, names[part - 1::parts], over=arguments.over, user=arguments.user):
            state.run, state.is_one_command = TimelessRuns(state), False
            lines = Lines(grammar, name, random.Random(f"{arguments.seed} {name}"), state.wc)
            for line in [lines.line() for _ in range(shares[name])]:
                counts["lines"] += 1
                if arguments.list:
                    print(f"{name} | {line}")
                elif text := differs(state, line, programs, arguments.order):
                    reason = reason_of(f"{name} | {line}", text)
                    counts[reason or "unexplained"] += 1
                    if not reason:
                        print(f"{name} | {line}\n{text}", flush=True)
    print(*(f"{number} {what}" for what, number in counts.items()), sep=", ")
    sys.exit(counts["unexplained"] != 0)


if __name__ == "__main__":
    main()
