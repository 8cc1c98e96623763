#!/usr/bin/env python3
"""Compares the two tables of functions in Documentation/Bundles.md with the headers that declare them.

CheckBundleTable.py [--write]

Ends with 1 and says what differs when a place is missing, out of order, misnumbered or documented with another
signature. With --write, the documented tables are made anew from the headers.
"""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
HEADER = ROOT / "Source" / "Internal" / "BundleEntryPoints.h"
EXTENSIONS = ROOT / "Source" / "Internal" / "BundleExtensions.h"
GUIDE = ROOT / "Documentation" / "Bundles.md"
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


def extension_rows():
    """The rows of the second table: what a place stands for, as its comment says, and its signature."""
    text = EXTENSIONS.read_text(encoding="utf-8")
    # The records before the table's own fields may hold functions, too.
    body = re.search(r"struct HSVNBundleExtensions\n\{.*?std::uint32_t size;(.*?)\n\};", text, re.S).group(1)
    found = re.findall(r"((?: *///[^\n]*\n)+) *([^;/]*?\(\*(\w+)\)\([^;]*);", body)
    lines = ["| place | what it stands for | signature |\n", "|---|---|---|\n"]
    for number, (comment, declaration, member) in enumerate(found):
        meaning = " ".join(line.strip().removeprefix("///").strip() for line in comment.splitlines())
        meaning = re.sub(r"(?<!`)\bsvn_[a-z0-9_]+", r"`\g<0>`", meaning)
        signature = re.sub(r"\s+", " ", declaration).replace("(*" + member + ")", member)
        lines.append(f"| {number} | {meaning} | `{signature}` |\n")
    if len(found) != len(re.findall(r"\(\*\w+\)\(", body)):
        sys.exit(f"{EXTENSIONS.name}: a place has no comment")
    return "".join(lines)


def with_table(guide, name, wanted, problems):
    """The guide with its table of that name as it should be; what differs is added to the problems."""
    begin, end = f"<!-- {name}: begin -->\n", f"<!-- {name}: end -->\n"
    match = re.search(re.escape(begin) + "(.*?)" + re.escape(end), guide, re.S)
    if not match:
        sys.exit(f"{GUIDE.name}: the marks around the {name} are missing")
    have, want = match.group(1).splitlines(), wanted.splitlines()
    for one, other in zip(have, want):
        if one != other:
            problems.append(f"{GUIDE.name} has\n  {one}\nfor\n  {other}")
    if len(have) != len(want):
        problems.append(f"{GUIDE.name} has another number of places in the {name}")
    return guide[:match.start()] + begin + wanted + end + guide[match.end():]


def main():
    places = places_in_header()
    faults, differences = check_header(places), []
    guide = with_table(GUIDE.read_text(encoding="utf-8"), "table", rows(places), differences)
    guide = with_table(guide, "second table", extension_rows(), differences)
    if sys.argv[1:] == ["--write"]:
        GUIDE.write_text(guide, encoding="utf-8")
        differences = []
    for problem in faults + differences:
        print(problem, file=sys.stderr)
    return 1 if faults or differences else 0


if __name__ == "__main__":
    sys.exit(main())
