"""The repository and working copies that the command lines run on."""

import contextlib
import functools
import glob
import hashlib
import os
import shutil
import socket
import sqlite3
import subprocess
import tarfile
import tempfile

import scripts
import webserver

SECRET = "not-to-be-seen"
HOSTILE_NAMES = ['x$(touch one)`touch two`";touch three;"y', "it's & *.~ #(name)", "-n"]

ENVIRONMENT = {
    "PATH": os.environ["PATH"],
    "LC_ALL": "C",
    "TZ": "UTC",
    # A test that forgets a log message fails instead of waiting for an editor.
    "SVN_EDITOR": "false",
    # Of the sanitizers, for a program built with them.
    **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")},
}


def run_svn(folder, *arguments):
    subprocess.run(["svn", "--non-interactive", *arguments], cwd=folder, env=environment(folder), check=True,
                   stdout=subprocess.DEVNULL)


def environment(folder):
    """The environment of every program: a home that holds nothing of the user's."""
    root = os.path.dirname(os.path.abspath(folder))
    locale = {"LC_ALL": "C.UTF-8"} if os.path.exists(os.path.join(root, "utf-8")) else {}
    return {**ENVIRONMENT, "HOME": os.path.join(root, "home"), **locale}


def write(folder, name, text):
    with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
        file.write(text)


def write_program(folder, name, script):
    write(folder, name, "#!/bin/sh\n" + script)
    os.chmod(os.path.join(folder, name), 0o755)


def write_messages(root):
    """A list of targets, log messages in files, and editors that write one."""
    write(root, "list", "iota\nA/mu\n")
    write(root, "message", "From a file\n")
    write(root, "windows-message", "Two\r\nlines\r\n")
    write(root, "mixed-message", "Two\r\nkinds\n")
    with open(os.path.join(root, "zero-message"), "wb") as file:
        file.write(b"a\0b")
    with open(os.path.join(root, "latin-message"), "wb") as file:
        file.write(b"caf\xe9\n")
    # What an editor is shown goes to standard output, and so is compared.
    write_program(root, "editor", 'echo "$1"; cat "$1"; sed "1s/^/From an editor/" "$1" > "$1.new"; mv "$1.new" "$1"\n')
    write_program(root, "emptying-editor", ': > "$1"\n')
    write_program(root, "second-time-editor",
                  'if [ -f ../again ]; then echo Again > "$1"; else touch ../again; fi\n')


def make_repository(root):
    """A repository with a little of everything in its history, and a working copy `wc` of its trunk."""
    os.makedirs(os.path.join(root, "home"))
    write_messages(root)
    repository = os.path.join(root, "repository")
    subprocess.run(["svnadmin", "create", repository], check=True)
    write(repository, "hooks/pre-revprop-change", "#!/bin/sh\n")
    os.chmod(os.path.join(repository, "hooks/pre-revprop-change"), 0o755)
    url = "file://" + repository
    run_svn(root, "mkdir", "-m", "Lay out", url + "/trunk", url + "/branches")
    run_svn(root, "checkout", url + "/trunk", "wc")
    wc = os.path.join(root, "wc")
    fill(wc)
    run_svn(wc, "commit", "-m", "Begin\n\nwith two paragraphs & <markup>")
    run_svn(wc, "copy", "-m", "Branch", url + "/trunk", url + "/branches/one")
    write(wc, "iota", "first\nsecond\n")
    run_svn(wc, "propset", "color", "blue\ngreen", "A/mu")
    run_svn(wc, "commit", "-m", "Change iota")
    run_svn(wc, "move", "A/B/lambda", "A/C/moved")
    run_svn(wc, "commit", "-m", "Move lambda")
    run_svn(wc, "delete", "A/C/doomed")
    run_svn(wc, "commit", "-m", "")
    run_svn(wc, "update")
    return wc


