"""A working copy as people leave them: beside the clean items of a tree some in every state that Subversion knows."""

import os
import random
import sqlite3
import subprocess
import xml.etree.ElementTree

import data


class WorkingCopy:
    """Runs commands on items of a working copy, named below it."""

    ENVIRONMENT = os.environ | {"LC_ALL": "C.UTF-8"}

    def __init__(self, folder):
        self.folder = folder

    def svn(self, command, *arguments):
        data.run("svn", command, "--quiet", *arguments, cwd=self.folder, env=self.ENVIRONMENT)

    def write(self, names, text="new\n"):
        for name in names:
            (self.folder / name).write_text(text, encoding="utf-8")


class LivedInCopy:
    """Makes a working copy lived in: about one item in forty is changed, scheduled, in conflict, out of place or gone.

    Every state takes files and folders of its own, chosen by a generator seeded with the tree's name.
    """

    PER_STATE = 750  # one of so many files is in each state that takes files

    def __init__(self, tree, folder):
        self._tree = tree
        self._copy = WorkingCopy(folder)
        self._each = max(1, len(tree.files) // self.PER_STATE)
        chance = random.Random(f"lived in {tree.name}")
        self._folders = chance.sample(tree.folders, 7 + 4 * self._few)
        taken = tuple(self._folders)
        self._files = [name for name in tree.files if not name.startswith(taken)]
        chance.shuffle(self._files)

    @property
    def _few(self):
        return max(1, self._each // 10)

    def make(self):
        """Returns how many items a scan of everything and one of the unusual ones alone report."""
        data.run("cp", "-a", self._tree.working_copy, self._copy.folder)
        self._change()
        self._schedule()
        self._lock_and_list()
        self._place()
        self._conflict()
        self._lose()
        self._interrupt()
        return self._count("--verbose"), self._count()

    # Parts of it

    def _take(self, count=None):
        """Files that nothing was done to, as paths below the working copy."""
        count = count or self._each
        taken, self._files = self._files[:count], self._files[count:]
        return taken

    def _take_folder(self):
        return self._folders.pop().rstrip("/")

    def _beside(self, label):
        """New names in the folders of files that nothing was done to."""
        return [os.path.join(os.path.dirname(name), f"{label} {number} é.c") for number, name in enumerate(self._take())]

    # States

    def _change(self):
        self._copy.write(self._take(), "changed\n")
        self._copy.svn("propset", "benchmark", "value", *self._take())

    def _schedule(self):
        self._copy.write(self._beside("unversioned"))
        added = self._beside("added")
        self._copy.write(added)
        self._copy.svn("add", *added)
        self._copy.svn("delete", *self._take())
        replaced = self._take()
        self._copy.svn("delete", *replaced)
        self._copy.write(replaced)
        self._copy.svn("add", *replaced)
        for name in self._take(self._few):
            self._copy.svn("copy", name, f"{os.path.dirname(name)}/copied.c")
        for name in self._take(self._few):
            self._copy.svn("move", name, f"{os.path.dirname(name)}/moved.c")
        for _ in range(self._few):
            folder = self._take_folder()
            self._copy.svn("copy", folder, f"{folder}-copy")
            self._copy.write([f"{folder}-copy/{os.path.basename(name)}" for name in self._files_in(folder)[:2]], "edited\n")
        self._copy.svn("move", *self._folder_and_new_name())
        self._copy.svn("delete", self._take_folder())

    def _files_in(self, folder):
        return [name for name in self._tree.files if os.path.dirname(name) == folder]

    def _folder_and_new_name(self):
        folder = self._take_folder()
        return folder, f"{folder}-moved"

    def _lock_and_list(self):
        self._copy.svn("lock", *self._take())
        self._copy.svn("changelist", "benchmark", *self._take())

    def _place(self):
        """Switched items, externals, a working copy in another one, folders that are not whole by choice."""
        for _ in range(self._few):
            self._copy.svn("switch", "--ignore-ancestry", f"^/trunk/{self._tree.folders[0].rstrip('/')}",
                      self._take_folder())
        for name in self._take(self._few):
            self._copy.svn("switch", "--ignore-ancestry", f"^/trunk/{self._tree.files[0]}", name)
        for _ in range(self._few):
            folder = self._take_folder()
            self._copy.svn("propset", "svn:externals", f"^/trunk/{self._tree.folders[0].rstrip('/')} external\n"
                      f"^/trunk/{self._tree.files[0]} external.c", folder)
            self._copy.svn("update", folder)
        folder = self._take_folder()
        self._copy.svn("checkout", self._tree.url(f"trunk/{folder}"), f"{folder}/nested")
        self._copy.svn("update", "--set-depth", "empty", self._take_folder())
        self._copy.svn("update", "--set-depth", "exclude", *self._take(self._few))

    def _conflict(self):
        """Conflicts of text, properties and trees with what somebody else has committed meanwhile."""
        text, properties = self._take(), self._take()
        edited, deleted = self._take(self._few), self._take(self._few)
        folder = self._take_folder()
        both = [f"{folder}/of both {number}.c" for number in range(self._few)]
        other = WorkingCopy(self._tree.folder / "other")
        data.run("svn", "checkout", "--quiet", self._tree.url("trunk"), other.folder)
        other.write(text + deleted, "theirs\n")
        other.svn("propset", "benchmark", "theirs", *properties)
        other.svn("delete", *edited)
        other.write(both)
        other.svn("add", *both)
        other.svn("commit", "--message", "theirs")
        data.run("rm", "-r", other.folder)
        self._copy.write(text + edited, "mine\n")
        self._copy.svn("propset", "benchmark", "mine", *properties)
        self._copy.svn("delete", *deleted)
        self._copy.write(both, "mine\n")
        self._copy.svn("add", *both)
        self._copy.svn("update", "--accept", "postpone", folder, *text, *properties, *edited, *deleted)

    def _lose(self):
        """What is missing, and what lies in another's way."""
        for name in self._take():
            (self._copy.folder / name).unlink()
        for name in self._take(self._few):
            (self._copy.folder / name).unlink()
            (self._copy.folder / name).mkdir()
        for obstructed in (False, True):
            folder = self._copy.folder / self._take_folder()
            data.run("rm", "-r", folder)
            if obstructed:
                folder.write_text("in the way\n", encoding="utf-8")

    def _interrupt(self):
        """What an update that was cut off leaves."""
        connection = sqlite3.connect(self._copy.folder / ".svn/wc.db")
        with connection:
            for _ in range(self._few):
                connection.execute("UPDATE nodes SET presence = 'incomplete' WHERE local_relpath = ?",
                                   (self._take_folder(),))
        connection.close()

    def _count(self, *options):
        told = subprocess.run(["svn", "status", "--xml", *options, self._copy.folder], check=True,
                              stdout=subprocess.PIPE).stdout
        return len(xml.etree.ElementTree.fromstring(told).findall(".//entry"))


class LivedInData(data.TreeData):
    """A tree that has a working copy lived in beside the others; the record tells how many items both scans report."""

    @property
    def lived_in_copy(self):
        """As long a path as the others'."""
        return self.folder / "li"

    def _make(self):
        record = super()._make()
        everything, unusual = LivedInCopy(self, self.lived_in_copy).make()
        return record | {"lived-in items": everything, "unusual": unusual}
