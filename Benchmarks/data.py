"""The benchmarks' data: repositories and working copies, the same on every machine, made once below a cache folder.

Repositories are loaded from generated dump streams, which is far faster than committing. Every choice comes from a
generator seeded with the data set's name.
"""

import json
import os
import random
import shutil
import subprocess
import tempfile

FORMAT = 3  # of the data; a data set of another format is made anew
PATH_LENGTH = 60  # characters of an item's absolute path, where the cache folder's own path leaves room for it
AUTHORS = [f"author-{number:02}" for number in range(12)]
WORDS = "the fix of a node path revision merge folder client answers when reading older status records again".split()


class Dump:
    """Writes a dump stream, revision by revision."""

    def __init__(self, stream, seed):
        self._stream = stream
        self._random = random.Random(seed)
        self._revision = 0
        self._record({"SVN-fs-dump-format-version": 2})

    def _record(self, headers, content=b""):
        lines = "".join(f"{key}: {value}\n" for key, value in headers.items())
        self._stream.write(lines.encode() + b"\n" + content)

    @staticmethod
    def _properties(properties):
        def sized(letter, text):
            data = text.encode()
            return b"%c %d\n%s\n" % (letter, len(data), data)

        pairs = (sized(ord("K"), name) + sized(ord("V"), value) for name, value in properties.items())
        return b"".join(pairs) + b"PROPS-END\n"

    def revision(self):
        """Begins the next revision."""
        self._revision += 1
        seconds = self._revision * 60
        message = "\n".join(
            " ".join(self._random.choices(WORDS, k=self._random.randint(4, 12)))
            for _ in range(self._random.randint(1, 3))
        )
        properties = self._properties({
            "svn:author": self._random.choice(AUTHORS),
            "svn:date": f"2020-01-{1 + seconds // 86400:02}T{seconds // 3600 % 24:02}:{seconds // 60 % 60:02}"
                        f":00.{self._revision % 1000000:06}Z",
            "svn:log": message,
        })
        self._record({
            "Revision-number": self._revision,
            "Prop-content-length": len(properties),
            "Content-length": len(properties),
        }, properties + b"\n")
        return self._revision

    def node(self, path, kind, action, content=None, copied_from=None):
        headers = {"Node-path": path, "Node-kind": kind, "Node-action": action}
        if copied_from:
            headers["Node-copyfrom-rev"], headers["Node-copyfrom-path"] = copied_from
        if content is not None:
            headers["Text-content-length"] = headers["Content-length"] = len(content)
        self._record(headers, (content or b"") + b"\n\n")

    def add_folder(self, path):
        self.node(path, "dir", "add")

    def add_file(self, path, content):
        self.node(path, "file", "add", content)


def run(*command, **options):
    return subprocess.run([str(part) for part in command], check=True, **options)


def load_repository(folder, write):
    """Makes a repository of the dump stream that the function `write` writes.

    It is loaded in memory where the system has a folder for that: Subversion waits for the disk at every revision.
    """
    memory = "/dev/shm"
    with tempfile.TemporaryDirectory(dir=memory if os.access(memory, os.W_OK) else folder.parent) as staging:
        loaded = os.path.join(staging, "repository")
        run("svnadmin", "create", loaded)
        command = ["svnadmin", "load", "--quiet", "--no-flush-to-disk", "-M", "256", loaded]
        load = subprocess.Popen(command, stdin=subprocess.PIPE)
        with load.stdin as stream:
            write(stream)
        if load.wait() != 0:
            raise RuntimeError(f"svnadmin load into {loaded} failed")
        shutil.move(loaded, folder)


class DataSet:
    """A folder of the cache that is made once; its record keeps what is known of it."""

    def __init__(self, cache, name):
        self.name = name
        self.folder = cache / name
        self.record_file = self.folder / "data-set.json"
        self.record = {}

    @property
    def repository(self):
        return self.folder / "repository"

    @property
    def working_copy(self):
        return self.folder / "wc"

    def url(self, path=""):
        return f"file://{self.repository}/{path}".rstrip("/")

    def make(self, log):
        """Makes the data set unless the cache holds it whole."""
        if self.record_file.exists():
            self.record = json.loads(self.record_file.read_text())
            if self.record.get("format") == FORMAT:
                return self
        log(f"making the data set {self.name}")
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        self.record = {"format": FORMAT} | self._make()
        self.record_file.write_text(json.dumps(self.record))
        return self


