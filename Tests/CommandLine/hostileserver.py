"""A server that speaks as much of svnserve's protocol as a client needs to be attacked over it.

The first component of a URL's path says what is attacked with: `svn://127.0.0.1:PORT/dotdot`.
"""

import contextlib
import re
import socket
import socketserver
import threading
import time

DATE = b"2026-01-01T00:00:00.000000Z"

# What a directory holds beside one honest file.
NAMES = {
    "dotdot": b"../../../escaped", "up": b"..", "slash": b"a/../../../escaped", "absolute": b"/tmp/hsvn-escaped",
    "empty": b"", "dot": b".", "deep": b"no/such/parent", "admin": b".svn", "adminfile": b".svn/wc.db",
    "zero": b"a\0/../../escaped", "long": b"n" * 5000, "illformed": b"\xff\xfe", "surrogate": b"\xed\xa0\x80",
    "overlong": b"\xc0\xae\xc0\xae/escaped", "control": b"a\nb\x01", "backslash": b"..\\escaped",
    "duplicate": b"honest", "doubled": b"//escaped",
}

# Those of them that paths are attacked with wherever one is.
PATHS = ["dot", "doubled", "up", "absolute"]

# What stands for revisions: of entries, or, with "+early", for the newest one.
NUMBERS = {"negative": b"-5", "minus-one": b"%d" % (2 ** 64 - 1), "most": b"%d" % (2 ** 63 - 1), "huge": b"9" * 30}

# What stands for the root of the repository.
ROOTS = {"root-empty": b"", "root-path": b"/x", "root-relative": b"x/../..", "root-bare": b"svn:", "root-else": b"file:///",
         "root-zero": b"svn://h/%00", "root-other": b"svn://h", "root-percent": b"svn://h/%", "root-doubled": b"svn:////"}

# What stands for the ways to log in.
LOGINS = {"login-number": b"( 5 )", "login-list": b"( ( ANONYMOUS ) )", "login-text": b"( 3:abc )",
          "login-mixed": b"( PLAIN 18446744073709551615 )", "login-unknown": b"( %s * - )" % (b"x" * 5000)}

# What stands in place of an answer.
ANSWERS = {
    "garbage": b"\0\xff)))", "nested": b"( " * 5000, "empty-list": b"( ) ", "huge-text": b"( success ( 9999999999999:x",
    "huge-number": b"( success ( 99999999999999999999999 ) ) ", "negative-number": b"( success ( -5 ) ) ",
    "failure-without-reason": b"( failure ( ) ) ", "nothing": b"( success ( ) ) ", "cut": b"",
    "failure-zero": b"( failure ( ( 0 2:no 0: 0 ) ) ) ", "step": b"( step ( 1:x ) ) ", "word": b"success ",
}


def text(value):
    return b"%d:%s" % (len(value), value)


def words(*items):
    """A list of the protocol; bytes stand as they are, numbers as numbers."""
    return b"( " + b" ".join(b"%d" % item if isinstance(item, int) else item for item in items) + b" )"


def success(*items):
    return words(b"success", words(*items))


def command(name, *items):
    return words(name.encode(), words(*items))


def properties_of(*properties):
    return words(*(words(text(key), text(value)) for key, value in properties))


def add_file(name, parent=b"2:d0"):
    return command("add-file", text(name), parent, b"2:f1", words())


def entry_properties(name, token):
    return [command(name, token, text(b"svn:entry:" + key), words(text(value)))
            for key, value in [(b"committed-rev", b"1"), (b"committed-date", DATE), (b"last-author", b"who")]]


def whole_file(name, *properties, contents=b"hello", parent=b"2:d0"):
    chunk = b"SVN\0" + b"\0\0" + bytes([len(contents), 1, len(contents), 0x80 | len(contents)]) + contents
    return [add_file(name, parent), *entry_properties("change-file-prop", b"2:f1"),
            *(command("change-file-prop", b"2:f1", text(key), words(text(value))) for key, value in properties),
            command("apply-textdelta", b"2:f1", words()), command("textdelta-chunk", b"2:f1", text(chunk)),
            command("textdelta-end", b"2:f1"), command("close-file", b"2:f1", words())]


