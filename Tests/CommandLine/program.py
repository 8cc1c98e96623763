#!/usr/bin/python
"""Tests what hsvn has beside svn: documents made from its tables, completion, JSON, and answers to output that fails.

usage: program.py HSVN DOCUMENTS TABLES
"""

import glob
import json
import os
import pty
import re
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

import fixtures

HSVN, DOCUMENTS, TABLES = sys.argv[1:4]

# What svn does not have: a subcommand of svnadmin, and options.
OWN_SUBCOMMANDS = {"create"}
OWN_OPTIONS = {**{name: {"--json"} for name in ("blame", "info", "list", "propget", "proplist", "status")},
               "diff": {"--json", "--word"}, "log": {"--json", "--graph"}}
OWN_GLOBAL_OPTIONS = {"--no-pager"}


def hsvn(*arguments, folder=".", **options):
    return subprocess.run([HSVN, *arguments], cwd=folder, env=fixtures.environment(folder), capture_output=True,
                          text=True, check=False, timeout=60, **options)


def help_of(program, *arguments):
    return subprocess.run([program, "help", *arguments], env=fixtures.environment("."), capture_output=True, text=True,
                          check=True).stdout


def headings(program=HSVN):
    """Every subcommand with its aliases, as help names them."""
    return [re.findall(r"[\w?]+", line) for line in help_of(program).splitlines() if re.match("   [a-z]", line)]


def options_of(subcommand, program=HSVN):
    """The subcommand's options, each in all its spellings, and the global ones."""
    own, _, overall = help_of(program, "--verbose", subcommand).partition("Global options:")
    return [[re.findall(r"(?<![\w-])--?[a-zA-Z][\w.-]*", line.split(" : ")[0]) for line in text.splitlines()
             if re.match(r"  -", line) and " : " in line] for text in (own, overall)]


