#!/usr/bin/env python3
"""Compares the table of entry points in Documentation/Bundles.md with the header that declares it.

CheckBundleTable.py [--write]

Ends with 1 and says what differs when a place is missing, out of order, misnumbered or documented with another
signature. With --write, the documented table is made anew from the header.
"""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
HEADER = ROOT / "Source" / "HSVNBundleEntryPointsPrivate.h"
GUIDE = ROOT / "Documentation" / "Bundles.md"
BEGIN = "<!-- table: begin -->\n"
END = "<!-- table: end -->\n"
PLACES = 91


def places_in_header():
    """(number, function, member, signature) of every place, in the order of the structure."""
    text = HEADER.read_text(encoding="utf-8")
    body = re.search(r"struct HSVNBundleEntryPoints\n\{(.*?)\n\};", text, re.S).group(1)
    found = re.findall(r"/\*\s*(\d+) (\w+) \*/\s*(.*?);", body, re.S)
    if len(re.findall(r"\(\*\w+\)\(", body)) != len(found):
        sys.exit(f"{HEADER.name}: a place has no comment that numbers it")
    places = []
    for number, function, declaration in found:
        declaration = re.sub(r"\s+", " ", declaration)
        member = re.search(r"\(\*(\w+)\)", declaration).group(1)
        places.append((int(number), function, member, declaration.replace("(*" + member + ")", member)))
    return places


def check_header(places):
    problems = []
    if [place[0] for place in places] != list(range(PLACES)):
        problems.append(f"the places are not numbered 0 to {PLACES - 1} in order")
    for number, function, member, _ in places:
        if function == "free":
            expected = f"reserved{number}"
        elif function.startswith("apr_"):
            expected = function
        else:
            expected = {"svn_pool_create_ex": "pool_create", "svn_error__locate": "error_locate"}.get(
                function, function.removeprefix("svn_"))
        if member != expected:
            problems.append(f"place {number} says {function} but declares {member}")
    return problems


def rows(places):
    lines = ["| place | function | signature |\n", "|---|---|---|\n"]
    for number, function, _, signature in places:
        lines.append(f"| {number} | free | |\n" if function == "free"
                     else f"| {number} | `{function}` | `{signature}` |\n")
    return "".join(lines)


def main():
    places = places_in_header()
    problems = check_header(places)
    before, begin, rest = GUIDE.read_text(encoding="utf-8").partition(BEGIN)
    documented, end, after = rest.partition(END)
    if not begin or not end:
        sys.exit(f"{GUIDE.name}: the marks around the table are missing")
    wanted = rows(places)
    if sys.argv[1:] == ["--write"]:
        GUIDE.write_text(before + BEGIN + wanted + END + after, encoding="utf-8")
    else:
        for have, want in zip(documented.splitlines(), wanted.splitlines()):
            if have != want:
                problems.append(f"{GUIDE.name} has\n  {have}\nfor\n  {want}")
        if len(documented.splitlines()) != len(wanted.splitlines()):
            problems.append(f"{GUIDE.name} has another number of places than {HEADER.name}")
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
