#!/usr/bin/env python3
"""Fails on include circles, on a Subversion or APR header in a public header, and on a public header that includes a
private one. Reads the sources as text; needs nothing built."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ["Source", "Source/Unicode", "Bundles/Subversion", "Applications/hsvn", "Tests/Support"]
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
FOREIGN = re.compile(r"^(svn|apr|apu)[_a-z0-9]*\.h$|^(subversion-1|apr-1)")
HEAVY = re.compile(r"^(fmt|spdlog|nlohmann|boost|unicode)/")


def includes_of(path):
    return [name for _, name in INCLUDE.findall(path.read_text(encoding="utf-8"))]


def find_cycle(graph):
    """A list of names that include each other in a circle, or None."""
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
        elif name.endswith("Private.h"):
            yield f"{path.name}: a public header includes the private {name}"


def main():
    headers = {p.name: p for folder in FOLDERS for p in sorted((ROOT / folder).glob("*.h"))}
    graph = {name: [pathlib.PurePosixPath(i).name for i in includes_of(path)
                    if pathlib.PurePosixPath(i).name in headers] for name, path in headers.items()}
    faults = []
    cycle = find_cycle(graph)
    if cycle:
        faults.append("include circle: " + " -> ".join(cycle))
    for name, path in headers.items():
        if path.parent.name == "Source" and not name.endswith("Private.h"):
            faults.extend(public_header_faults(path, includes_of(path)))
    for path in sorted((ROOT / "Source").glob("*.cpp")):
        if any(name.startswith("svn_private") or name.startswith("private/") for name in includes_of(path)):
            faults.append(f"{path.name}: includes a header private to Subversion")
    umbrella = set(includes_of(ROOT / "Source/HSVN.h"))
    for name, path in headers.items():
        if path.parent.name == "Source" and name != "HSVN.h" and not name.endswith("Private.h") and name not in umbrella:
            faults.append(f"HSVN.h does not include the public header {name}")
    for fault in faults:
        print(f"check-includes: {fault}", file=sys.stderr)
    if not headers:
        print("check-includes: no header found", file=sys.stderr)
        return 1
    print(f"check-includes: {len(headers)} headers, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
