#!/usr/bin/env python3
"""Measures the subcommands of `hsvn` beside those of `svn`: whole processes in turn, medians.

What a subcommand changes is made anew before each run, as a copy of what the first one had.
"""

import argparse
import contextlib
import getpass
import os
import pathlib
import random
import shutil
import socket
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass

import data
import measuring
import run
import workloads

GOAL = 1.03  # hsvn's processor time in units of svn's
WEB_SERVER = """ServerRoot {folder}
ServerName localhost
Listen 127.0.0.1:{port}
PidFile {folder}/pid
ErrorLog {folder}/errors
{modules}
User {user}
Group {user}
MaxKeepAliveRequests 0
MaxConnectionsPerChild 1
<Location />
DAV svn
SVNParentPath {folder}
SVNAllowBulkUpdates Prefer
</Location>
"""
WEB_USER = "www-data" if os.geteuid() == 0 else getpass.getuser()
MODULES = ["mpm_prefork", "authn_core", "authz_core", "authz_user", "dav", "dav_svn"]


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help="build folder that holds hsvn and bench_measure")
    parser.add_argument("--folder", type=pathlib.Path,
                        help="where the data is put, and removed (default: where temporary files are)")
    parser.add_argument("--files", type=int, default=4000, help="files of the tree (default: %(default)s)")
    parser.add_argument("--rounds", type=int, default=11, help="runs of each program (default: %(default)s)")
    parser.add_argument("--schemes", default="file,svn,http", help="ways to the repository (default: %(default)s)")
    parser.add_argument("--only", metavar="NAME,...", help="these rows alone; names may end in *")
    return parser.parse_args()