def fill(wc):
    for folder in ["A", "A/B", "A/C", "name with space"]:
        os.mkdir(os.path.join(wc, folder))
    for name in ["iota", "A/mu", "A/B/lambda", "A/C/doomed", "name with space/at@sign", "keywords"]:
        write(wc, name, f"This is {name}.\n")
    write(wc, "keywords", "$Rev$ $Author$\n")
    with open(os.path.join(wc, "binary"), "wb") as file:
        file.write(bytes(range(256)))
    run_svn(wc, "add", "-q", "iota", "A", "name with space", "keywords", "binary")
    run_svn(wc, "propset", "svn:keywords", "Rev Author", "keywords")
    run_svn(wc, "propset", "svn:ignore", "*.tmp", "A")
    run_svn(wc, "propset", "binary-property", "-F", "binary", "binary")
    run_svn(wc, "propset", "color", "red", "iota")


def change(wc):
    """Local changes of every kind, in a history of authors with long names."""
    for revision, author in [("2", "alexandra.of.the.longest"), ("4", "margarethe")]:
        run_svn(wc, "propset", "--revprop", "-r", revision, "svn:author", author)
    write(wc, "iota", "changed\n")
    write(wc, "A/new", "new\n")
    run_svn(wc, "add", "A/new")
    run_svn(wc, "propset", "color", "green", "A")
    run_svn(wc, "delete", "A/B")
    run_svn(wc, "move", "A/mu", "A/mu-moved")
    run_svn(wc, "copy", "A/C", "A/copied")
    write(wc, "unversioned", "")
    write(wc, "A/ignored.tmp", "")
    os.remove(os.path.join(wc, "binary"))
    run_svn(wc, "changelist", "list", "iota")
    run_svn(wc, "lock", "-m", "mine <&>", "keywords")


def conflict(wc):
    """Text, property and tree conflicts, left by an update."""
    outdate(wc)
    run_svn(wc, "update", "--accept", "postpone")


def branch(wc):
    """Externals, a switched folder, sparse folders and something out of date."""
    run_svn(wc, "propset", "svn:externals", "^/branches/one/A/B folder-external\n^/branches/one/iota file-external", ".")
    run_svn(wc, "update")
    run_svn(wc, "update", "-r", "2", "A/mu")
    run_svn(wc, "update", "--set-depth", "files", "A/B")
    run_svn(wc, "switch", "--ignore-ancestry", "^/branches/one/A/C", "A/C")


def unversioned(wc):
    """Items of every kind that are not versioned yet."""
    os.makedirs(os.path.join(wc, "folder/inner"))
    for name in ["folder/inner/file", "folder/object.o", "executable", "odd@name@", "odd name"]:
        write(wc, name, f"This is {name}.\n")
    os.chmod(os.path.join(wc, "executable"), 0o755)
    os.symlink("iota", os.path.join(wc, "link"))
    with open(os.path.join(wc, "folder/binary"), "wb") as file:
        file.write(bytes(range(256)))


def interrupt(wc):
    """A write lock that nobody holds any more, and something to remove."""
    write(wc, "unversioned", "")
    write(wc, "iota", "changed\n")
    with contextlib.closing(sqlite3.connect(os.path.join(wc, ".svn/wc.db"))) as database, database:
        database.execute("insert into WC_LOCK values (1, '', -1)")


def rob(wc):
    """A lock that another working copy has stolen."""
    run_svn(wc, "lock", "-m", "mine", "iota")
    run_svn(wc, "checkout", "-q", "^/trunk", "../thief")
    run_svn(os.path.join(wc, "../thief"), "lock", "--force", "-m", "stolen", "iota")


def age(wc):
    """A working copy of Subversion 1.6."""
    shutil.rmtree(wc)
    with tarfile.open(os.path.join(os.path.dirname(__file__), "../Samples/1.6.tar.gz")) as archive:
        members = [member for member in archive if member.name.startswith("1.6/wc/")]
        archive.extractall(os.path.dirname(wc), members)
    os.rename(os.path.join(os.path.dirname(wc), "1.6/wc"), wc)