class Documents(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.subcommands = {names[0]: (names, *options_of(names[0])) for names in headings()}

    def test_manual_page_names_every_subcommand_and_option(self):
        page = subprocess.run(["groff", "-man", "-Tascii", "-ww", "-P-cbou", os.path.join(DOCUMENTS, "man1/hsvn.1")],
                              capture_output=True, text=True, check=True)
        self.assertEqual(page.stderr, "")
        sections = dict(re.findall(r"(?ms)^ {3}(\w+)[^\n]*\n(.*?)(?=^ {3}\w|^\w)", page.stdout))
        overall = page.stdout.partition("\nGLOBAL OPTIONS\n")[2]
        for name, (_, own, shared) in self.subcommands.items():
            for spellings, text in [(each, sections[name]) for each in own] + [(each, overall) for each in shared]:
                for spelling in spellings:
                    self.assertRegex(text, rf"(?m)^ {{7}}[^a-z]*.*{re.escape(spelling)}(?![\w-])", name)

    def test_a_row_of_the_tables_uses_every_subcommand_and_option(self):
        rows = []
        for table in glob.glob(os.path.join(TABLES, "*.table")):
            with open(table, encoding="utf-8") as lines:
                rows += [line.split("|", 1)[1] for line in lines if "|" in line and not line.startswith("#")]
        words = [re.split(r"[\s=]+", row.strip()) for row in rows]
        missing = []
        for name, (names, own, shared) in self.subcommands.items():
            mine = [row for row in words if any(each in row[:4] for each in names)]
            missing += [] if mine else [name]
            for spellings in own:
                # Its own options are nothing that svn could be asked for, and help speaks for itself.
                is_own = not OWN_OPTIONS.get(name, set()).isdisjoint(spellings)
                if name != "help" and not is_own and not any(is_used(spellings, row) for row in mine):
                    missing.append(f"{name} {spellings[-1]}")
            missing += [spellings[-1] for spellings in shared
                        if OWN_GLOBAL_OPTIONS.isdisjoint(spellings) and not any(is_used(spellings, row) for row in words)]
        self.assertEqual(sorted(set(missing)), [])

    def test_every_subcommand_and_option_of_svn_is_there(self):
        theirs = {names[0]: names for names in headings("svn")}
        self.assertEqual({name: names for name, (names, *_) in self.subcommands.items() if name not in OWN_SUBCOMMANDS},
                         theirs)
        for name in theirs:
            long_names = [{spelling for each in part for spelling in each if spelling.startswith("--")}
                          for part in options_of(name, "svn")]
            ours = [{spelling for each in part for spelling in each if spelling.startswith("--")}
                    for part in self.subcommands[name][1:]]
            self.assertEqual(ours, [long_names[0] | OWN_OPTIONS.get(name, set()), long_names[1] | OWN_GLOBAL_OPTIONS], name)

    def test_bash_completes_subcommands_options_and_values(self):
        for name, (_, own, shared) in self.subcommands.items():
            offered = complete("hsvn", name, "-")
            self.assertLessEqual({each for spellings in own + shared for each in spellings}, set(offered), name)
        self.assertEqual(complete("hsvn", "stat"), ["status", "stat"])
        self.assertEqual(complete("hsvn", "help", "inf"), ["info"])
        self.assertEqual(complete("hsvn", "st", "--depth", "im"), ["immediates"])
        self.assertEqual(complete("hsvn", "-q", "st", "--depth", "=", "e"), ["empty"])
        self.assertEqual(complete("hsvn", "st", "some"), [])


def is_used(spellings, row):
    """Whether a row holds the option; one letter may stand among others or have its argument attached."""
    letters = [each[1] for each in spellings if len(each) == 2]
    return any(word in spellings or any(re.match(rf"-[a-zA-Z]*{letter}", word) for letter in letters) for word in row)


def complete(*words):
    script = (f"source {shlex.quote(os.path.join(DOCUMENTS, 'bash/hsvn'))}; COMP_WORDS=({shlex.join(words)}); "
              "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _hsvn; printf '%s\\n' \"${COMPREPLY[@]}\"")
    ran = subprocess.run(["/bin/bash", "--norc", "-c", script], capture_output=True, text=True, check=True)
    return ran.stdout.split()


def on_terminal(arguments, folder, environment):
    """What hsvn shows on a terminal."""
    ours, theirs = pty.openpty()
    with open(ours, "rb", closefd=True) as terminal:
        subprocess.run([HSVN, *arguments], cwd=folder, env={**fixtures.environment(folder), "HSVN_PAGER": "", **environment},
                       stdin=subprocess.DEVNULL, stdout=theirs, check=True, timeout=60)
        os.close(theirs)
        shown = b""
        try:
            while block := os.read(terminal.fileno(), 65536):
                shown += block
        except OSError:  # how a terminal ends
            pass
    return shown.decode().replace("\r\n", "\n")


class Program(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.wc = fixtures.make_repository(os.path.realpath(cls.folder.name))
        fixtures.change(cls.wc)

    def test_json_lists_what_xml_lists(self):
        for command, element, name in [("status -v", "entry", "path"), ("info -R", "entry", "path"),
                                       ("list -R", "entry", "name"), ("log -v", "logentry", "revision"),
                                       ("proplist -R -v", "target", "path"), ("propget -R color", "target", "path"),
                                       ("diff --summarize", "path", "path"),
                                       ("blame keywords", "entry", "line-number")]:
            words = command.split()
            listed = json.loads(hsvn(*words, "--json", folder=self.wc).stdout)
            tree = ElementTree.fromstring(hsvn(*words, "--xml", folder=self.wc).stdout)
            expected = [entry.get(name) or entry.findtext(name) or entry.text for entry in tree.iter(element)]
            expected = [os.path.relpath(each, self.wc) if each.startswith("/") else each for each in expected]
            self.assertCountEqual([str(item[name]) for item in listed], expected, command)
            self.assertTrue(expected, command)

    def test_propedit_gives_a_file_its_first_type(self):
        # svn fails: it judges the value of before, which is none.
        done = hsvn("propedit", "svn:mime-type", "iota", "--editor-cmd", "echo image/png >", folder=self.wc)
        self.assertEqual((done.returncode, done.stdout), (0, "Set new value for property 'svn:mime-type' on 'iota'\n"))

    def test_a_cache_of_terabytes_does_no_harm(self):
        # svn crashes.
        done = hsvn("info", "^/", "--config-option", "config:miscellany:memory-cache-size=99999999", folder=self.wc)
        self.assertEqual(done.returncode, 0)

    def test_a_repository_is_not_asked_for_properties_of_an_added_item(self):
        # svn crashes.
        for words in [("-r", "HEAD", "A/new"), ("-r", "2", "A/new"), ("A/new@3",)]:
            done = hsvn("propget", "color", *words, folder=self.wc)
            self.assertIn("E195002: Path '" + self.wc + "/A/new' has no committed revision", done.stderr)
            self.assertEqual(done.returncode, 1)

    def test_documents_are_well_formed_whatever_the_repository_holds(self):
        with tempfile.TemporaryDirectory() as folder:
            wc = fixtures.make_repository(os.path.realpath(folder))
            fixtures.scribble(wc)
            for command in ["log --with-all-revprops -v ^/", "list -R ^/branches", "info ^/trunk", "blame ^/trunk/iota",
                            "proplist -v --revprop -r 6", "propget svn:log --revprop -r 6", "status -uv"]:
                words = command.split()
                listed = json.loads(hsvn(*words, "--json", folder=wc).stdout)
                tree = ElementTree.fromstring(hsvn(*words, "--xml", folder=wc).stdout)
                self.assertTrue(listed, command)
                self.assertTrue(list(tree), command)

    def test_json_of_a_status_tells_what_the_repository_has(self):
        with tempfile.TemporaryDirectory() as folder:
            wc = fixtures.make_repository(os.path.realpath(folder))
            fixtures.run_svn(wc, "lock", "iota")
            fixtures.write(wc, "A/mu", "theirs\n")
            fixtures.run_svn(wc, "propset", "color", "red", "A/mu")
            fixtures.run_svn(wc, "commit", "-m", "Change mu", "A/mu")
            fixtures.run_svn(wc, "update", "-q", "-r", "PREV", "A/mu")
            listed = json.loads(hsvn("status", "-u", "--json", folder=wc).stdout)
            found = {item["path"]: item["repository"] for item in listed if "repository" in item}
            self.assertEqual(found["A/mu"], {"item": "modified", "properties": "modified"})
            self.assertIn("token", found["iota"]["lock"])

    def test_json_keeps_every_byte_of_a_property(self):
        listed = json.loads(hsvn("propget", "binary-property", "--json", "binary", folder=self.wc).stdout)
        self.assertEqual(listed[0]["properties"]["binary-property"]["encoding"], "base64")
        self.assertTrue(listed[0]["properties"]["binary-property"]["value"].startswith("AAECAwQF"))

    def test_colours_are_for_terminals_that_want_them(self):
        plain = hsvn("status", folder=self.wc).stdout
        self.assertNotIn("\x1b", plain)
        for environment, is_coloured in [({"TERM": "xterm"}, True), ({"TERM": "xterm", "NO_COLOR": "1"}, False),
                                         ({"TERM": "dumb"}, False)]:
            shown = on_terminal(["status"], self.wc, environment)
            self.assertEqual(re.sub(r"\x1b\[\d*m", "", shown), plain)
            self.assertEqual("\x1b[32mA       A/new\x1b[0m\n" in shown, is_coloured, environment)

    def test_json_of_a_comparison_tells_every_line(self):
        with tempfile.TemporaryDirectory() as folder:
            wc = fixtures.make_repository(os.path.realpath(folder))
            lines = [f"line {number}\n" for number in range(1, 21)]
            fixtures.write(wc, "text", "".join(lines))
            fixtures.run_svn(wc, "add", "text")
            fixtures.run_svn(wc, "commit", "-m", "Add a text")
            fixtures.run_svn(wc, "update")
            fixtures.write(wc, "text", "".join(["patched\n", *lines[1:9], "patched 10\n", *lines[10:], "more\n"]))
            fixtures.write(wc, "added", "added\n")
            fixtures.run_svn(wc, "add", "added")
            fixtures.run_svn(wc, "propset", "colour", "two\nlines", "A")
            fixtures.run_svn(wc, "move", "iota", "A/moved")
            listed = {item["path"]: item for item in json.loads(hsvn("diff", "--json", folder=wc).stdout)}
            plain = hsvn("diff", folder=wc).stdout
        self.assertEqual(list(listed), re.findall(r"(?m)^Index: (.*)", plain))
        lines = {mark: re.findall(rf"(?m)^[{mark}](?!--|\+\+ )(.*\n)", plain) for mark in " +-"}
        sections = [section for item in listed.values() for section in item["sections"]]
        for mark, key, value in [(" ", "lines", ""), ("-", "removed", "before"), ("+", "added", "after")]:
            told = [line for section in sections for line in section.get(key, [])]
            told += [line for item in listed.values() for change in item["properties"]
                     for line in change.get(value, "").splitlines()]
            self.assertCountEqual([line.rstrip("\n") for line in told], [line[:-1] for line in lines[mark]])
        self.assertEqual({path: item["change"] for path, item in listed.items()},
                         {"A": "properties only", "A/moved": "moved", "added": "added", "iota": "deleted",
                          "text": "modified"})
        self.assertTrue(listed["A/moved"]["copied-from"].endswith("iota"))
        self.assertEqual(listed["A"]["properties"], [{"name": "colour", "change": "added", "after": "two\nlines"}])
        self.assertEqual(listed["text"]["sections"][3],
                         {"kind": "changed", "original": {"first": 10, "count": 1},
                          "modified": {"first": 10, "count": 1}, "removed": ["line 10\n"], "added": ["patched 10\n"]})

    def test_json_is_written_item_by_item(self):
        lost = self.folder.name + "/lost"
        subprocess.run(["svnadmin", "create", lost + ".repository"], check=True)
        fixtures.run_svn(self.wc, "checkout", "-q", f"file://{lost}.repository", lost)
        shutil.rmtree(lost + ".repository")
        for words in [("diff", "iota", "nowhere"), ("status", "-uv", "iota", lost), ("info", "iota", lost + "@HEAD"),
                      ("list", "iota", lost), ("proplist", "iota", lost + "@HEAD"), ("propget", "color", "iota", lost + "@HEAD")]:
            done = hsvn(*words, "--json", folder=self.wc)
            self.assertEqual(done.returncode, 1, words)
            first = json.loads(done.stdout + "]")[0]
            self.assertEqual(first.get("path") or first["name"], "iota", words)

    def test_words_that_differ_are_coloured_on_a_terminal(self):
        with tempfile.TemporaryDirectory() as folder:
            wc = fixtures.make_repository(os.path.realpath(folder))
            fixtures.write(wc, "words", "common\none two \u00e4 three\n-- gone\nlast")
            fixtures.run_svn(wc, "add", "words")
            fixtures.run_svn(wc, "commit", "-m", "Add words")
            fixtures.write(wc, "words", "common\none 2 \u00e4 three four\nlast line\n")
            plain = hsvn("diff", "--word", folder=wc).stdout
            self.assertEqual(plain, hsvn("diff", folder=wc).stdout)
            shown = on_terminal(["diff", "--word"], wc, {"TERM": "xterm"})
            self.assertEqual(re.sub(r"\x1b\[\d*m", "", shown), plain)
            self.assertIn("-one \x1b[31mtwo\x1b[0m \u00e4 three\n", shown)
            self.assertRegex(shown, "\\+one \x1b.32m2\x1b.0m \u00e4 three ?\x1b.32m ?four\x1b.0m\n")
            for arguments, environment in [(["diff"], {"TERM": "xterm"}),
                                           (["diff", "--word"], {"TERM": "xterm", "NO_COLOR": "1"})]:
                self.assertEqual(on_terminal(arguments, wc, environment), plain)

    def test_a_patch_that_leads_out_of_the_working_copy_is_refused(self):
        with tempfile.TemporaryDirectory() as folder:
            wc = fixtures.make_repository(os.path.realpath(folder))
            outside = os.path.join(folder, "outside")
            os.mkdir(outside)
            os.symlink(outside, os.path.join(wc, "link"))
            for name, text in [("administrative area", "--- A/.svn/x\n+++ A/.svn/x\n@@ -0,0 +1 @@\n+x\n"),
                               ("symbolic link", "diff --git a/iota b/link/x\nrename from iota\nrename to link/x\n"),
                               ("NUL", "--- iota\0\n+++ iota\0\n@@ -1 +1 @@\n-x\n+y\n"),
                               ("changes a property, but", "--- iota\n+++ iota\n## -0,0 +1 ##\n+x\n")]:
                fixtures.write(folder, "hostile.patch", text)
                for source in ["../hostile.patch", "<(cat ../hostile.patch)"]:
                    ran = subprocess.run(["/bin/bash", "-c", f"{shlex.quote(HSVN)} patch {source}"], cwd=wc, check=False,
                                         env=fixtures.environment(wc), capture_output=True, text=True, timeout=60)
                    self.assertEqual((ran.returncode, ran.stdout), (1, ""), name)
                    self.assertIn(name, ran.stderr)
                    self.assertEqual(os.listdir(outside), [])
                    self.assertFalse(os.path.exists(os.path.join(wc, "A/.svn")))
            self.assertEqual(hsvn("status", folder=wc).stdout, "?       link\n")

    def test_the_administrative_area_is_refused_by_name(self):
        for words in [("mkdir", ".svn/new"), ("export", "iota", ".svn/new")]:
            ran = hsvn(*words, folder=self.wc)
            self.assertIn("is reserved: '.svn' is Subversion's administrative directory", ran.stderr)
            self.assertEqual(ran.returncode, 1)
            self.assertFalse(os.path.exists(os.path.join(self.wc, ".svn/new")))

    def test_output_that_cannot_be_written_is_told(self):
        for redirection, reason in [(">&-", "Bad file descriptor"), (">/dev/full", "No space left on device")]:
            for command in ["status -v", "help", "info --xml", "list --json", "--version", "help status"]:
                ran = subprocess.run(["/bin/bash", "-c", f"{shlex.quote(HSVN)} {command} {redirection}"], cwd=self.wc,
                                     env=fixtures.environment(self.wc), capture_output=True, text=True, check=False)
                self.assertRegex(ran.stderr, f"^hsvn: E0000..: Write error: {reason}\n$", command)
                self.assertEqual(ran.returncode, 1, command)

    def test_a_reader_that_is_gone_is_no_news(self):
        for command in ["status -v", "help", "log --xml", "list --json", "update", "cat iota", "export iota ../exported"]:
            reading, writing = os.pipe()
            os.close(reading)
            ran = subprocess.run([HSVN, *command.split()], cwd=self.wc, env=fixtures.environment(self.wc), stdout=writing,
                                 stderr=subprocess.PIPE, text=True, check=False)
            os.close(writing)
            self.assertEqual((ran.returncode, ran.stderr), (1, ""), command)

    def test_a_signal_ends_what_tells_relative_paths(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run(["svnadmin", "create", f"{folder}/repository"], check=True)
            os.mkdir(f"{folder}/tree")
            for number in range(400):
                fixtures.write(folder, f"tree/{number:0250}", "")
            url = f"file://{folder}/repository/tree"
            fixtures.run_svn(folder, "import", "-q", "-m", "x", "tree", url)
            # What each prints is more than a pipe holds: none is over when the signal comes.
            for command in [["import", "-m", "x", "tree", url + "/again"], ["export", url, "exported"]]:
                expected, actual = (self.ended_by_signal([program, *command], folder) for program in ["svn", HSVN])
                self.assertEqual(actual, expected, command)

    @staticmethod
    def ended_by_signal(command, folder):
        """How a program ends that is stopped when it has begun to print, and what it says."""
        with subprocess.Popen(command, cwd=folder, env=fixtures.environment(folder), stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True) as running:
            try:
                running.stdout.read(1)
                running.send_signal(signal.SIGTERM)
                _, told = running.communicate(timeout=60)
            finally:
                running.kill()
        shutil.rmtree(f"{folder}/exported", ignore_errors=True)
        return running.returncode, re.sub("(?m)^h?svn: ", "", told)

    def test_a_commit_whose_report_cannot_be_written_is_known_to_the_working_copy(self):
        """svn leaves the file modified, and out of date."""
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run(["svnadmin", "create", f"{folder}/repository"], check=True)
            subprocess.run(["svn", "checkout", "-q", f"file://{folder}/repository", f"{folder}/wc"], check=True)
            with open(f"{folder}/wc/file", "w", encoding="utf-8") as file:
                file.write("text\n")
            hsvn("add", "file", folder=f"{folder}/wc")
            ran = subprocess.run(["/bin/bash", "-c", f"{shlex.quote(HSVN)} commit -m x > /dev/full"], cwd=f"{folder}/wc",
                                 env=fixtures.environment(folder), capture_output=True, text=True, check=False)
            self.assertIn("Write error: No space left on device", ran.stderr)
            self.assertEqual(ran.returncode, 1)
            self.assertEqual(hsvn("status", "-q", folder=f"{folder}/wc").stdout, "")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
