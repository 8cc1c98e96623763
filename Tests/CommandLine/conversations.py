#!/usr/bin/python
"""Holds the same conversations with Subversion's svn and with hsvn on a terminal, and interrupts both.

usage: conversations.py HSVN
"""

import os
import re
import select
import shutil
import signal
import socket
import ssl
import subprocess
import sys
import tempfile
import threading
import time

import compare
import fixtures
import webserver

# Writes into the file that it is given; svn does not see another file in its place.
EDITOR = 'f() { sed s/mine/edited/ "$1" > "$HOME/edited"; cat "$HOME/edited" > "$1"; }; f'
MERGE_TOOL = "--config-option config:helpers:merge-tool-cmd="
QUESTION = re.compile(r"(: |\? )$")

# Those that begin no option.
QUOTED_NAMES = [name.replace("'", "'\\''") for name in fixtures.HOSTILE_NAMES if not name.startswith("-")]

# A state of fixtures.py, what follows "svn", and the answers, one for each question.
CONVERSATIONS = [
    ("outdated", "up", ["h", "x", "a", "h", "mf", "s", "r", "df", "dc", "r"]),
    ("outdated", "up", ["r", "dc", "r", "tf", "mc"]),
    ("outdated", "up", ["q"]),
    ("outdated", "up", ["p", "e", "r", "e", "r"]),
    ("outdated", "up -q", []),
    ("outdated", "up --accept edit iota", []),
    ("outdated", "up --accept launch iota", []),
    ("outdated", "up --accept postpone", []),
    ("outdated", "up --non-interactive", []),
    ("outdated", "up --config-option config:miscellany:interactive-conflicts=no", []),
    ("outdated", "up iota", ["i", "x", "12", "r"]),
    ("outdated", "up iota", ["m", "a", "l", "i", "p", "tf"]),
    ("moving", "up", ["u"]),
    ("obstructed", "up", ["r", "m", "p"]),
    ("merging", "merge -c 7 -c 8 ^/branches/one", ["mf"]),
    ("merging", "merge -c 7 -c 8 ^/branches/one", ["q"]),
    ("merging", "merge -c 7 ^/branches/one", ["df", "dc", "i", "2", "r"]),
    ("merging", f"merge -c 7 ^/branches/one {MERGE_TOOL}echo", ["m", "df", "r"]),
    ("diverged", "up", ["h"]),
    ("diverged", "up", ["mf", "p", "tf", "p", "r", "p"]),
    ("diverged", "up", ["p", "mf", "q"]),
    ("diverged", "up A/odd", ["dc", "df", "i", "12", "df", "r", "h", "dc", "r", "e", "dc", "e", "r"]),
    ("diverged", "up A/odd", ["i", "eb", "r", "s", "?", "tc"]),
    ("diverged", "up text binary", ["h", "x", "mf", "m", "1", "x", "e2", "s", "r"]),
    ("diverged", "up text binary", ["tf", "i", "21", "p", "r", "m", "e1", "a", "mc"]),
    ("diverged", "up text binary", ["q"]),
    ("diverged", "up --editor-cmd false text", ["e", "i", "e1", "eb", "1", "p"]),
    ("diverged", f"up text {MERGE_TOOL}true", ["m", "r"]),
    ("diverged", f"up text {MERGE_TOOL}'/bin/sh -c \"exit 3\"'", ["m", "l", "p"]),
    *[("diverged", f"up --accept launch {tool}", ["mf", "mf", "mf"]) for tool in ["", *(
        MERGE_TOOL + program for program in ["true", "false", "echo", "/nowhere"])]],
    *[("diverged", f"up --accept {accept} text A/odd", []) for accept in ["edit", "mine-full"]],
    ("diverged", "up --accept edit binary text", []),
    ("diverged", "up --accept edit --editor-cmd false", []),
    # Names that a shell would run; the file that the editor gets of a part of a text is nobody else's.
    *[("hostile", f"up '{name}'", ["e", "r"]) for name in QUOTED_NAMES],
    *[("hostile", f"up '{name}' {MERGE_TOOL}echo", ["m", "r"]) for name in QUOTED_NAMES],
    ("diverged", "up --editor-cmd 'stat -c %a' text", ["i", "e1", "e2"]),
    ("tangled", "up", ["h", "d", "x", "0", "3", "1", "h", "m"]),
    ("tangled", "up", ["d", "2", "m"]),
    ("tangled", "up", ["p"]),
    ("tangled", "up --accept mine-conflict", []),
    ("tangled", "merge -c 7 ^/branches/one", ["h", "p", "h", "mc"]),
    ("untangled", "merge -c 7 ^/branches/one", ["r", "h", "d", "2", "m"]),
    ("crossed", "merge ^/branches/two", ["h", "p"] * 5),
    ("crossed", "merge ^/branches/two", ["m", "R", "a", "r", "M", "tf"]),
    ("crossed", "merge ^/branches/two", ["M", "M", "df", "i", "1", "r", "i", "r", "m", "mf"]),
    ("crossed", "merge ^/branches/two", ["r", "i", "q"]),
    *[("crossed", f"merge ^/branches/two --accept {accept}", []) for accept in ["edit", "launch", "recommended"]],
]