def move_repository(wc):
    """A working copy whose repository has gone elsewhere."""
    root = os.path.dirname(wc)
    os.rename(os.path.join(root, "repository"), os.path.join(root, "elsewhere"))


def outdate(wc):
    """Local changes of which an update makes text, property and tree conflicts."""
    run_svn(wc, "update", "-r", "2")
    write(wc, "iota", "mine\n")
    run_svn(wc, "propset", "color", "mine", "A/mu")
    write(wc, "A/B/lambda", "mine\n")
    run_svn(wc, "delete", "A/C/doomed")


def obstruct(wc):
    """Items in the way of what an update brings: unversioned, and added."""
    run_svn(wc, "mkdir", "folder")
    write(wc, "folder/file", "theirs\n")
    write(wc, "new", "theirs\n")
    run_svn(wc, "add", "folder/file", "new")
    run_svn(wc, "commit", "-m", "Add items")
    run_svn(wc, "update", "-r", "6")
    os.mkdir(os.path.join(wc, "folder"))
    write(wc, "folder/file", "mine\n")
    write(wc, "new", "mine\n")
    run_svn(wc, "add", "new")


def move(wc):
    """A moved file that an update changes."""
    write(wc, "A/mu", "theirs\n")
    run_svn(wc, "commit", "-m", "Change mu")
    run_svn(wc, "update", "-r", "6")
    run_svn(wc, "move", "A/mu", "A/mu-moved")


def break_external(wc):
    """An external that cannot be had, and one that can."""
    run_svn(wc, "propset", "svn:externals", "^/nowhere missing\n^/branches/one/A/C there", ".")


def make_sparse(wc):
    """Most of the working copy left out."""
    run_svn(wc, "update", "--set-depth", "empty")


def leave_tree(wc):
    """A folder outside of the working copy with files that the repository has too."""
    tree = os.path.join(os.path.dirname(wc), "tree")
    os.makedirs(os.path.join(tree, "C"))
    write(tree, "mu", "mine\n")


def make_mergeable(wc):
    """A branch with two changes that the working copy of the trunk does not have, one in conflict with the trunk."""
    run_svn(wc, "switch", "^/branches/one")
    write(wc, "iota", "branch\n")
    run_svn(wc, "commit", "-m", "Change iota on the branch")
    write(wc, "A/mu", "branch\n")
    run_svn(wc, "commit", "-m", "Change mu on the branch")
    run_svn(wc, "switch", "^/trunk")


def mix_revisions(wc):
    make_mergeable(wc)
    run_svn(wc, "update", "-r", "5", "iota")


def diverge(wc):
    """Text conflicts in several places, of a binary file and of properties, left to an update."""
    lines = [f"line {number}\n" for number in range(30)]
    write(wc, "text", "".join(lines))
    write(wc, "A/odd", "a\nb")
    run_svn(wc, "add", "text", "A/odd")
    run_svn(wc, "propset", "shape", "one\ntwo\nthree\n", "A/odd", "A")
    run_svn(wc, "commit", "-m", "Add texts")
    for whose in ["theirs", "mine"]:
        lines[2] = f"{whose} with\ta tab and a text that is far too long for the half of a terminal\n"
        lines[15] = f"{whose}\n" + (f"{whose} again\n" if whose == "mine" else "")
        write(wc, "text", "".join(lines))
        write(wc, "A/odd", f"a\n{whose}")
        write(wc, "binary", whose + "\0\1\2\3")
        run_svn(wc, "propset", "shape", f"one\n{whose}\nthree\n", "A/odd", "A")
        if whose == "theirs":
            run_svn(wc, "propset", "svn:mime-type", "application/octet-stream", "binary")
            run_svn(wc, "commit", "-m", "Change texts")
            run_svn(wc, "update", "-r", "7")


