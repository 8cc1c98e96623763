#!/usr/bin/env python3
"""Fails on include circles, on a header from behind the library's wall, Subversion's or APR's in a public header, and on
a public header that the umbrella lacks. Reads the sources as text; needs nothing built."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LIBRARY = ROOT / "Source"
# Folders whose files include each other by names that start in one of them.
TREES = [LIBRARY, ROOT / "Bundles/Subversion", ROOT / "Applications/hsvn", ROOT / "Tests/Support"]
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
FOREIGN = re.compile(r"^(svn|apr|apu)[_a-z0-9]*\.h$|^(subversion-1|apr-1)")
HEAVY = re.compile(r"^(fmt|spdlog|nlohmann|boost|unicode)/")


def includes_of(path):
    return [name for _, name in INCLUDE.findall(path.read_text(encoding="utf-8"))]


def resolve(path, name, headers):
    """The header that an include means, seen from a file; None for one that is not ours."""
    name = name.removeprefix("HSVN/")
    for folder in [path.parent, *TREES]:
        if (folder / name) in headers:
            return folder / name
    return None


def find_cycle(graph):
    """A list of headers that include each other in a circle, or None."""
    done, trail = set(), []

    def visit(name):
        if name in trail:
            return trail[trail.index(name):] + [name]
        if name in done:
            return None
        trail.append(name)
        for included in graph.get(name, []):
            cycle = visit(included)
            if cycle:
                return cycle
        trail.pop()
        done.add(name)
        return None

    for name in graph:
        cycle = visit(name)
        if cycle:
            return cycle
    return None


def public_header_faults(path, names):
    for name in names:
        if FOREIGN.match(name):
            yield f"{path.name}: a public header includes Subversion's or APR's {name}"
        elif HEAVY.match(name):
            yield f"{path.name}: a public header includes {name}, which its users may not have"
        elif name.startswith(("Internal/", "Unicode/")):
            yield f"{path.name}: a public header includes the internal {name}"


def main():
    headers = {path for tree in TREES for path in tree.rglob("*.h")}
    graph = {path: [found for name in includes_of(path) if (found := resolve(path, name, headers))]
             for path in sorted(headers)}
    faults = []
    cycle = find_cycle(graph)
    if cycle:
        faults.append("include circle: " + " -> ".join(str(path.relative_to(ROOT)) for path in cycle))
    public = {path for path in headers if path.parent == LIBRARY}
    for path in sorted(public):
        faults.extend(public_header_faults(path, includes_of(path)))
    for path in sorted(LIBRARY.rglob("*.cpp")):
        if any(name.startswith("svn_private") or name.startswith("private/") for name in includes_of(path)):
            faults.append(f"{path.name}: includes a header private to Subversion")
    for path in sorted((ROOT / "Applications").rglob("*.*")):
        if path.suffix in (".h", ".cpp") and any("Internal/" in name for name in includes_of(path)):
            faults.append(f"{path.name}: the program includes an internal header of the library")
    umbrella = set(includes_of(LIBRARY / "HSVN.h"))
    for path in sorted(public):
        if path.name != "HSVN.h" and path.name not in umbrella:
            faults.append(f"HSVN.h does not include the public header {path.name}")
    for fault in faults:
        print(f"check-includes: {fault}", file=sys.stderr)
    if not headers:
        print("check-includes: no header found", file=sys.stderr)
        return 1
    print(f"check-includes: {len(headers)} headers, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
