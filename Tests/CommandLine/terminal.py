#!/usr/bin/python
"""Runs command lines that ask questions through svn and hsvn, each on a terminal of its own where the questions are
answered, and compares what the terminals show, how the programs end and what they leave behind.

usage: terminal.py HSVN
"""

import os
import pty
import re
import select
import signal
import sys
import tempfile
import time

import compare
import fixtures

INTERRUPT = "\x03"
ASKS = r"\(e\)dit:\r\n$"
COMMIT = "commit --editor-cmd true iota"

# A state of fixtures.py, a command line, and what is typed when the terminal shows a pattern at its end.
CONVERSATIONS = [
    ("changed", COMMIT, [(ASKS, "a\n")]),
    ("changed", COMMIT, [(ASKS, "Abort\n")]),
    ("changed", COMMIT, [(ASKS, "c\n")]),
    ("changed", COMMIT, [(ASKS, "what\n"), (ASKS, "\n"), (ASKS, "c\n")]),
    ("changed", COMMIT, [(ASKS, INTERRUPT)]),
    ("changed", COMMIT, [(ASKS, "\x04")]),
    ("changed", "commit --editor-cmd ROOT/second-time-editor iota", [(ASKS, "e\n")]),
    ("changed", "commit --editor-cmd ROOT/editor", []),
    ("clean", "mkdir ^/new --editor-cmd true", [(ASKS, "a\n")]),
    ("clean", "mkdir ^/new --editor-cmd true", [(ASKS, INTERRUPT)]),
    ("clean", "import A ^/new --editor-cmd true", [(ASKS, "c\n")]),
    ("clean", "delete ^/trunk/iota --editor-cmd true --non-interactive", []),
]


def converse(terminal, conversation):
    """What a terminal shows until the program ends."""
    shown = ""
    answers = list(conversation)
    deadline = time.monotonic() + 60
    while time.monotonic() < deadline:
        ready, _, _ = select.select([terminal], [], [], 1)
        try:
            shown += os.read(terminal, 4096).decode("latin-1") if ready else ""
        except OSError:  # the program has closed its side
            return shown
        if answers and re.search(answers[0][0], shown):
            os.write(terminal, answers.pop(0)[1].encode())
            shown += "\n"  # so that the same question is not answered twice
    raise TimeoutError(f"{shown!r} is all that was shown")


def run(state, program, command, conversation):
    state.restore()
    process, terminal = pty.fork()
    if process == 0:
        os.chdir(state.wc)
        words = ["svn", *command.replace("ROOT", state.root).split()]
        os.execve(os.path.join(program, "svn"), words, fixtures.environment(state.wc))
    shown = converse(terminal, conversation)
    os.close(terminal)
    _, status = os.waitpid(process, 0)
    return {"terminal": shown, "end": status, "files": compare.snapshot(state.wc),
            "repository": compare.dump(state.root + "/repository")}


def main():
    # Whatever started the tests: with an interrupt that is ignored, nothing could be interrupted.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        folder = os.path.realpath(folder)
        programs = compare.programs_in(folder, sys.argv[1])
        states = {name: compare.State(os.path.join(folder, name), name)
                  for name in {conversation[0] for conversation in CONVERSATIONS}}
        for name, command, conversation in CONVERSATIONS:
            expected, actual = (run(states[name], program, command, conversation) for program in programs)
            for what, value in expected.items():
                if actual[what] != value:
                    failures += 1
                    print(f"svn {command}\n  {what} differs")
                    print("\n".join(compare.difference(value, actual[what])))
                    break
    print(f"{len(CONVERSATIONS)} conversations, {failures} differ")
    sys.exit(failures != 0)


if __name__ == "__main__":
    main()