def name_hostilely(wc):
    """Text conflicts of files whose names hold commands for a shell, and options for an editor, left to an update."""
    for name in HOSTILE_NAMES:
        write(wc, name, "both\n")
        run_svn(wc, "add", "--", name)
    run_svn(wc, "commit", "-m", "Add hostile names")
    for whose in ["theirs", "mine"]:
        for name in HOSTILE_NAMES:
            write(wc, name, whose + "\n")
        if whose == "theirs":
            run_svn(wc, "commit", "-m", "Change hostile names")
            run_svn(wc, "update", "-r", "7")


def tangle(wc):
    """Items changed on a branch that the trunk has elsewhere; and local changes of what the trunk moves."""
    run_svn(wc, "switch", "^/branches/one")
    for name in ["A/B/lambda", "A/C/doomed", "A/mu"]:
        write(wc, name, "branch\n")
    run_svn(wc, "commit", "-m", "Change what the trunk has elsewhere")
    run_svn(wc, "switch", "^/trunk")
    # Nobody knows which of the two is the one that was moved.
    for copy in ["A/mu1", "A/B/mu2"]:
        run_svn(wc, "copy", "A/mu", copy)
    run_svn(wc, "delete", "A/mu")
    run_svn(wc, "move", "name with space", "named")
    run_svn(wc, "commit", "-m", "Move items")
    run_svn(wc, "update", "-r", "7")
    write(wc, "A/mu", "mine\n")
    write(wc, "name with space/at@sign", "mine\n")


def untangle(wc):
    tangle(wc)
    run_svn(wc, "revert", "-R", ".")
    run_svn(wc, "update")


def cross(wc):
    """A branch and a trunk that moved, deleted, changed and added the same items."""
    run_svn(wc, "copy", "^/trunk", "^/branches/two", "-m", "Branch again")
    for whose, deleted, changed, moved in [("branch", "iota", "keywords", "A/nu"), ("trunk", "keywords", "iota", "nu")]:
        run_svn(wc, "switch", "^/branches/two" if whose == "branch" else "^/trunk")
        os.mkdir(os.path.join(wc, "D"))
        for name in ["D/same", "D/" + whose, "new", changed]:
            write(wc, name, whose + "\n")
        run_svn(wc, "add", "D", "new")
        run_svn(wc, "delete", deleted)
        run_svn(wc, "move", "A/mu", moved)
        if whose == "branch":
            run_svn(wc, "move", "A/C", "A/see")
        else:
            write(wc, "A/C/moved", "trunk\n")
        run_svn(wc, "commit", "-m", "Change the " + whose)
    run_svn(wc, "update")


def serve(wc):
    """A working copy of a server that wants a password, which `server_of` starts, with a change."""
    demand_password(os.path.dirname(wc))
    move_to_server(wc, "svn")
    write(wc, "iota", "changed\n")


def demand_password(root):
    configuration = os.path.join(root, "repository/conf")
    write(configuration, "svnserve.conf", "[general]\nanon-access=none\nauth-access=write\npassword-db=passwd\n")
    write(configuration, "passwd", f"[users]\nharry = {SECRET}\n")


def serve_to_web(wc):
    """The same of a web server, where the changed file has a newer revision.

    Harry changes nothing of `/branches/one` and sees nothing of a folder in it.
    """
    run_svn(wc, "update", "-q", "-r", "3", "iota")
    move_to_server(wc, "http")
    write(wc, "iota", "changed\n")
    write(os.path.dirname(wc), "rules", webserver.RULES + "[/branches/one]\n* = r\n[/branches/one/A/C]\n* =\n")


def move_to_server(wc, scheme):
    """Makes the working copies that are beside each other those of a server that does not run yet; its URL."""
    root = os.path.dirname(wc)
    server = f"{scheme}://127.0.0.1:{free_port()}"
    write(root, "server", server + "/repository")
    for database_path in glob.glob(os.path.join(root, "*/.svn/wc.db")):
        with contextlib.closing(sqlite3.connect(database_path)) as database, database:
            database.execute("update REPOSITORY set root = ?", [server + "/repository"])
    return server