def add_folder(name):
    return [command("add-dir", text(name), b"2:d0", b"2:d1", words()), *entry_properties("change-dir-prop", b"2:d1")]


def externals(value):
    return [command("change-dir-prop", b"2:d0", text(b"svn:externals"), words(text(value)))]


def delta(*chunks):
    return [add_file(b"file"), command("apply-textdelta", b"2:f1", words()),
            *(command("textdelta-chunk", b"2:f1", text(chunk)) for chunk in chunks)]


CLOSE_FOLDER = command("close-dir", b"2:d1")
CLOSE_FILE = command("close-file", b"2:f1", words())
WINDOW = b"SVN\0" + b"\0\0\5\1\5\x85hello"

def changes_of(path):
    """What may be changed at a path, beside that it is added."""
    item = text(path), b"2:d0"
    return {"delete": [command("delete-entry", text(path), 1, b"2:d0")], "absent": [command("absent-file", *item)],
            "absent-dir": [command("absent-dir", *item)], "property": whole_file(b"file", (path, b"x")),
            "open": [command("open-file", *item, b"2:f1", 1), *whole_file(path)[4:]],
            "open-dir": [command("open-dir", *item, b"2:d1", 1), CLOSE_FOLDER],
            "source": [command("add-file", text(b"file"), b"2:d0", b"2:f1", words(text(path), 1)), *whole_file(path)[1:]]}


# Leads to the folder "outside" beside the target.
LINK = whole_file(b"link", (b"svn:special", b"*"), contents=b"link ../outside")
OUTSIDE_BELOW = whole_file(b"link/escaped", parent=b"2:d1") + [CLOSE_FOLDER]

