#!/usr/bin/env python3
"""Finds calls of Subversion functions that a line does not have, in objects that were compiled for that line.

CheckLineFunctions.py HEADERS MINOR OBJECT...

The headers state since when a function is there. Ends with 1 and names each object that calls a function newer than
1.MINOR.
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
    """The minor number of the first line that has a function, of every function that states one."""
    minors = {}
    for header in sorted(Path(headers).glob("svn_*.h")):
        stated = 0
        for comment, code in COMMENTED.findall(header.read_text(encoding="utf-8")):
            if comment.startswith("/**") or "@since" in comment:
                # What an argument may be since a later line is stated in the same way.
                stated = min(map(int, SINCE.findall(comment)), default=0)
            for name in FUNCTION.findall(code):
                minors[name] = min(stated, minors.get(name, stated))
    return {name: minor for name, minor in minors.items() if name not in OLDER_THAN_STATED}


def called_functions(objects):
    """(object, function) of every call that leaves an object, Subversion's functions alone."""
    listing = subprocess.run(["nm", "--undefined-only", "--print-file-name", *objects], check=True, text=True,
                             stdout=subprocess.PIPE).stdout
    return re.findall(r"^(.*): +[Uwv] (svn_\w+)$", listing, re.M)


def main():
    headers, line, *objects = sys.argv[1:]
    minors = first_minors(headers)
    calls = called_functions(objects)
    if len(minors) < 1000 or len(calls) < 100:
        sys.exit(f"{len(minors)} functions in {headers} and {len(calls)} calls are too few to compare")
    newer = [f"{Path(name).name} calls {function}, new in 1.{minors[function]}, for a 1.{line} line"
             for name, function in calls if minors.get(function, 0) > int(line)]
    print("\n".join(newer))
    return 1 if newer else 0


if __name__ == "__main__":
    sys.exit(main())