def put_behind_server(wc, scheme):
    """Makes a state of a local repository one of a server, whose password is stored; the repository's URL.

    States that have a server, or have lost their repository, and working copies without a database stay as they are.
    """
    root = os.path.dirname(wc)
    repository = os.path.join(root, "repository")
    stays = os.path.exists(os.path.join(root, "server")) or not os.path.exists(os.path.join(wc, ".svn/wc.db"))
    if stays or not os.path.exists(repository):
        return "file://" + repository
    demand_password(root)
    server = move_to_server(wc, scheme)
    identity = subprocess.run(["svnlook", "uuid", repository], check=True, capture_output=True, text=True).stdout.strip()
    store_credential(root, "simple", f"<{server}> " + ("Web Realm" if scheme == "http" else identity), username="harry",
                     password=SECRET, passtype="simple")
    return server + "/repository"


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def accent(wc):
    """Names, messages and values of many letters, in a locale that has them all."""
    write(os.path.dirname(wc), "utf-8", "")
    os.mkdir(os.path.join(wc, "Größe"))
    # The last one is the same letter as the first, in two code points.
    for name in ["é", "Größe/日本語", "e\u0301", "changed-ñ"]:
        write(wc, name, f"{name}\n")
    run_svn(wc, "add", "é", "Größe", "e\u0301", "changed-ñ")
    run_svn(wc, "propset", "farbe", "grün\nŝanĝo", "Größe", "é")
    run_svn(wc, "commit", "-m", "Größer & ŝanĝita\n日本語")
    write(wc, "changed-ñ", "theirs ñ\n")
    run_svn(wc, "propset", "farbe", "rot — ü", "Größe")
    run_svn(wc, "commit", "-m", "Ändern")
    run_svn(wc, "propset", "--revprop", "-r", "2", "svn:author", "Jürgen Übermüller")
    run_svn(wc, "propset", "--revprop", "-r", "4", "svn:author", "日本語日本")
    run_svn(wc, "update", "-r", "7")
    write(wc, "changed-ñ", "mine ñ\n")
    run_svn(wc, "changelist", "liste-é", "changed-ñ")
    run_svn(wc, "propset", "farbe", "blau", "Größe")
    write(wc, "unversioned-ü", "")
    with open(os.path.join(os.fsencode(wc), b"latin-\xe9"), "w", encoding="ascii"):
        pass  # a name that is no text in the locale


def decorate(wc):
    """A repository of everything that an export translates, and externals of every form of URL."""
    write(wc, "native", "one\ntwo\n")
    write(wc, "windows", "one\r\ntwo\r\n")
    write(wc, "program", "#!/bin/sh\n")
    write(wc, "A/odd#name%20", "$Custom$ $Id$\n")
    os.symlink("A/mu", os.path.join(wc, "link"))
    run_svn(wc, "add", "native", "windows", "program", "A/odd#name%20", "link")
    run_svn(wc, "propset", "svn:eol-style", "native", "native")
    run_svn(wc, "propset", "svn:eol-style", "CRLF", "windows")
    run_svn(wc, "propset", "svn:executable", "*", "program")
    run_svn(wc, "propset", "svn:keywords", "Custom=%R%_%P%_%r Id", "A/odd#name%20")
    run_svn(wc, "propset", "svn:externals", "../branches/one/A/B parent\n-r2 ^/trunk/iota deep/file\n^/nowhere@3 missing\n"
            "^/../../../too/far far\n^/branches/one/A/C deep/er/folder", "A")
    run_svn(wc, "propset", "svn:externals", f"file://{os.path.dirname(wc)}/repository/branches/one/A/B whole", "A/C")
    run_svn(wc, "commit", "-m", "Decorate")
    run_svn(wc, "update", "--ignore-externals")
    run_svn(wc, "move", "A", "B")
    run_svn(wc, "commit", "-m", "Move everything")