# What the server drives an update or a comparison with.
DRIVES = {
    "honest": [], "whole": whole_file(b"honest"), **{name: whole_file(value) for name, value in NAMES.items()},
    **{name + "-dir": add_folder(value) + [CLOSE_FOLDER] for name, value in NAMES.items()},
    "through-link": LINK + whole_file(b"link/escaped"),
    "link-as-dir": LINK + add_folder(b"link") + OUTSIDE_BELOW,
    "open-link": LINK + [command("open-dir", text(b"link"), b"2:d0", b"2:d1", 1)] + OUTSIDE_BELOW,
    "replaced-link": LINK + [command("delete-entry", text(b"link"), 1, b"2:d0")] + add_folder(b"link") + OUTSIDE_BELOW,
    "open-missing": [command("open-file", text(b"missing"), b"2:d0", b"2:f1", 1),
                     CLOSE_FILE],
    "open-folder": [command("open-dir", text(b"missing"), b"2:d0", b"2:d1", 1)]
                   + whole_file(b"missing/file", parent=b"2:d1") + [CLOSE_FOLDER],
    **{f"{name}-{what}": changes for name in PATHS for what, changes in changes_of(NAMES[name]).items()},
    "delete-outside": [command("delete-entry", text(b"../outside"), 1, b"2:d0")],
    "wrong-token": [command("close-file", b"2:f9", words())],
    "no-text-end": delta() + [CLOSE_FILE],
    "no-text-end-later": delta(WINDOW) + [CLOSE_FILE] + whole_file(b"other"),
    "text-unended": delta(WINDOW),
    "file-open": [add_file(b"file")],
    "file-twice": whole_file(b"file") + whole_file(b"file"),
    "file-closed-twice": whole_file(b"file") + [CLOSE_FILE],
    "file-in-file": [add_file(b"file")] + whole_file(b"file/other"),
    "file-of-parent-closed": add_folder(b"folder") + [add_file(b"folder/file", b"2:d1"), CLOSE_FOLDER, CLOSE_FILE],
    "folder-open": add_folder(b"folder"),
    "folder-twice": (add_folder(b"folder") + [CLOSE_FOLDER]) * 2,
    "folder-twice-open": add_folder(b"folder") * 2 + [CLOSE_FOLDER],
    "folder-then-file": add_folder(b"same") + [CLOSE_FOLDER] + whole_file(b"same"),
    "folder-of-parent-closed": add_folder(b"folder") + [command("close-dir", b"2:d0")] + whole_file(b"folder/file")
                               + [CLOSE_FOLDER],
    "parent-closed": add_folder(b"folder") + [command("close-dir", b"2:d0")]
                     + whole_file(b"folder/file", parent=b"2:d1") + [CLOSE_FOLDER],
    "own-parent": [command("add-dir", text(b"folder"), b"2:d0", b"2:d0", words())],
    "root-token-file": [command("close-file", b"2:d0", words()), command("apply-textdelta", b"2:d0", words())],
    "text-closed-first": whole_file(b"file")[:-1] + [CLOSE_FILE, command("textdelta-end", b"2:f1")],
    "text-end-alone": [add_file(b"file"), command("textdelta-end", b"2:f1")],
    "finish-replay": [command("finish-replay")], "abort": [command("abort-edit")],
    "minus-one-target": [command("target-rev", 2 ** 64 - 1)],
    "minus-one-entry": whole_file(b"file", (b"svn:entry:committed-rev", b"18446744073709551615")),
    "odd-entry": whole_file(b"file", (b"svn:entry:committed-rev", b"x"), (b"svn:entry:uuid", b""),
                            (b"svn:entry:last-author", b"\xff"), (b"svn:wc:ra_dav:version-url", b"\xff")),
    "special": whole_file(b"file", (b"svn:special", b"*"), contents=b"link "),
    "odd-properties": whole_file(b"file", (b"svn:mergeinfo", b"/x:9-1,*"), (b"svn:eol-style", b"x"),
                                 (b"svn:keywords", b"%" * 300), (b"svn:mime-type", b"\xff")),
    "open-changed": [command("open-file", text(b"honest"), b"2:d0", b"2:f1", 1), *whole_file(b"")[4:]],
    "text-twice": delta() + delta()[1:],
    "bad-delta": delta(b"SVN\0" + b"\xff" * 40),
    "bad-checksum": whole_file(b"file")[:-1] + [command("close-file", b"2:f1", words(text(b"0123456789abcdef" * 2)))],
    "bad-date": whole_file(b"file", (b"svn:entry:committed-date", b"yesterday")),
    "external-above": externals(b"^/ ../outside/escaped"),
    "external-far-above": externals(b"^/ ../../../escaped"),
    "external-absolute": externals(b"^/ /tmp/hsvn-escaped"),
    "external-through-link": LINK + externals(b"^/ link/escaped"),
    "external-at-link": LINK + externals(b"^/ link"),
    "external-in-admin": externals(b"^/ .svn/escaped"),
    "root-twice": [command("open-root", words(), b"2:d0")],
    "close-twice": [command("close-dir", b"2:d0"), command("close-dir", b"2:d0")],
    "wrong-order": [command("close-edit"), add_file(b"late")],
    "negative-target": [command("target-rev", -5)],
    "huge-target": [b"( target-rev ( 99999999999999999999999 ) )"],
    "huge-name": [b"( add-file ( 9999999999999:x"],
    "deeply-nested": [b"( " * 5000],
    "broken-drive": [b"\0\xff)))"],
    "unknown-command": [command("explode")],
}


