#!/usr/bin/env python3
"""Finds what a line of Subversion does not have in what is compiled for that line: functions that objects call, and
headers that the adapter's sources include.

CheckLineFunctions.py HEADERS MINOR COMPILER SOURCE ADAPTER OBJECT...

The headers state since when a function is there, but of some; a header is as old as the oldest tenth of its functions.
Ends with 1 and names each object that calls a function newer than 1.MINOR, and each source of the folder ADAPTER that
includes such a header, by itself or by a header of the folders ADAPTER and SOURCE.
"""

import re
import subprocess
import sys
from pathlib import Path

COMMENTED = re.compile(r"(/\*.*?\*/)(.*?)(?=/\*|\Z)", re.S)
SINCE = re.compile(r"@since:?[\s*]+new[\s*]+in[\s*]+1\.(\d+)", re.I)
FUNCTION = re.compile(r"\b(svn_\w+)\s*\(")
# 1.4 has it, in the same header, undocumented.
OLDER_THAN_STATED = {"svn_client_url_from_path"}


def first_minors(headers):
    """The minor number of the first line that has a function, of every function that states one, and that has a
    header."""
    minors, header_minors = {}, {}
    for header in sorted(Path(headers).glob("svn_*.h")):
        stated = 0
        names = set()
        for comment, code in COMMENTED.findall(header.read_text(encoding="utf-8")):
            if comment.startswith("/**") or "@since" in comment:
                # What an argument may be since a later line is stated in the same way.
                stated = min(map(int, SINCE.findall(comment)), default=0)
            for name in FUNCTION.findall(code):
                minors[name] = min(stated, minors.get(name, stated))
                names.add(name)
        stated = sorted(minors[name] for name in names)
        header_minors[header.name] = stated[len(stated) // 10] if stated else 0
    return {name: minor for name, minor in minors.items() if name not in OLDER_THAN_STATED}, header_minors


def called_functions(objects):
    """(object, function) of every call that leaves an object, Subversion's functions alone."""
    listing = subprocess.run(["nm", "--undefined-only", "--print-file-name", *objects], check=True, text=True,
                             stdout=subprocess.PIPE).stdout
    return re.findall(r"^(.*): +[Uwv] (svn_\w+)$", listing, re.M)


def included_headers(compiler, line, source, adapter):
    """(file, header) of every header of Subversion's that the sources include for the line: its own are not looked into,
    nor searched for."""
    for file in sorted(Path(adapter).glob("*.cpp")):
        command = [compiler, "-M", "-MG", "-nostdinc", "-std=c++20", f"-DHSVN_LINE_MINOR={line}", f"-I{adapter}",
                   f"-I{source}", str(file)]
        listing = subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE).stdout
        yield from ((file.name, word) for word in listing.split() if word.startswith("svn_"))


def main():
    headers, line, compiler, source, adapter, *objects = sys.argv[1:]
    minors, header_minors = first_minors(headers)
    calls = called_functions(objects)
    inclusions = list(included_headers(compiler, line, source, adapter))
    if len(minors) < 1000 or len(calls) < 100 or len(inclusions) < 100:
        sys.exit(f"{len(minors)} functions in {headers}, {len(calls)} calls and {len(inclusions)} inclusions are too "
                 "few to compare")
    newer = [f"{Path(name).name} calls {function}, new in 1.{minors[function]}, for a 1.{line} line"
             for name, function in calls if minors.get(function, 0) > int(line)]
    newer += [f"{name} includes {header}, new in 1.{header_minors[header]}, for a 1.{line} line"
              for name, header in inclusions if header_minors.get(header, 0) > int(line)]
    print("\n".join(newer))
    return 1 if newer else 0


if __name__ == "__main__":
    sys.exit(main())