def scribble(wc):
    """Revision properties that no client writes: dates that are none, control characters, bytes that are no text."""
    set_revision_properties(wc, 4, {"svn:author": b"har\3ry\x7f", "svn:date": b"not a date", "svn:log": b"bell\7 \x7f\n"})
    set_revision_properties(wc, 5, {"svn:author": b"", "svn:date": b"", "svn:log": b"a\rb\r\nc\n\rd\n\n", "odd": b"a\3",
                                    "delete": b"\x7f", "svn:lines": b"a\r\nb", "overlong": b"\xc0\x80",
                                    "surrogate": b"\xed\xa0\x80"})
    set_revision_properties(wc, 6, {"svn:author": b"caf\xe9", "svn:date": b"1970-01-01T00:00:00.000000Z",
                                    "svn:log": b"\xed\xa0\x80 \xc0\x80 \3", "no-character": b"\xef\xbf\xbf"})


def prepare_patches(wc):
    """Patches of changes of every kind, beside a working copy that does not have them."""
    root = os.path.dirname(wc)
    lines = [f"line {number}\n" for number in range(1, 41)]
    write(wc, "text", "".join(lines))
    run_svn(wc, "add", "text")
    run_svn(wc, "commit", "-m", "Add a text")
    run_svn(wc, "update")
    lines[9] = "patched 10\n"
    lines[29:30] = ["patched 30\n", "and more\n"]
    write(wc, "text", "".join(lines))
    write(wc, "iota", "patched\n")
    write(wc, "A/added", "added\n")
    run_svn(wc, "add", "A/added")
    run_svn(wc, "delete", "keywords")
    run_svn(wc, "propset", "color", "patched\ngreen", "A/mu", "A")
    run_svn(wc, "move", "A/C/moved", "A/B/moved")
    for name, arguments in [("plain", []), ("git", ["--git"]), ("deep", ["--old=^/trunk", "--new=."])]:
        write(root, name + ".patch", look(wc, "diff", *arguments))
    run_svn(wc, "revert", "--remove-added", "-R", ".")
    write(root, "bare.patch", "".join(["--- x/iota\n", "+++ x/iota\n", "@@ -1,2 +1,2 @@\n", " first\n", "-second\n",
                                       "+patched\n"]))
    write(root, "no.patch", "Nothing of a patch\n")


def look(folder, *arguments):
    return subprocess.run(["svn", *arguments], cwd=folder, env=environment(folder), check=True, capture_output=True,
                          encoding="utf-8").stdout


def store_credentials(wc):
    """Credentials of every kind in the configuration area, a certificate that is none among them."""
    root = os.path.dirname(wc)
    key, certificate = (os.path.join(root, name) for name in ("key.pem", "certificate.pem"))
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", "/O=Example & Sons/CN=host",
                    "-addext", "subjectAltName=DNS:host.example,DNS:Other.example", "-days", "2", "-keyout", key,
                    "-out", certificate], check=True, stderr=subprocess.DEVNULL)
    with open(certificate, encoding="ascii") as file:
        text = "".join(file.read().split("\n")[1:-2])
    store_credential(root, "simple", "<http://host:80> Realm", username="harry", password=SECRET, passtype="simple")
    store_credential(root, "simple", "<svn://host:3690> Other", username="sally", passtype="gnome-keyring")
    store_credential(root, "username", "uuid", username="harry")
    store_credential(root, "ssl.server", "https://host:443", ascii_cert=text, failures="25")
    store_credential(root, "ssl.server", "https://other:443", ascii_cert="none", failures="1073741826")
    store_credential(root, "ssl.server", "https://third:443", ascii_cert=text, failures="0")
    store_credential(root, "ssl.client-passphrase", "/certificate.p12", passphrase=SECRET, passtype="simple", further="x")