class Client(socketserver.StreamRequestHandler):
    def send(self, *items):
        self.wfile.write(b"".join(item + b" " for item in items))

    def item(self):
        """The next item of the client: a list, a text or a word."""
        token = b""
        while (byte := self.rfile.read(1)) not in (b"", b" ", b"\n", b":"):
            token += byte
        if byte == b"":
            raise EOFError
        if byte == b":":
            return self.rfile.read(int(token))
        if token != b"(":
            return token if token else self.item()
        items = []
        while (following := self.item()) != b")":
            items.append(following)
        return items

    def handle(self):
        with contextlib.suppress(EOFError, OSError):  # the client has had enough
            self.converse()

    def converse(self):
        self.send(success(2, 2, words(), words(b"edit-pipeline", b"svndiff1", b"absent-entries", b"depth", b"mergeinfo",
                                               b"log-revprops", b"inherited-props", b"list")))
        root, attack = re.match(rb"(svn://[^/]*/?([^/]*))", self.item()[2]).groups()
        root = ROOTS.get(attack.decode(), root)
        self.attack, _, self.time = attack.decode().partition("+")
        self.send(success(LOGINS.get(self.attack, b"( ANONYMOUS )"), text(b"realm")))
        self.item()
        identifier = text(b"9e6b2f0e-0000-4000-8000-000000000000")
        self.send(words(b"success", words()), success(identifier, text(root), words()))
        while True:
            name, parameters = self.item()
            name = name.decode().replace("-", "_")
            # What a client asks before it asks for what it wants.
            asked_first = name in ("get_latest_rev", "check_path", "reparent", "stat", "get_locations")
            if self.attack in ANSWERS and asked_first == (self.time == "early"):
                self.send_instead()
            else:
                getattr(self, "answer_" + name, self.refuse)(parameters)

    def send_instead(self):
        self.send(success(words(), text(b"")))
        self.send(ANSWERS[self.attack])
        raise EOFError  # more would be waited for

    def answer(self, *items, before=()):
        self.send(success(words(), text(b"")), *before, success(*items))

    def refuse(self, _):
        self.send(success(words(), text(b"")), words(b"failure", words(words(210001, text(b"no"), text(b""), 0))))

    def name(self):
        return NAMES.get(self.attack.removesuffix("-dir"), b"file")

    def entry(self):
        """Kind, size, whether there are properties, revision, date and author of what is attacked with."""
        kind = {"-dir": b"dir", "-odd": b"odd"}.get(self.attack[-4:], b"file")
        number = b"1" if self.time else NUMBERS.get(self.attack, b"1")
        date = b"yesterday" if self.attack == "bad-date" else DATE
        return (kind, number, b"false", number, words(*([] if self.attack == "no-date" else [text(date)])),
                words(*([] if self.attack == "no-author" else [text(b"\xff\x01")])))

    def answer_get_latest_rev(self, _):
        self.answer(NUMBERS.get(self.attack, b"1") if self.time else 1)

    answer_get_dated_rev = answer_get_deleted_rev = answer_get_latest_rev

    def answer_reparent(self, _):
        self.answer()

    def answer_check_path(self, parameters):
        kinds = {b"file": b"file", b"new": b"none"}
        kind = kinds.get(parameters[0].rsplit(b"/", 1)[-1], b"dir")
        self.answer({"kind-odd": b"odd", "kind-none": b"none"}.get(self.attack, kind) if self.time else kind)

    def answer_stat(self, parameters):
        kind = b"file" if parameters[0].endswith(b"file") else b"dir"
        self.answer(words(words(kind, *self.entry()[1:])))

    def locks(self):
        return words(text(b"/" + self.name()), text(b"token"), text(b"\xff"), words(), text(DATE), words())

    def answer_get_lock(self, _):
        self.answer(words(self.locks()))

    def answer_get_locks(self, _):
        self.answer(words(self.locks()))

    def answer_lock_many(self, _):
        self.many(words(b"success", self.locks()))

    def answer_unlock_many(self, _):
        self.many(words(b"success", words(text(self.name()))))

    def answer_rev_prop(self, _):
        self.answer(words(text(self.name())))

    def answer_rev_proplist(self, _):
        self.answer(properties_of((self.name(), b"\xff\x01")))

    def answer_change_rev_prop(self, _):
        self.answer()

    answer_change_rev_prop2 = answer_change_rev_prop

    def answer_commit(self, _):
        self.send(success(words(), text(b"")), success())
        while self.attack == "full":
            time.sleep(1)
        while self.item()[0] not in (b"close-edit", b"abort-edit"):
            pass
        _, number, _, _, date, author = self.entry()
        self.send(success(), success(words(), text(b"")), words(number, date, author, words(text(self.name()))))

    def answer_get_dir(self, parameters):
        # Only the root holds anything: what the attack names there ends a recursion.
        names = [b"honest", self.name()] if parameters[0] == b"" else []
        self.answer(1, properties_of((b"svn:externals", b"^/ ../escaped"), (self.name(), b"\xff\x01")),
                    words(*(words(text(name), *self.entry()) for name in names)))

    def answer_list(self, _):
        kind, size, has_properties, revision, date, author = self.entry()
        self.many(*(words(text(name), kind, words(size), words(has_properties), words(revision), date, author)
                    for name in (b"/honest", (b"" if self.attack == "bare" else b"/") + self.name())))

    def answer_get_file(self, parameters):
        self.answer(words(), 1, properties_of((self.name(), b"\xff\x01"), (b"svn:mergeinfo", self.name())) if self.attack != "honest" else words())
        if parameters[3] == b"true":
            self.send(text(b"hello"), text(b""), success())

    def answer_log(self, _):
        path = words(text(b"/" + self.name()), b"A", words(text(self.name()), 1))
        _, number, _, _, date, author = self.entry()
        entry = words(path, path), number, author, date, words(text(self.name()))
        nested = {"nested": b"true false 0 ( ) ", "ended": b"false true 0 ( ) "}.get(self.attack, b"")
        self.many(words(*entry, nested))

    def answer_get_locations(self, parameters):
        self.answer(before=[*(words(int(revision), text(b"/" + self.name())) for revision in parameters[2]), b"done"])

    def answer_get_location_segments(self, _):
        self.many(words(0, 1, words(text(b"" if self.attack not in NAMES else self.name()))))

    def answer_get_file_revs(self, _):
        self.many(words(text(b"/" + self.name()), self.entry()[1], properties_of((self.name(), b"\xff")), words()),
                  text(b"SVN\0" + b"\0\0\5\1\5\x85hello"), text(b""))

    def answer_get_mergeinfo(self, _):
        revisions = b"1-99999999999" if self.attack == "huge-target" else b"1"
        self.answer(words(words(text(self.name()), text(b"/x:" + revisions))))

    def answer_get_iprops(self, _):
        self.answer(words(words(text(self.name()), properties_of((self.name(), b"\xff")))))

    def many(self, *entries):
        self.send(success(words(), text(b"")), *entries, b"done", success())

    def edit(self, _):
        self.send(success(words(), text(b"")))
        while self.item()[0] != b"finish-report":
            pass
        drive = DRIVES.get(self.attack, [])
        self.send(success(words(), text(b"")), command("target-rev", 1), command("open-root", words(), b"2:d0"),
                  *entry_properties("change-dir-prop", b"2:d0"), *drive, command("close-dir", b"2:d0"),
                  command("close-edit"))
        if self.attack == "huge-name":
            raise EOFError
        if self.item()[0] == b"success":
            self.send(success())
        else:
            self.send(command("abort-edit"), success())  # what a client that gave up waits for

    answer_update = answer_switch = answer_status = answer_diff = edit


class Server(socketserver.ThreadingTCPServer):
    daemon_threads = True
    block_on_close = False


@contextlib.contextmanager
def running():
    """A server, whose URL is given, until the end."""
    with Server(("127.0.0.1", 0), Client) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        yield f"svn://127.0.0.1:{server.server_address[1]}"
        server.shutdown()


@contextlib.contextmanager
def waiting(attack):
    """A server that never comes to the end of an answer, whose URL is given, until the end."""
    with contextlib.ExitStack() as sockets:
        listener = sockets.enter_context(socket.create_server(("127.0.0.1", 0), backlog=0))
        address = listener.getsockname()

        def answer():
            with contextlib.suppress(OSError):  # the client has had enough
                connection = sockets.enter_context(listener.accept()[0])
                connection.sendall(b"( success ( 2 2 ( ) ( " if attack == "endless" else b"")
                while attack == "endless":
                    connection.sendall(b"word " * 1000)

        if attack == "unconnected":
            sockets.enter_context(socket.create_connection(address))  # all that it lets wait
        else:
            threading.Thread(target=answer, daemon=True).start()
        yield f"svn://127.0.0.1:{address[1]}"
