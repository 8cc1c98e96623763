#!/usr/bin/env python3
"""Fails on circles of units (a header with the source of its name), on an include against the floors that
Documentation/Architecture.md lists, on a header from behind the library's wall, Subversion's or APR's in a public header,
and on a public header that the umbrella lacks. Reads the sources as text; needs nothing built."""

import fnmatch
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


def units_of(headers):
    """What each unit includes of other units: {tree-relative name without suffix: {names}}, one dictionary for each tree."""
    for tree in TREES:
        units = {}
        for path in sorted(tree.rglob("*")):
            if path.suffix not in (".h", ".cpp") or path == LIBRARY / "HSVN.h":
                continue
            unit = str(path.relative_to(tree).with_suffix(""))
            included = {resolve(path, name, headers) for name in includes_of(path)} - {None}
            names = {str(header.relative_to(tree).with_suffix("")) for header in included if header.is_relative_to(tree)}
            units.setdefault(unit, set()).update(names - {unit})
        yield tree, units


def find_cycle(graph):
    """A list of units that include each other in a circle, or None."""
    done, trail = set(), []

    def visit(name):
        if name in trail:
            return trail[trail.index(name):] + [name]
        if name in done:
            return None
        trail.append(name)
        for included in sorted(graph.get(name, [])):
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


def read_floors():
    """The floors of the library, the lowest first: (name, patterns of units)."""
    text = (ROOT / "Documentation/Architecture.md").read_text(encoding="utf-8")
    table = text[text.index("| floor | knows | units |"):].split("\n\n")[0]
    rows = [line.strip("|").split("|") for line in table.splitlines()[2:]]
    return [(name.strip(), re.findall(r"`([^`]+)`", units)) for name, _, units in rows]


def floor_faults(units, floors):
    def floor_of(unit):
        fitting = [(len(pattern), index) for index, (_, patterns) in enumerate(floors) for pattern in patterns
                   if fnmatch.fnmatchcase(unit, pattern)]
        return max(fitting)[1]

    for unit, included in units.items():
        for other in sorted(included):
            if floor_of(other) > floor_of(unit):
                yield (f"{unit} ({floors[floor_of(unit)][0]}) includes {other}, which stands above it "
                       f"({floors[floor_of(other)][0]})")
    for name, patterns in floors:
        for pattern in patterns:
            if not any(fnmatch.fnmatchcase(unit, pattern) for unit in units):
                yield f"Architecture.md: no unit is called {pattern} ({name})"


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
    faults = []
    for tree, units in units_of(headers):
        cycle = find_cycle(units)
        if cycle:
            faults.append(f"circle in {tree.relative_to(ROOT)}: " + " -> ".join(cycle))
        if tree == LIBRARY:
            faults.extend(floor_faults(units, read_floors()))
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