def store_credential(root, kind, realm, **values):
    folder = os.path.join(root, "home/.subversion/auth/svn." + kind)
    os.makedirs(folder, exist_ok=True)
    pairs = {**values, "svn:realmstring": realm}.items()
    write(folder, hashlib.md5(realm.encode()).hexdigest(),
          "".join(f"K {len(name)}\n{name}\nV {len(value)}\n{value}\n" for name, value in pairs) + "END\n")


def forbid(wc):
    """Folders and files that others than root may not write, or not read."""
    write(wc, "iota", "changed\n")
    write(wc, "A/mu", "changed\n")
    run_svn(wc, "update", "-q", "-r", "3", "name with space", "A/B")
    if os.geteuid() == 0:  # who else could put them back?
        for name, mode in [("A", 0o555), ("A/C", 0), ("iota", 0), ("keywords", 0o444), ("../repository/locks", 0o555)]:
            os.chmod(os.path.join(wc, name), mode)


def empty(wc):
    """A working copy of a repository without a revision, with items to be added."""
    repository = os.path.join(os.path.dirname(wc), "repository")
    for folder in [wc, repository]:
        shutil.rmtree(folder)
    subprocess.run(["svnadmin", "create", repository], check=True)
    run_svn(os.path.dirname(wc), "checkout", "file://" + repository, "wc")
    unversioned(wc)
    run_svn(wc, "add", "folder", "odd name")


def guard(wc):
    """Files that want a lock before they are changed: one locked here, one elsewhere, one stolen, one changed without."""
    for name in ["iota", "A/mu", "keywords", "binary", "A/C/moved"]:
        run_svn(wc, "propset", "svn:needs-lock", "*", name)
    run_svn(wc, "commit", "-m", "Guard files")
    run_svn(wc, "update")
    run_svn(wc, "lock", "-m", "mine", "iota", "keywords")
    run_svn(wc, "checkout", "-q", "^/trunk", "../other")
    other = os.path.join(wc, "../other")
    run_svn(other, "lock", "A/mu")
    run_svn(other, "lock", "--force", "keywords")
    os.chmod(os.path.join(wc, "A/C/moved"), 0o644)
    for name in ["iota", "A/C/moved"]:
        write(wc, name, "mine\n")


def link(wc):
    """Links to files and folders, versioned and not, within and to outside; working copies in and beside another one."""
    os.symlink("A", os.path.join(wc, "folder-link"))
    os.symlink("../iota", os.path.join(wc, "A/file-link"))
    os.symlink("nowhere", os.path.join(wc, "dead-link"))
    run_svn(wc, "add", "folder-link", "A/file-link", "dead-link")
    run_svn(wc, "propset", "svn:externals", "^/branches/one/A/B@5 outer\n-r4 ^/branches/one/iota pinned", "A")
    run_svn(wc, "commit", "-m", "Link")
    run_svn(wc, "update")
    run_svn(wc, "checkout", "-q", "^/branches/one/A", "A/C/nested")
    run_svn(wc, "checkout", "-q", "^/trunk@4", "../other")
    os.symlink("../other", os.path.join(wc, "other-link"))
    # Where it led to a versioned folder here, svn's answers would depend on what it had looked at before.
    os.symlink("../home", os.path.join(wc, "unversioned-link"))
    os.remove(os.path.join(wc, "dead-link"))
    os.symlink("iota", os.path.join(wc, "dead-link"))
    os.remove(os.path.join(wc, "iota"))
    os.symlink("keywords", os.path.join(wc, "iota"))
    write(wc, "A/C/nested/mu", "nested\n")
    write(wc, "../other/A/mu", "other\n")


def make_by(script, wc):
    scripts.run(script, wc, environment(wc))