class Tree(data.TreeData):
    """A tree whose files have contents and properties, a branch of it, and a file of many revisions."""

    LINES = 3000
    CHANGES = 20  # revisions that change the trunk once there is a branch

    def _write(self, stream):
        chance = random.Random(self.name)
        dump = data.Dump(stream, self.name)
        dump.revision()
        for folder in ["trunk", "branches", *(f"trunk/{name}" for name in self._every_folder())]:
            dump.add_folder(folder)
        for name in self.files:
            dump.add_file(f"trunk/{name}", self._content(name))
        lines = [f"line {number} {' '.join(chance.choices(data.WORDS, k=6))}\n" for number in range(self.LINES)]
        dump.add_file("trunk/history.c", "".join(lines).encode())
        for number in range(200):
            for line in chance.sample(range(self.LINES), 20):
                lines[line] = f"line {line} of {number} {' '.join(chance.choices(data.WORDS, k=6))}\n"
            dump.revision()
            dump.node("trunk/history.c", "file", "change", "".join(lines).encode())
        self.branched = dump.revision()
        dump.node("branches/one", "dir", "add", copied_from=(self.branched - 1, "trunk"))
        for number in range(self.CHANGES):
            dump.revision()
            for name in self.files[number:self._count // 4:self.CHANGES]:
                dump.node(f"trunk/{name}", "file", "change", self._content(name) + b"changed\n")

    @staticmethod
    def _content(name):
        return f"contents of {name}\n".encode() * 30

    def _make(self):
        data.load_repository(self.repository, self._write)
        self._set_properties()
        (self.repository / "conf/svnserve.conf").write_text("[general]\nanon-access = write\n", encoding="utf-8")
        hook = self.repository / "hooks/pre-revprop-change"
        hook.write_text("#!/bin/sh\n", encoding="utf-8")
        hook.chmod(0o755)
        return {"files": self._count}

    def _set_properties(self):
        data.run("svn", "checkout", "-q", self.url("trunk"), self.working_copy)
        data.run("svn", "propset", "-q", "svn:eol-style", "native", *self.files[::4], cwd=self.working_copy)
        data.run("svn", "propset", "-q", "benchmark", "value", *self.files[::2], cwd=self.working_copy)
        data.run("svn", "commit", "-q", "-m", "properties", self.working_copy)
        shutil.rmtree(self.working_copy)


@dataclass(frozen=True)
class Row:
    """A subcommand, run in the folder of a working copy."""

    name: str
    arguments: tuple
    state: str = ""  # the working copy that it changes, which is copied for each run; else the clean one serves
    commits: bool = False  # the repository is copied too
    is_remote: bool = True  # else it is measured of the first scheme alone


class Work:
    """The working copies of one scheme."""

    def __init__(self, tree, folder, url):
        self._tree, self.url = tree, url
        self.folder = folder / "work"
        shutil.rmtree(self.folder, ignore_errors=True)
        self.copies = folder / "copies"
        shutil.rmtree(self.copies, ignore_errors=True)
        self.copies.mkdir()
        self._svn("checkout", f"{url}/trunk", self.copies / "clean")
        for state in ["edited", "conflicts", "branch", "old", "unversioned"]:
            shutil.copytree(self.copies / "clean", self.copies / state, symlinks=True)
            getattr(self, f"_make_{state}")(self.copies / state)
        time.sleep(1.1)  # files younger than that are read again by every status

    def _svn(self, *arguments, **options):
        data.run("svn", arguments[0], "-q", *arguments[1:], **options)

    def _make_edited(self, folder):
        for name in self._tree.files[::40]:
            with open(folder / name, "a", encoding="utf-8") as file:
                file.write("one more line\n")
        self._svn("delete", *self._tree.files[1::80], cwd=folder)
        self._svn("propset", "benchmark", "other", *self._tree.files[2::80], cwd=folder)

    def _make_conflicts(self, folder):
        self._svn("update", "-r", self._tree.branched, folder)
        for name in self._tree.files[:self._tree.CHANGES * 5]:
            with open(folder / name, "a", encoding="utf-8") as file:
                file.write("in conflict\n")
        self._svn("update", "--accept", "postpone", folder)

    def _make_branch(self, folder):
        self._svn("switch", f"{self.url}/branches/one", folder)

    def _make_old(self, folder):
        self._svn("update", "-r", self._tree.branched, folder)

    def _make_unversioned(self, folder):
        shutil.copytree(folder / "d00", folder / "new")

    def rows(self):
        trunk, one, files = f"{self.url}/trunk", f"{self.url}/branches/one", self._tree.files
        some, before = files[::max(1, len(files) // 5)][:5], str(self._tree.branched)
        yield Row("status", ("status",), is_remote=False)
        yield Row("status, edited", ("status",), "edited", is_remote=False)
        yield Row("status -v", ("status", "-v"), is_remote=False)
        yield Row("status -u", ("status", "-u"))
        yield Row("info -R", ("info", "-R"), is_remote=False)
        yield Row("info -R URL", ("info", "-R", trunk))
        yield Row("info of a file", ("info", files[0]), is_remote=False)
        yield Row("propget -R", ("propget", "-R", "benchmark"), is_remote=False)
        yield Row("proplist -R", ("proplist", "-R"), is_remote=False)
        yield Row("proplist -R -v", ("proplist", "-R", "-v"), is_remote=False)
        yield Row("proplist -R URL", ("proplist", "-R", trunk))
        yield Row("list -R -v", ("list", "-R", "-v", trunk))
        yield Row("list -R", ("list", "-R", trunk))
        yield Row("log", ("log",))
        yield Row("log -v", ("log", "-v", trunk))
        yield Row("log --diff", ("log", "--diff", "-l", "5"))
        yield Row("blame", ("blame", "history.c"))
        yield Row("cat", ("cat", "history.c"))
        yield Row("cat of 200 files", ("cat", *files[:200]))
        yield Row("cat of 200 URLs", ("cat", *(f"{trunk}/{name}" for name in files[:200])))
        yield Row("diff, edited", ("diff",), "edited", is_remote=False)
        yield Row("diff, clean", ("diff",), is_remote=False)
        yield Row("diff -r", ("diff", "-r", f"{before}:HEAD"))
        yield Row("diff of URLs", ("diff", one, trunk))
        yield Row("diff --summarize", ("diff", "--summarize", one, trunk))
        yield Row("mergeinfo", ("mergeinfo", "--show-revs", "eligible", trunk, one))
        yield Row("checkout", ("checkout", "-q", trunk, "new"), "none")
        yield Row("export URL", ("export", "-q", trunk, "new"), "none")
        yield Row("export of files", ("export", "-q", "../copies/clean", "new"), "none", is_remote=False)
        yield Row("update", ("update", "-q"), "old")
        yield Row("update, nothing new", ("update",), "clean")
        yield Row("switch", ("switch", "-q", one), "clean")
        yield Row("merge", ("merge", "-q", trunk, "."), "branch")
        yield Row("merge of one revision", ("merge", "-q", "-c", str(self._tree.branched + 3), trunk, "."), "branch")
        yield Row("commit of five files", ("commit", "-q", "-m", "m", *files[0::40][:5]), "edited", True)
        yield Row("commit", ("commit", "-q", "-m", "m"), "edited", True)
        yield Row("import", ("import", "-q", "-m", "m", "new", f"{self.url}/new"), "unversioned", True)
        yield Row("copy of URLs", ("copy", "-m", "m", trunk, f"{self.url}/branches/two"), "none", True)
        yield Row("propset of a revision", ("propset", "-r", "3", "--revprop", "svn:log", "m", trunk), "none", True,
                  False)
        yield Row("lock", ("lock", *files[:50]), "clean", True, False)
        yield from self._local_rows(files, some)

    def _local_rows(self, files, some):
        def local(name, *arguments, state="clean"):
            return Row(name, arguments, state, is_remote=False)

        yield local("add of a folder", "add", "-q", "new", state="unversioned")
        yield local("delete of a folder", "delete", "-q", "d00")
        yield local("delete --force of a folder", "delete", "-q", "--force", "d00")
        yield local("delete of five files", "delete", "-q", *some)
        yield local("copy of a folder", "copy", "-q", "d00", "new")
        yield local("move of a folder", "move", "-q", "d00", "new")
        yield local("move of a file", "move", "-q", files[0], "new")
        yield local("mkdir", "mkdir", "new")
        yield local("revert -R", "revert", "-q", "-R", ".", state="edited")
        yield local("revert -R, clean", "revert", "-q", "-R", ".")
        yield local("revert of five files", "revert", "-q", *files[0::40][:5], state="edited")
        yield local("propset -R", "propset", "-q", "-R", "other", "value", ".")
        yield local("cleanup", "cleanup")
        yield local("cleanup --remove-unversioned", "cleanup", "--remove-unversioned", state="unversioned")
        yield local("resolve -R", "resolve", "-q", "-R", "--accept", "working", ".", state="conflicts")
        yield local("changelist of 500 files", "changelist", "-q", "some", *files[:500])
        yield local("relocate", "relocate", self.url, self.url.replace("127.0.0.1", "localhost")
                    if "127.0.0.1" in self.url else self.url.replace("file:///", "file://localhost/"))
        yield local("upgrade, nothing to do", "upgrade")
        yield local("patch", "patch", "-q", "../patch")

    def prepare(self, row):
        """What the row's run works on; its folder."""
        if not row.state:
            return self.copies / "clean"
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        if row.commits:
            shutil.rmtree(self._tree.repository)
            data.run("cp", "-a", self._tree.folder / "kept", self._tree.repository)
        if row.state == "none":
            return self.folder
        data.run("cp", "-a", self.copies / row.state, self.folder / "wc")
        if row.name == "patch":
            with open(self.folder / "patch", "wb") as file:
                data.run("svn", "diff", cwd=self.copies / "edited", stdout=file)
        return self.folder / "wc"


class Costs:
    def __init__(self, build, folder):
        self._measure = build / "bin/bench_measure"
        self._report = folder / "report"
        self._environment = os.environ | {"LC_ALL": "C.UTF-8", "HOME": str(folder)}

    def run(self, program, row, folder):
        command = [self._measure, self._report, program, row.arguments[0], "--non-interactive", *row.arguments[1:]]
        result = subprocess.run([str(part) for part in command], cwd=folder, env=self._environment,
                                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False)
        if result.returncode != 0:
            raise RuntimeError(f"{program}: {row.name} failed: {result.stderr.decode()}")
        values = dict(line.split() for line in self._report.read_text().splitlines())
        return measuring.Cost(float(values["elapsed"]), float(values["cpu"]), int(values["peak"]))

    def compare(self, work, row, programs, rounds):
        """Medians by program, of runs in turn."""
        costs = {program: [] for program in programs}
        for number in range(rounds + 1):
            for program in programs if number % 2 == 0 else reversed(programs):
                cost = self.run(program, row, work.prepare(row))
                if number > 0:  # the first ones bring everything into memory
                    costs[program].append(cost)
        return [measuring.median(costs[program]) for program in programs]


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


@contextlib.contextmanager
def serving(command, port):
    process = subprocess.Popen([str(part) for part in command], start_new_session=True)
    try:
        for _ in range(100):
            with contextlib.suppress(OSError):
                socket.create_connection(("127.0.0.1", port), timeout=1).close()
                break
            time.sleep(0.05)
        yield
    finally:
        process.terminate()
        process.wait()


@contextlib.contextmanager
def reached(scheme, tree):
    """The repository's URL, once its server listens."""
    root, port = tree.folder, free_port()
    if scheme == "file":
        yield tree.url()
    elif scheme == "svn":
        with serving(["svnserve", "--daemon", "--foreground", "--root", root, "--listen-host", "127.0.0.1",
                      "--listen-port", port], port):
            yield f"svn://127.0.0.1:{port}/repository"
    else:
        lines = "\n".join(f"LoadModule {name}_module /usr/lib/apache2/modules/mod_{name}.so" for name in MODULES)
        configuration = root / "httpd.conf"
        configuration.write_text(WEB_SERVER.format(folder=root, port=port, modules=lines, user=WEB_USER))
        root.parent.chmod(0o755)
        data.run("chown", "-R", WEB_USER, root)
        with serving(["/usr/sbin/apache2", "-DFOREGROUND", "-f", configuration], port):
            yield f"http://127.0.0.1:{port}/repository"


def print_row(scheme, row, svn, hsvn):
    ratios = [hsvn.elapsed / svn.elapsed, hsvn.cpu / svn.cpu, hsvn.peak / svn.peak]
    print(f"| {row.name}, {scheme} | {svn.elapsed * 1000:,.1f} | {hsvn.elapsed * 1000:,.1f} | "
          f"{' | '.join(f'{ratio:.2f}' for ratio in ratios)} | {'' if ratios[1] <= GOAL else '**'}", flush=True)


def main():
    arguments = parse_arguments()
    build = arguments.build.resolve()
    programs = ["svn", str(build / "bin/hsvn")]
    schemes = arguments.schemes.split(",")
    with tempfile.TemporaryDirectory(prefix="hsvn-bench-", dir=arguments.folder) as name:
        folder = pathlib.Path(name)
        tree = Tree(folder, arguments.files, workloads.PER_FOLDER, False).make(run.log)
        data.run("cp", "-a", tree.repository, tree.folder / "kept")
        print("| milliseconds | svn | hsvn | ratio | of CPU time | of memory |\n|---|---:|---:|---:|---:|---:|")
        for scheme in schemes:
            with reached(scheme, tree) as url:
                work, costs = Work(tree, folder, url), Costs(build, folder)
                for row in work.rows():
                    if run.is_chosen(row, arguments.only) and (row.is_remote or scheme == schemes[0]):
                        try:
                            print_row(scheme, row, *costs.compare(work, row, programs, arguments.rounds))
                        except RuntimeError as error:
                            print(error, file=sys.stderr, flush=True)


if __name__ == "__main__":
    main()
