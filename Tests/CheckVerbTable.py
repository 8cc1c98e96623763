#!/usr/bin/env python3
"""Compares the table of verbs in Documentation/Architecture.md with the sources; with --write, makes it anew.

For each verb of HSVNContext: where its body stands, the adapter's source, the command that offers it, and its tests."""

import argparse
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENT = ROOT / "Documentation" / "Architecture.md"
BEGIN, END = "<!-- verbs: begin -->\n", "<!-- verbs: end -->\n"
VERB = re.compile(r"^    [\w:<>,& ]+?[ &>](\w+)\(const (?:HSVNTarget|std::vector<HSVNTarget)", re.MULTILINE)


def text_of(paths):
    return {path: path.read_text(encoding="utf-8") for path in sorted(paths)}


def verbs():
    header = (ROOT / "Source/HSVNContext.h").read_text(encoding="utf-8")
    declared = header[header.index("// MARK:"):header.index("  protected:")]
    return list(dict.fromkeys(VERB.findall(declared)))


def files_with(pattern, texts):
    expression = re.compile(pattern)
    return [path for path, text in texts.items() if expression.search(text)]


def links(paths, limit=None):
    shown = [f"[{path.name}](../{path.relative_to(ROOT)})" for path in paths[:limit]]
    return ", ".join(shown) if shown else "-"


def rows():
    source = text_of((ROOT / "Source").glob("*.cpp"))
    internal = text_of((ROOT / "Source/Internal").glob("*.h"))
    adapter = text_of((ROOT / "Bundles/Subversion").glob("*.cpp"))
    program = text_of((ROOT / "Applications/hsvn/Commands").glob("*.cpp"))
    cases = text_of((ROOT / "Tests").glob("*.cpp"))
    for verb in verbs():
        definitions = files_with(rf"HSVNContext::{verb}\(", source)
        if not definitions:
            yield verb, None
            continue
        text = "".join(source[path] for path in definitions)
        bodies = [path.with_suffix(".cpp") for path, header in internal.items()
                  if f'"Internal/{path.name}"' in text and path.with_suffix(".cpp").exists()
                  and any(re.search(rf"\b{name}\(", text)
                          for name in re.findall(r"\b(HSVN\w+)\((?:HSVNOperation|HSVNRevisionChange)&", header))]
        bodies = [path for path in bodies if path.name != "Operation.cpp"]
        reached = text + "".join(path.read_text(encoding="utf-8") for path in bodies)
        places = re.findall(r"&HSVN\w+Functions::(\w+)", reached)
        fills = "|".join(places) or "^$"
        calls = files_with(rf"(?:->|\bclient\.){verb}\(", program)
        # A file of the verb's name before any other, then the one with the most calls.
        tried = sorted(files_with(rf"(?:->|\.){verb}\(", cases),
                       key=lambda path: (verb.lower() not in path.stem.lower(),
                                         -len(re.findall(rf"(?:->|\.){verb}\(", cases[path]))))
        # Each command's lines are compared with Subversion's own program.
        tests = links(tried, 1) if tried or not calls else "[command lines](../Tests/CommandLine)"
        yield verb, (links(bodies or definitions), links(files_with(rf"table\.(?:{fills}) =", adapter)), links(calls, 2),
                     tests)


def table():
    lines = ["| verb | body | adapter | command | test |", "|---|---|---|---|---|"]
    faults = []
    for verb, cells in rows():
        if cells is None:
            faults.append(f"the verb {verb} is declared and not defined")
        else:
            lines.append(f"| `{verb}` | " + " | ".join(cells) + " |")
            if cells[3] == "-":
                faults.append(f"no test calls the verb {verb}")
    return "\n".join(lines) + "\n", faults


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--write", action="store_true", help="write the table into the document")
    arguments = parser.parse_args()
    made, faults = table()
    document = DOCUMENT.read_text(encoding="utf-8")
    before, rest = document.split(BEGIN)
    kept, after = rest.split(END)
    if arguments.write:
        DOCUMENT.write_text(before + BEGIN + made + END + after, encoding="utf-8")
    elif kept != made:
        faults.append("Documentation/Architecture.md's table of verbs is old: run Tests/CheckVerbTable.py --write")
    for fault in faults:
        print(f"check-verbs: {fault}", file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
