#!/usr/bin/python3
"""Tests of Resources/Scripts/change-svn-wc-format.py on real working copies (see Samples/README.md)."""

import fcntl
import os
import pathlib
import re
import runpy
import shutil
import signal
import sqlite3
import subprocess
import sys
import tarfile
import tempfile
import unittest

TESTS = pathlib.Path(__file__).resolve().parent
SCRIPT = TESTS.parent / "Resources/Scripts/change-svn-wc-format.py"
FORMATS = {"1.4": 8, "1.5": 9, "1.6": 10}
NOBODY = 65534


def snapshot(tree):
    """Everything below a folder but the times of the administrative files."""
    def contents(path):
        return os.readlink(path) if path.is_symlink() else path.read_bytes() if path.is_file() else None
    return {str(path): (path.lstat().st_mode, contents(path), ".svn" in path.parts or path.lstat().st_mtime_ns)
            for path in tree.rglob("*")}


def versioned_folders(wc):
    return [path.parent for path in wc.rglob(".svn") if "externals/ext" not in str(path)]


def records(folder):
    """The fields of each entry by its name, filled up to those of format 10."""
    lines = (folder / ".svn/entries").read_bytes().split(b"\n", 1)[1]
    entries = [record.split(b"\n")[:-1] for record in lines.split(b"\f\n")[:-1]]
    return {fields[0]: fields + [b""] * (36 - len(fields)) for fields in entries}


def replace_in_entries(folder, old, new):
    entries = folder / ".svn/entries"
    data = entries.read_bytes()
    assert old in data
    entries.chmod(0o644)
    entries.write_bytes(data.replace(old, new))
    entries.chmod(0o444)


def status_rows(text, width):
    """Letters by path, without the externals (their URLs are right only where the samples were made) and the item
    of a deleted folder, which newer lines do not list."""
    lines = [line for line in text.splitlines() if re.match("[ +ACDIKMRSX?!~]{6}", line) and line[:6].strip()]
    return {line[width + 1:]: line[:width].rstrip() for line in lines
            if not re.match("externals/ext|deleted-dir/", line[width + 1:])}


def run_and_kill(step, *arguments):
    """Runs the script in a child process that is killed before its step-th change to the disk; True if it was."""
    child = os.fork()
    if child == 0:
        changes = iter(range(1, step + 1))

        def count(event, details):
            writes = event == "open" and details[2] & (os.O_WRONLY | os.O_RDWR | os.O_CREAT)
            if (writes or event in ("os.rename", "os.remove", "os.symlink", "os.chmod")) and next(changes) == step:
                os.kill(os.getpid(), signal.SIGKILL)

        sys.argv = [str(SCRIPT), *map(str, arguments)]
        os.dup2(os.open(os.devnull, os.O_WRONLY), 1)
        os.sync = lambda: None
        sys.addaudithook(count)
        try:
            runpy.run_path(str(SCRIPT), run_name="__main__")
        except SystemExit as status:
            os._exit(status.code)
    end = os.waitpid(child, 0)[1]
    assert end in (0, signal.SIGKILL)
    return end == signal.SIGKILL


class ChangeWorkingCopyFormatTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.folder.chmod(0o755)
        self.script = shutil.copy(SCRIPT, self.folder)  # readable by any user, wherever the sources are

    def unpack(self, line):
        shutil.rmtree(self.folder / line, ignore_errors=True)
        with tarfile.open(TESTS / f"Samples/{line}.tar.gz") as archive:
            archive.extractall(self.folder)
        wc = self.folder / line / "wc"
        for path in wc.rglob(".svn") if line in FORMATS else ():
            replace_in_entries(path.parent, b"file:///srv/hsvn-samples", f"file://{self.folder}".encode())
        return wc

    def skeleton(self, line, *names):
        """A copy of the administrative folders of some folders; Subversion would call all other items missing."""
        full, skeleton = self.unpack(line), self.folder / f"skeleton of {line}"
        for name in names:
            shutil.copytree(full / name / ".svn", skeleton / name / ".svn")
        return skeleton

    def run_script(self, *arguments, **options):
        return subprocess.run(["/usr/bin/python", self.script, *arguments], capture_output=True, text=True,
                              timeout=60, **options)

    def convert(self, wc, *arguments):
        result = self.run_script(wc, *arguments)
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def assert_refused(self, wc, target, *reasons, **options):
        before = snapshot(self.folder)
        result = self.run_script(wc, target, **options)
        self.assertEqual(result.returncode, 1)
        for reason in reasons:
            self.assertIn(reason, result.stderr)
        self.assertEqual(snapshot(self.folder), before)

    def test_conversions_change_every_folder_and_the_way_back_restores_every_byte(self):
        for line, way in (("1.4", ("1.5", "1.6", "1.5", "1.4")), ("1.4", ("1.6", "1.4")), ("1.5", ("1.6", "1.5"))):
            with self.subTest(line=line, way=way):
                wc = self.unpack(line)
                before = snapshot(wc)
                for target in way:
                    self.convert(wc, target)
                    number = b"%d\n" % FORMATS[target]
                    for admin in [folder / ".svn" for folder in versioned_folders(wc)]:
                        self.assertTrue((admin / "entries").read_bytes().startswith(number), admin)
                        self.assertEqual((admin / "entries").stat().st_mode & 0o777, 0o444)
                        self.assertEqual((admin / "format").exists() and (admin / "format").read_bytes(),
                                         target != "1.6" and number)
                    if target == "1.6":
                        self.assertTrue((wc / ".svn/text-base/replaced.txt.svn-revert").exists())
                self.assertEqual(snapshot(wc), before)

    def test_loss_is_refused_and_forced_loss_is_confined_to_what_the_line_cannot_store(self):
        newer = [("", b"", 34, "the tree conflicts"), ("externals", b"ext-file.txt", 35, "a file external"),
                 ("", b"missing-dir", 33, "'exclude'")]
        older = [("sparse-dir", b"", 33, "'empty'"), ("", b"changelist.txt", 30, "'my-list'"),
                 ("deleted-dir", b"", 31, "keep the local copy")]
        for line, target, lost in (("1.5", "1.4", older), ("1.6", "1.5", newer), ("1.6", "1.4", newer + older)):
            with self.subTest(line=line, target=target):
                wc = self.unpack(line)
                uuid = records(wc)[b""][25]
                end = uuid + b"\n" * (7 if line == "1.5" else 1)
                replace_in_entries(wc / "deleted-dir", end, uuid + b"\n" * 6 + b"keep-local\n")
                if line == "1.6":
                    replace_in_entries(wc, b"missing-dir\ndir\n", b"missing-dir\ndir\n" + b"\n" * 31 + b"exclude\n")
                expected = {folder: records(folder) for folder in versioned_folders(wc)}
                for folder, name, place, words in lost:
                    self.assertTrue(expected[wc / folder][name][place])
                    self.assert_refused(wc, target, f"'{wc / folder / os.fsdecode(name)}': ", words)
                    expected[wc / folder][name][place] = b""
                for entries in expected.values():
                    entries[b""][13] = b"svn:special svn:externals svn:needs-lock"  # 1.6 leaves this out
                    for fields in entries.values():
                        fields[32] = fields[32] if target > "1.4" else b""  # a cache
                self.convert(wc, target, "--force")
                self.assertEqual({folder: records(folder) for folder in versioned_folders(wc)}, expected)

    def test_urls_become_canonical_for_format_10(self):
        wc = self.unpack("1.4")
        replace_in_entries(wc, f"file://{self.folder}/1.4".encode(), b"HTTP://Me@Example.ORG//a/./B")
        self.convert(wc, "1.6")
        canonical = b"http://Me@example.org/a/B/repo"
        self.assertEqual(records(wc)[b""][3:5], [canonical + b"/trunk", canonical])

    def test_refusals_change_nothing(self):
        inner = "dir with space/ünter"
        wc = self.unpack("1.4")
        for path, target, reason in (
                ("", "1.3", "'1.3': is not a Subversion line"), ("", "1.7", "the installed Subversion"),
                ("no such folder", "1.6", "does not exist"), ("normal.txt", "1.6", "is not a working copy"),
                ("unversioned dir", "1.6", "is not a working copy"), (inner, "1.6", "is part of the working copy"),
                ("../wc-adminlocked", "1.6", "is locked"), ("../wc-adminlocked", "1.14", "is locked")):
            with self.subTest(path=path, target=target):
                self.assert_refused(wc / path, target, reason)
        wc = self.unpack("1.14")
        for target in ("1.6", "1.7"):
            self.assert_refused(wc, target, "has format 31, which cannot be taken back")

        def write(name, data=b""):
            return lambda wc: (wc / name).write_bytes(data)

        def edit(old, new):
            return lambda wc: replace_in_entries(wc / inner, old, new)

        def replace(name, make):
            def prepare(wc):
                (wc / inner / ".svn" / name).unlink(missing_ok=True)
                make(wc / inner / ".svn" / name)
            return prepare

        original, wc = self.skeleton("1.4", "", "dir with space", inner), self.folder / "wc"
        for prepare, reason in (
                (write(f"{inner}/.svn/log.2"), "unfinished operation ('log.2')"),
                (write(f"{inner}/.svn/KILLME"), "unfinished operation ('KILLME')"),
                (write(".svn/format-change", b"7 careful\n"), "is not a journal"),
                (write(".svn/wc.db", b"no database"), "is not a working-copy database"),
                (edit(b"8\n", b"4\n"), "ünter': has format 4, which is older"),
                (edit(b"8\n", b"11\n"), "ünter': has format 11, which cannot"),
                (edit(b"\nfile\n", b"\nlink\n"), "the unknown kind 'link'"),
                (edit(b"\f\n", b"\n" * 30 + b"more\n\f\n"), "more fields than format 8 knows"),
                (edit(b"\ndir\n", b"\nfile\n"), "no entry for the directory itself"),
                *((edit(b"datei", name), "has the wrong name") for name in (
                    b"../datei", rb"\x2e\x2e\x2fvictim", rb"a\x00b")),
                *((edit("datei ß.txt".encode(), name), "has the wrong name") for name in (
                    b".", rb"\x2e.", b".svn", rb".\x73vn")),
                *((replace(name, os.mkfifo), "is not a plain file") for name in (
                    "entries", "format", "wc.db", "tmp/pipe", "text-base/pipe.svn-base")),
                (replace("text-base/link", lambda path: path.symlink_to("/etc/hostname")), "is not a plain file"),
                (edit(b"\f\n", b""), "no end")):
            with self.subTest(reason=reason):
                shutil.copytree(original, wc)
                prepare(wc)
                for target in ("1.6", "1.14"):
                    self.assert_refused(wc, target, reason)
                shutil.rmtree(wc)

    def test_links_lead_to_no_other_working_copy(self):
        for target in ("1.6", "1.14"):
            wc, victim = self.unpack("1.4"), shutil.copytree(self.unpack("1.4"), self.folder / "victim")
            shutil.rmtree(wc / "dir with space")
            (wc / "dir with space").symlink_to(victim)
            self.assert_refused(wc, target, "is a symbolic link in the place of a versioned directory")
            shutil.rmtree(wc / ".svn")
            (wc / ".svn").symlink_to(victim / ".svn")
            self.assert_refused(wc, target, ".svn': is a symbolic link")
            shutil.rmtree(victim)

    def test_unwritable_and_busy_working_copies_are_refused(self):
        wc = self.unpack("1.4")
        subprocess.run(["chmod", "-R", "a+rwX", wc], check=True)
        (wc / "dir with space/.svn").chmod(0o555)
        other_user = {"user": NOBODY} if os.geteuid() == 0 else {}
        self.assert_refused(wc, "1.6", f"'{wc}/dir with space/.svn/lock': Permission denied", **other_user)
        handle = os.open(wc / ".svn", os.O_RDONLY)
        self.addCleanup(os.close, handle)
        fcntl.flock(handle, fcntl.LOCK_EX)
        self.assert_refused(wc, "1.6", "is being converted by another run")

    def test_a_killed_conversion_is_completed_by_the_next_run_from_every_step(self):
        for line, target, back in (("1.4", "1.6", "1.4"), ("1.6", "1.4", "1.5")):
            original, wc, converted = self.skeleton(line, "", "sparse-dir", "dir with space"), self.folder / "wc", {}
            for way in ((target,), (target, back)):
                shutil.copytree(original, wc)
                for goal in way:
                    self.convert(wc, goal, "--force")
                converted[goal] = snapshot(wc)
                shutil.rmtree(wc)
            step, killed = 0, True
            while killed:
                step += 1
                shutil.copytree(original, wc)
                killed = run_and_kill(step, wc, target, "--force")
                admins = [folder / ".svn" for folder in versioned_folders(wc)]
                mixed = len({(admin / "entries").read_bytes().split(b"\n")[0] for admin in admins}) > 1
                self.assertTrue(not mixed or all((admin / "lock").exists() for admin in admins), step)
                # Once files were being replaced, the killed run's --force counts.
                begun = mixed or (wc / ".svn/format-change").exists()
                goal = back if begun and step % 2 else target
                self.assertFalse(run_and_kill(sys.maxsize, wc, goal, *(() if begun else ("--force",))))
                self.assertEqual(snapshot(wc), converted[goal], (line, goal, step))
                shutil.rmtree(wc)
            self.assertGreater(step, 30)

    def test_the_installed_subversion_upgrades_and_status_stays_as_recorded(self):
        for line, width in (("1.4", 6), ("1.5", 6), ("1.6", 7)):
            with self.subTest(line=line):
                wc = self.unpack(line).rename(self.folder / f"wc@{line}")
                self.convert(wc, "1.14")
                self.convert(wc, "1.8")
                status = subprocess.run(["svn", "status", "--no-ignore"], cwd=wc, check=True, capture_output=True,
                                        text=True, env=dict(os.environ, LC_ALL="C.UTF-8")).stdout
                expected = (self.folder / line / "expected/status-no-ignore.sorted").read_text("utf-8")
                self.assertGreater(len(status_rows(expected, width)), 30)
                self.assertEqual(status_rows(status, 7), status_rows(expected, width))

    def test_a_killed_or_failed_upgrade_can_be_repeated(self):
        wc = self.unpack("1.5")
        for folder in versioned_folders(wc):  # as 'svn upgrade' leaves it until the new database is in place
            (folder / ".svn/lock").touch()
        (wc / ".svn/tmp/wcng/.svn").mkdir(parents=True)
        database = sqlite3.connect(wc / ".svn/tmp/wcng/.svn/wc.db")
        database.execute("begin exclusive")
        self.assertIn("is being upgraded by Subversion", self.run_script(wc, "1.14").stderr)
        database.close()
        self.convert(wc, "1.14")
        self.assertEqual(len(versioned_folders(wc)), 1)
        (wc / ".svn/tmp/wcng").mkdir()  # as it leaves it until it has tidied up
        database = sqlite3.connect(wc / ".svn/wc.db")
        database.execute("insert into work_queue (work) values ('(postupgrade)')")
        database.commit()
        self.convert(wc, "1.14")
        self.assertEqual(database.execute("select count(*) from work_queue").fetchone(), (0,))
        database.close()
        wc = self.unpack("1.4")
        (wc / ".svn/text-base/normal.txt.svn-base").unlink()
        self.assert_refused(wc, "1.14", "'svn upgrade' failed: svn: E155016")


if __name__ == "__main__":
    unittest.main()