HOOKS = {
    "pre-commit": "/usr/bin/svnlook log -t $2 $1 | /usr/bin/grep -q e || { echo 'too <short>' >&2; exit 1; }",
    "post-commit": "echo 'not told' >&2; exit 1", "post-revprop-change": "exit 1",
    "pre-revprop-change": '[ "$4" = color ] || { echo "only colours" >&2; exit 1; }',
    "pre-lock": 'case "$2" in */mu) exit 1;; esac', "post-lock": "echo 'not told' >&2; exit 1",
    "pre-unlock": 'case "$2" in */keywords) echo "kept" >&2; exit 1;; esac', "post-unlock": "exit 1"}


def hook(wc):
    """A repository that refuses some changes and complains of others."""
    change(wc)
    for name, script in HOOKS.items():
        write_program(os.path.join(os.path.dirname(wc), "repository/hooks"), name, script + "\n")


def set_revision_properties(wc, revision, properties):
    path = os.path.join(os.path.dirname(wc), f"repository/db/revprops/0/{revision}")
    os.chmod(path, 0o644)
    with open(path, "wb") as file:
        for name, value in properties.items():
            file.write(b"K %d\n%s\nV %d\n%s\n" % (len(name), name.encode(), len(value), value))
        file.write(b"END\n")


@contextlib.contextmanager
def server_of(root):
    """The server of a root that `serve` or `serve_to_web` prepared, until the end; nothing for any other."""
    if not os.path.exists(os.path.join(root, "server")):
        yield
        return
    url = server_url(root)
    port = int(url.split(":")[2].split("/")[0])
    if url.startswith("http"):
        rules = webserver.RULES
        with contextlib.suppress(FileNotFoundError), open(os.path.join(root, "rules"), encoding="ascii") as file:
            rules = file.read()
        with tempfile.TemporaryDirectory() as folder, webserver.running(folder, os.path.join(root, "repository"), port,
                                                                        SECRET, rules=rules):
            # A server that refuses everything would make everything equal.
            subprocess.run(["svn", "ls", "--non-interactive", "--no-auth-cache", "--username", "harry", "--password",
                            SECRET, url], check=True, stdout=subprocess.DEVNULL)
            yield
        return
    server = subprocess.Popen(["svnserve", "-d", "--foreground", "-r", root, "--listen-host", "127.0.0.1",
                               "--listen-port", str(port)])
    try:
        webserver.wait_for(port)
        yield
    finally:
        server.terminate()
        server.wait()


def server_url(root):
    with open(os.path.join(root, "server"), encoding="ascii") as file:
        return file.read()


def hand_over(root):
    """Gives a repository to the server that runs as another user, after it was put back."""
    if os.path.exists(os.path.join(root, "server")) and server_url(root).startswith("http"):
        webserver.hand_over(os.path.join(root, "repository"))


PREPARATIONS = {
    "clean": lambda wc: None,
    "changed": change,
    "conflicted": conflict,
    "branched": branch,
    "unversioned": unversioned,
    "interrupted": interrupt,
    "robbed": rob,
    "old": age,
    "moved": move_repository,
    "outdated": outdate,
    "obstructed": obstruct,
    "moving": move,
    "brokenexternal": break_external,
    "sparse": make_sparse,
    "tree": leave_tree,
    "merging": make_mergeable,
    "mixed": mix_revisions,
    "diverged": diverge,
    "hostile": name_hostilely,
    "tangled": tangle,
    "untangled": untangle,
    "crossed": cross,
    "served": serve,
    "webserved": serve_to_web,
    "accented": accent,
    "scribbled": scribble,
    "decorated": decorate,
    "patchable": prepare_patches,
    "stored": store_credentials,
    "forbidden": forbid,
    "empty": empty,
    "hooked": hook,
    "guarded": guard,
    "linked": link,
    **{name: functools.partial(make_by, script) for name, script in scripts.SCRIPTS.items()},
}
# What these forbid, nothing forbids root: its programs run as somebody else then.
FORBIDDING = {"forbidden"}
NOBODY = 65534
