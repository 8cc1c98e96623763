"""A server that speaks as much of svnserve's protocol as a client needs to be attacked over it.

The first component of a URL's path says what is attacked with: `svn://127.0.0.1:PORT/dotdot`.
"""

import contextlib
import re
import socketserver
import threading

DATE = b"2026-01-01T00:00:00.000000Z"

# What a directory holds beside one honest file.
NAMES = {
    "dotdot": b"../../../escaped", "up": b"..", "slash": b"a/../../../escaped", "absolute": b"/tmp/hsvn-escaped",
    "empty": b"", "dot": b".", "deep": b"no/such/parent", "admin": b".svn", "adminfile": b".svn/wc.db",
    "zero": b"a\0/../../escaped", "long": b"n" * 5000, "illformed": b"\xff\xfe", "surrogate": b"\xed\xa0\x80",
    "overlong": b"\xc0\xae\xc0\xae/escaped", "control": b"a\nb\x01", "backslash": b"..\\escaped",
    "duplicate": b"honest", "doubled": b"//escaped",
}

# What stands in place of an answer.
ANSWERS = {
    "garbage": b"\0\xff)))", "nested": b"( " * 5000, "empty-list": b"( ) ", "huge-text": b"( success ( 9999999999999:x",
    "huge-number": b"( success ( 99999999999999999999999 ) ) ", "negative-number": b"( success ( -5 ) ) ",
    "failure-without-reason": b"( failure ( ) ) ", "nothing": b"( success ( ) ) ", "cut": b"",
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


# Leads to the folder "outside" beside the target.
LINK = whole_file(b"link", (b"svn:special", b"*"), contents=b"link ../outside")
CLOSE_FOLDER = command("close-dir", b"2:d1")
OUTSIDE_BELOW = whole_file(b"link/escaped", parent=b"2:d1") + [CLOSE_FOLDER]

# What the server drives an update or a comparison with.
DRIVES = {
    "honest": [], **{name: whole_file(value) for name, value in NAMES.items()},
    **{name + "-dir": add_folder(value) + [CLOSE_FOLDER] for name, value in NAMES.items()},
    "through-link": LINK + whole_file(b"link/escaped"),
    "link-as-dir": LINK + add_folder(b"link") + OUTSIDE_BELOW,
    "open-link": LINK + [command("open-dir", text(b"link"), b"2:d0", b"2:d1", 1)] + OUTSIDE_BELOW,
    "replaced-link": LINK + [command("delete-entry", text(b"link"), 1, b"2:d0")] + add_folder(b"link") + OUTSIDE_BELOW,
    "open-missing": [command("open-file", text(b"missing"), b"2:d0", b"2:f1", 1),
                     command("close-file", b"2:f1", words())],
    "open-folder": [command("open-dir", text(b"missing"), b"2:d0", b"2:d1", 1)]
                   + whole_file(b"missing/file", parent=b"2:d1") + [CLOSE_FOLDER],
    "delete": [command("delete-entry", text(b"../outside"), 1, b"2:d0")],
    "delete-root": [command("delete-entry", text(b""), 1, b"2:d0")],
    "wrong-token": [command("close-file", b"2:f9", words())],
    "no-text-end": delta() + [command("close-file", b"2:f1", words())],
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
        root, attack = re.match(rb"(svn://[^/]*/([^/]*))", self.item()[2]).groups()
        self.attack, _, self.time = attack.decode().partition("+")
        self.send(success(words(b"ANONYMOUS"), text(b"realm")))
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
        number = {"negative": b"-5", "huge": b"9" * 30}.get(self.attack, b"1")
        date = b"yesterday" if self.attack == "bad-date" else DATE
        return kind, number, b"false", number, words(text(date)), words(text(b"\xff\x01"))

    def answer_get_latest_rev(self, _):
        self.answer(1)

    def answer_reparent(self, _):
        self.answer()

    def answer_check_path(self, parameters):
        self.answer(b"file" if parameters[0].endswith(b"file") else b"dir")

    def answer_stat(self, parameters):
        kind = b"file" if parameters[0].endswith(b"file") else b"dir"
        self.answer(words(words(kind, *self.entry()[1:])))

    def answer_get_lock(self, _):
        self.answer(words())

    def answer_get_locks(self, _):
        self.answer(words(words(text(b"/" + self.name()), text(b"token"), text(b"\xff"), words(), text(DATE), words())))

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
        self.answer(words(), 1, properties_of((self.name(), b"\xff\x01"), (b"svn:mergeinfo", self.name())))
        if parameters[3] == b"true":
            self.send(text(b"hello"), text(b""), success())

    def answer_log(self, _):
        path = words(text(b"/" + self.name()), b"A", words(text(self.name()), 1))
        _, number, _, _, date, author = self.entry()
        self.many(words(words(path, path), number, author, date, words(text(self.name()))))

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
        drive = [] if self.attack in ANSWERS else DRIVES[self.attack]
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