class TreeData(DataSet):
    """A working copy of files spread over folders, and if wanted another one with a hundredth changed in five ways.

    The record tells how many files there are, how many items each working copy has, how many are changed, how many
    entries the repository's folder has, and the mean length of the files' paths.
    """

    REVISIONS = 20

    def __init__(self, cache, files, per_folder, is_edited, name=None):
        super().__init__(cache, name or (f"tree-{files}" if per_folder < files else f"folder-{files}"))
        self._per_folder = per_folder
        self._count = files
        self._is_edited = is_edited
        self.folders, self.files = self._names()

    @property
    def edited_copy(self):
        """As long a path as the other's."""
        return self.folder / "ed"

    def _names(self):
        if self._per_folder >= self._count:
            folders = [""]
        else:
            numbers = range(self._count // self._per_folder)
            folders = [f"d{number // 50:02}/folder-{number:04}/" for number in numbers]
        room = PATH_LENGTH - len(f"{self.working_copy}/{folders[0]}")
        digits = len(str(self._per_folder - 1))
        stem = "source-file-of-the-tree-".ljust(PATH_LENGTH, "x")[:max(1, room - digits - len(".c"))]
        names = [f"{stem}{number:0{digits}}.c" for number in range(self._per_folder)]
        return folders, [folder + name for folder in folders for name in names]

    def _every_folder(self):
        """Those that hold folders alone, too; each after the one that it lies in."""
        parts = [folder.rstrip("/").split("/") for folder in self.folders if folder]
        return ["/".join(path) for path in sorted({tuple(names[:end]) for names in parts
                                                   for end in range(1, len(names) + 1)})]

    def _write(self, stream):
        dump = Dump(stream, self.name)
        dump.revision()
        dump.add_folder("trunk")
        for folder in self._every_folder():
            dump.add_folder(f"trunk/{folder}")
        for part in range(self.REVISIONS):
            dump.revision()
            for name in self.files[part::self.REVISIONS]:
                dump.add_file(f"trunk/{name}", f"contents of {name}\n".encode())

    def _make(self):
        load_repository(self.repository, self._write)
        run("svn", "checkout", "--quiet", self.url("trunk"), self.working_copy, env=os.environ | {"LC_ALL": "C.UTF-8"})
        each = max(1, self._count // 500)
        if self._is_edited:
            run("cp", "-a", self.working_copy, self.edited_copy)
            self._change(random.Random(self.name).sample(self.files, 3 * each), each)
        parents = len({folder.split("/")[0] for folder in self.folders if folder})
        items = 1 + len(self._every_folder()) + self._count
        lengths = [len(f"{self.working_copy}/{name}") for name in self.files]
        return {"files": self._count, "items": items, "edited items": items + 2 * each, "changed": 5 * each,
                "entries": self._count + parents, "path length": round(sum(lengths) / len(lengths), 1)}

    def _change(self, chosen, each):
        """Changes the chosen files in three ways, and adds as many unversioned and added ones."""
        modified, deleted, described = chosen[:each], chosen[each:2 * each], chosen[2 * each:]
        for name in modified:
            with open(self.edited_copy / name, "a", encoding="utf-8") as file:
                file.write("one more line\n")
        parent = os.path.dirname(self.files[0])
        unversioned = [os.path.join(parent, f"unversioned-{number}") for number in range(each)]
        added = [os.path.join(parent, f"added-{number}") for number in range(each)]
        for name in unversioned + added:
            (self.edited_copy / name).write_text("new\n", encoding="utf-8")
        self._svn("delete", deleted)
        self._svn("add", added)
        self._svn("propset", described, "benchmark", "value")
        run("svn", "status", "--quiet", self.edited_copy, stdout=subprocess.DEVNULL)

    def _svn(self, command, names, *arguments):
        targets = self.folder / "targets"
        targets.write_text("\n".join(names), encoding="utf-8")
        run("svn", command, "--quiet", *arguments, "--targets", targets, cwd=self.edited_copy)
        targets.unlink()


class DeepTreeData(TreeData):
    """Folders each of which lies in the one before."""

    DEPTH = 100

    def __init__(self, cache, files):
        super().__init__(cache, files, max(1, files // self.DEPTH), False, f"deep-{files}")
        names = [f"level-{number:02}/" for number in range(len(self.folders))]
        self.folders = ["".join(names[:level + 1]) for level in range(len(names))]
        self.files = [f"{folder}file-{number:02}.c" for folder in self.folders for number in range(self._per_folder)]


class ForeignTreeData(TreeData):
    """Names in several scripts."""

    def __init__(self, cache, files, per_folder):
        super().__init__(cache, files, per_folder, False, f"foreign-{files}")
        words = ["straße", "über", "файл", "ファイル", "αρχείο"]
        self.folders = [f"{words[number % len(words)]}-{number:04}/" for number in range(len(self.folders))]
        self.files = [f"{folder}{words[number % len(words)]} {number:02}.c" for folder in self.folders
                      for number in range(per_folder)]


class LogData(DataSet):
    """A repository of many small revisions: changes of a few files each, with additions, deletions and copies."""

    def __init__(self, cache, revisions):
        super().__init__(cache, f"log-{revisions}")
        self._revisions = revisions

    def _write(self, stream):
        chance = random.Random(self.name)
        dump = Dump(stream, self.name)
        last = dump.revision()
        for folder in ["trunk", "tags"] + [f"trunk/part-{number:02}" for number in range(40)]:
            dump.add_folder(folder)
        files = [f"trunk/part-{number % 40:02}/file-{number:05}.c" for number in range(400)]
        for name in files:
            dump.add_file(name, b"first\n")
        while last < self._revisions:
            last = dump.revision()
            if last % 50 == 0:
                dump.node(f"tags/release-{last:05}", "dir", "add", copied_from=(last - 1, "trunk"))
                continue
            if last % 20 == 0:
                files.append(f"trunk/part-{last % 40:02}/later-{last:05}.c")
                dump.add_file(files[-1], b"later\n")
            if last % 90 == 0:
                dump.node(files.pop(chance.randrange(len(files) - 1)), "file", "delete")
            for name in chance.sample(files[:-1], chance.randint(1, 20)):
                dump.node(name, "file", "change", f"as of {last}\n".encode())

    def _make(self):
        load_repository(self.repository, self._write)
        return {"items": self._revisions}


class FileData(DataSet):
    """A repository with one large text file."""

    def __init__(self, cache, size):
        super().__init__(cache, f"file-{size}")
        self._size = size

    def _write(self, stream):
        chance = random.Random(self.name)
        lines = [" ".join(chance.choices(WORDS, k=12)).encode() + b"\n" for _ in range(5000)]
        content = bytearray()
        while len(content) < self._size:
            content += b"".join(chance.sample(lines, len(lines)))
        dump = Dump(stream, self.name)
        dump.revision()
        dump.add_file("large.txt", bytes(content[:self._size]))

    def _make(self):
        load_repository(self.repository, self._write)
        return {"items": self._size}


class PairData(DataSet):
    """A working copy of two text files: the second one is the first with changes, four in a hundred lines."""

    def __init__(self, cache, lines):
        super().__init__(cache, f"pair-{lines}")
        self._lines = lines

    def _texts(self):
        chance = random.Random(self.name)
        before = [f"{number} " + " ".join(chance.choices(WORDS, k=8)) + "\n" for number in range(self._lines)]
        after = list(before)
        changed = range(12, self._lines, 25)
        for number, line in enumerate(reversed(changed)):
            replaced, new = [(1, ["another line\n"]), (0, ["one more line\n"]), (1, [])][number % 3]
            after[line:line + replaced] = new
        return "".join(before).encode(), "".join(after).encode(), len(changed)

    def _make(self):
        before, after, changes = self._texts()

        def write(stream):
            dump = Dump(stream, self.name)
            dump.revision()
            dump.add_file("before.txt", before)
            dump.add_file("after.txt", after)

        load_repository(self.repository, write)
        run("svn", "checkout", "--quiet", self.url(), self.working_copy)
        return {"items": self._lines, "changes": changes}