class Terminal:
    """A program on a terminal of its own."""

    def __init__(self, program, command, folder, environment):
        self.master, slave = os.openpty()
        # The terminal is what /dev/tty names for the program.
        def take_terminal():
            os.setsid()
            os.close(os.open(os.ttyname(slave), os.O_RDWR))

        self.process = subprocess.Popen(["/bin/bash", "-c", "exec svn " + command], cwd=folder, stdin=slave,
                                        stdout=slave, stderr=slave, preexec_fn=take_terminal,
                                        env={**environment, "PATH": program + ":" + os.environ["PATH"]})
        os.close(slave)
        self.text = ""

    def read(self):
        """Reads what is there; false at the end."""
        if not select.select([self.master], [], [], 60)[0]:
            self.process.kill()
            raise TimeoutError("no answer to " + repr(self.text[-200:]))
        try:
            text = os.read(self.master, 65536).decode("latin-1")
        except OSError:
            return False
        self.text += text
        return text != ""

    def converse(self, answers):
        """Answers each question; the end of the input answers those that are left."""
        answers = list(answers)
        seen = 0
        while self.read():
            # What an answer echoes is no question.
            if QUESTION.search(self.text[seen:]) and not self.text.endswith("\n"):
                os.write(self.master, (answers.pop(0) + "\n").encode() if answers else b"\x04")
                seen = len(self.text)
        code = self.process.wait(60)
        os.close(self.master)
        return self.text, code


def converse(state, programs, command, answers):
    """How the conversation went with each program, and what it left behind."""
    results = []
    for program in programs:
        state.restore()
        environment = {**fixtures.environment(state.wc), "SVN_EDITOR": EDITOR, "COLUMNS": "80"}
        text, code = Terminal(program, command, state.wc, environment).converse(answers)
        left = {"text": uncoloured(text), "code": code, "files": compare.snapshot(state.wc)}
        left["status"] = compare.look(state.wc, "svn", "status", "-v")
        results.append(left)
    return results


def uncoloured(text):
    """Text without names of temporary files and what hsvn alone does on a terminal: colours, the line of progress."""
    text = re.sub(r"\r\x1b\[K|\x1b\[[0-9;]*[mK]", "", text)
    return re.sub(r"\bsvn-\w{3,7}(\.tmp)?(?!\w)", "TEMPORARY", text.replace("\r\n", "\n"))


def report(title, expected, actual):
    """Prints what differs; 1 when something does."""
    for what, value in expected.items():
        if actual[what] != value:
            print(f"{title}\n  {what} differs")
            print("\n".join(compare.difference(value, actual[what])))
            return 1
    return 0


def check_passwords(state, programs):
    """A server that wants a password: a wrong one, then the right one; neither is shown."""
    results = []
    with fixtures.server_of(state.root):
        for program in programs:
            command = f"mkdir -m made --username harry {fixtures.server_url(state.root)}/trunk/made"
            result = converse(state, [program], command, ["wrong-" + fixtures.SECRET, "harry", fixtures.SECRET, "no"])[0]
            results.append({**result, "is seen": fixtures.SECRET in result["text"],
                            "configuration": compare.snapshot(state.root + "/home")})
    if results[0]["code"] != 0 or results[0]["is seen"]:
        sys.exit("the server cannot be used for the test: " + repr(results[0]))
    return report("password", *results)


def check_option_names(state, program):
    """A file whose name is an option: the editor gets it with its folder, which svn leaves out."""
    result = converse(state, [program], "up --editor-cmd 'echo given:' ./-n", ["e", "p"])[0]
    if "given: ./-n" not in result["text"]:
        print("option names\n  the editor was given something else:\n" + result["text"])
        return 1
    return 0


