#!/usr/bin/env python3
"""Tells what leaves the library, and where the build tree's programs and libraries look for others.

usage: SealedLibraryTest.py BUILD_FOLDER
"""

import pathlib
import re
import subprocess
import sys
import unittest

BUILD = pathlib.Path(sys.argv[1])
PACKAGE = BUILD / "lib/HSVN/Versions/A"
SOURCE = pathlib.Path(__file__).resolve().parent.parent / "Source"

# A function or a class's data; or what C++ keeps for a class.
OWN = re.compile(r"(?:(?:typeinfo|typeinfo name|vtable|VTT|construction vtable) for |(?:non-)?virtual thunk to )?HSVN\w"
                 r"|operator\S+\(.*\bHSVN\w")


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def names(*options):
    """Names of symbols in a C++ programmer's words."""
    return {line.split(maxsplit=2)[-1] if line[0] != " " else line.split(maxsplit=1)[-1]
            for line in output_of("nm", "--demangle", *map(str, options)).splitlines() if re.match(r"[0-9a-f ]{16} \w ", line)}


def declared(pattern, headers):
    return {name for header in SOURCE.glob(headers)
            for name in re.findall(pattern, header.read_text(encoding="utf-8"), re.MULTILINE)}


def is_elf(path):
    with open(path, "rb") as file:
        return file.read(4) == b"\x7fELF"


class SealedLibrary(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.exported = names("-D", "--defined-only", PACKAGE / "libHSVN.so")
        cls.internal = declared(r"^(?:class|struct|namespace) (\w+)$|^(?:class|struct|namespace) (\w+) (?!.*;)",
                                "Internal/*.h")
        cls.internal = {name for pair in cls.internal for name in pair if name}
        cls.internal |= declared(r"^\w[\w:<>&* ]*?\b(HSVN\w+)\(", "Internal/*.h")
        cls.internal -= declared(r"HSVN_EXPORT .*?\b(HSVN\w+)\(", "*.h")

    def test_nothing_leaves_but_the_library_s_own(self):
        self.assertEqual([name for name in self.exported if not OWN.match(name)], [])

    def test_no_internal_class_or_function_leaves(self):
        self.assertIn("HSVNOperation", self.internal)
        self.assertIn("HSVNCurrentEntryPoints", self.internal)
        leaving = {name for name in self.exported for first in re.findall(r"^(?:.* (?:for|to) )?(HSVN\w+)", name)
                   if first in self.internal}
        self.assertEqual(leaving, set())

    def test_every_function_that_stands_in_front_of_another_leaves_its_bundle(self):
        """One that does not is never called, and nothing else shows it."""
        root = SOURCE.parent
        sources = "".join(path.read_text(encoding="utf-8") for path in (root / "Bundles").rglob("*.cpp"))
        leaving = re.findall(r"\b([a-z]\w+);", (root / "cmake/HSVNBundle.map").read_text(encoding="utf-8"))
        self.assertEqual(set(re.findall(r"^HSVN_STAND_IN\([^;{(]*?(\w+)\)", sources, re.MULTILINE)), set(leaving))

    def test_classes_of_exceptions_are_the_same_on_both_sides(self):
        exceptions = declared(r"^(?:class HSVN_EXPORT |HSVN_EXCEPTION\()(\w+Exception)\b", "*.h")
        self.assertGreater(len(exceptions), 20)
        self.assertEqual({name for name in exceptions if f"typeinfo for {name}" not in self.exported}, set())

    def test_what_the_tests_call_is_exported_or_internal(self):
        """They are linked with the library's objects: that a public function misses its HSVN_EXPORT shows nowhere else."""
        objects = list((BUILD / "Tests/CMakeFiles/hsvn_test_cases.dir").rglob("*.o"))
        called = names("--undefined-only", *objects) - names("--defined-only", *objects)
        called = {name for name in called if re.match(r"HSVN|\w+ for HSVN", name)}
        self.assertGreater(len(called), 500)
        hidden = {name for name in called - self.exported
                  if re.match(r"(?:\w+ for )?(HSVN\w+)", name).group(1) not in self.internal}
        self.assertEqual(hidden, set())

    def test_no_static_object_is_destroyed_when_the_process_ends(self):
        """An application's own static objects may use the library in their destructors."""
        folders = ("Source/CMakeFiles/hsvn_objects.dir", "Source/Unicode", "Bundles/CMakeFiles")
        objects = [path for folder in folders for path in (BUILD / folder).rglob("*.o")
                   if path.stem != "HSVNParsedURL.cpp"]  # Boost's own, which hold nothing
        self.assertGreater(len(objects), 20)  # each of up to a dozen sources
        self.assertEqual([str(path) for path in objects if "__cxa_atexit" in output_of("nm", "--undefined-only", path)], [])

    def test_modules_export_what_they_are_known_by(self):
        # Version bundles also what stands in front of their libraries' own functions.
        standing_in = set(re.findall(r"(\w+);", (SOURCE.parent / "cmake/HSVNBundle.map").read_text(encoding="utf-8")))
        modules = [module for module in PACKAGE.glob("**/*.bundle/*.so")]
        self.assertGreater(len(modules), 1)
        for module in modules:
            with self.subTest(module=module.name):
                others = {name for name in names("-D", "--defined-only", module) if not name.startswith("HSVN")}
                self.assertLessEqual(others, standing_in if module.name == "HSVNBundle.so" else set())

    def test_shared_objects_are_searched_for_in_fixed_places(self):
        files = [path for folder in ("bin", "lib", "Tests/Bundles") for path in (BUILD / folder).rglob("*")
                 if path.is_file() and is_elf(path)]
        self.assertGreater(len(files), 5)
        for file in files:
            for places in re.findall(r"\((?:RUN|R)PATH\).*\[(.*)\]", output_of("readelf", "-d", str(file))):
                # An empty place is the current folder of whoever starts the program.
                with self.subTest(file=str(file)):
                    self.assertEqual([place for place in places.split(":") if not place.startswith(("/", "$ORIGIN"))], [])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