def check_certificate(state, programs):
    """A server whose certificate nobody knows: it is shown, and rejected."""
    state.restore()
    key, certificate = (os.path.join(state.root, name) for name in ("key.pem", "certificate.pem"))
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-utf8", "-subj", "/O=Evil\a\u202e/CN=localhost",
                    "-days", "2",
                    "-keyout", key, "-out", certificate], check=True, capture_output=True)
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(certificate, key)
    listener = socket.create_server(("127.0.0.1", 0))

    def serve():
        while True:
            try:
                connection, _ = listener.accept()
                context.wrap_socket(connection, server_side=True).close()
            except ssl.SSLError:
                pass  # the certificate was rejected
            except OSError:
                return

    threading.Thread(target=serve, daemon=True).start()
    results = []
    for program in programs:
        command = f"ls https://127.0.0.1:{listener.getsockname()[1]}/"
        text, code = Terminal(program, command, state.wc, fixtures.environment(state.wc)).converse(["x", "r"])
        results.append({"text": uncoloured(text), "code": code})
    listener.close()
    if "(R)eject" not in results[0]["text"] or "Evil\a" not in results[0]["text"]:
        sys.exit("the certificate was not asked about: " + repr(results[0]))
    results[0]["text"] = results[0]["text"].replace("Evil\a", "Evil?\\007")
    return report("certificate", *results)


def check_client_certificate(state, programs):
    """A server that wants a certificate: its file, its passphrase and the password are asked for."""
    state.restore()
    folder = state.root + ".server"
    os.mkdir(folder)
    webserver.write_certificates(folder, "passphrase")
    port = fixtures.free_port()
    command = (f"ls https://127.0.0.1:{port}/repository/trunk --username harry"
               f" --config-option servers:global:ssl-authority-files={folder}/server.pem"
               " --config-option config:auth:ssl-client-cert-file-prompt=yes")
    results = []
    for program in programs:
        state.restore()
        repository = state.root + "/repository"
        with webserver.running(folder, repository, port, fixtures.SECRET, with_certificates=True):
            text, code = Terminal(program, command, state.wc, fixtures.environment(state.wc)).converse(
                [folder + "/client.p12", "passphrase", fixtures.SECRET, "no", "no"])
        results.append({"text": uncoloured(text), "code": code,
                        "configuration": compare.snapshot(state.root + "/home")})
    if results[0]["code"] != 0 or "Passphrase for" not in results[0]["text"]:
        sys.exit("the certificate was not asked for: " + repr(results[0]))
    return report("client certificate", *results)


def check_interrupt(folder, programs):
    """An interrupt during a long checkout: both end in the same way, and after a clean-up an update goes on with it. How
    far each had come, and whether Subversion left a lock, is a matter of moments."""
    os.makedirs(os.path.join(folder, "home"))
    tree, repository, wc = (os.path.join(folder, name) for name in ("tree", "repository", "wc"))
    os.mkdir(tree)
    for number in range(6000):
        fixtures.write(tree, f"a-file-with-a-long-name-{number:06}", "text\n")
    subprocess.run(["svnadmin", "create", repository], check=True)
    fixtures.run_svn(folder, "import", "-q", "-m", "", tree, "file://" + repository)
    results = []
    for program in programs:
        shutil.rmtree(wc, ignore_errors=True)
        process = subprocess.Popen([os.path.join(program, "svn"), "checkout", "file://" + repository, wc],
                                   env=fixtures.environment(wc), stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        # Nobody reads on, so that the program has not come to its end when it is interrupted.
        process.stdout.read(4096)
        process.send_signal(signal.SIGINT)
        _, errors = process.communicate(timeout=60)
        if len(os.listdir(wc)) >= 6000:
            sys.exit("the checkout was not interrupted")
        for command in [["cleanup"], ["update", "-q"]]:
            fixtures.run_svn(wc, *command)
        results.append({"errors": errors.decode("latin-1"), "code": process.returncode,
                        "files": len(os.listdir(wc))})
    return report("interrupt", *results)


def main():
    # Whatever started the tests: with an interrupt that is ignored, nothing could be interrupted.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    with tempfile.TemporaryDirectory() as folder:
        folder = os.path.realpath(folder)
        programs = [os.path.join(folder, name) for name in ("original", "ours")]
        for program, binary in zip(programs, [shutil.which("svn"), os.path.realpath(sys.argv[1], strict=True)]):
            os.mkdir(program)
            os.symlink(binary, os.path.join(program, "svn"))
        states = {name: compare.State(os.path.join(folder, name), name)
                  for name in {"clean", "served", *(name for name, _, _ in CONVERSATIONS)}}
        failures = sum(report(f"svn {command} {answers}", *converse(states[name], programs, command, answers))
                       for name, command, answers in CONVERSATIONS)
        failures += check_passwords(states["served"], programs)
        failures += check_option_names(states["hostile"], programs[1])
        failures += check_certificate(states["clean"], programs)
        failures += check_client_certificate(states["clean"], programs)
        failures += check_interrupt(os.path.join(folder, "long"), programs)
    print(f"{failures} differ")
    sys.exit(failures != 0)


if __name__ == "__main__":
    main()
