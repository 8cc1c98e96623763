#!/usr/bin/env python3
"""Installs the library into a temporary prefix and builds a program against it out of tree, as a user would.

usage: InstalledPackageTest.py BUILD_FOLDER CXX_COMPILER [extra compiler flag ...]
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD, COMPILER, *FLAGS = sys.argv[1:]

PROGRAM = """
#include <bits/stdc++.h>
#include <unistd.h>
// Names that other people's headers take.
#define min(a, b) ((a) < (b) ? (a) : (b))
#define max(a, b) ((a) < (b) ? (b) : (a))
#define nil nullptr
#define move(y, x) wmove(stdscr, y, x)
#define None 0
#define signals public
#define emit
#include <HSVN/HSVN.h>
int main()
{
    if (chdir("/") != 0) {
        return 2;
    }
    try {
        HSVNInitialize();
    } catch (const HSVNInvalidArgumentException& exception) {
        std::cout << exception.what() << std::endl;
        return 0;
    }
    std::cout << HSVNString::plainASCIIString("caf\\u00e9").value_or("nil") << std::endl;
    auto client = HSVNClient::clientWithDelegate(nullptr);
    std::cout << "line " << client->bundleVersion()->versionWithMajorAndMinorComponents() << std::endl;
    try {
        HSVNDirectory::directoryAtPath(HSVNPath::pathWithString("/no/such/folder"), HSVNRevisionSpec::BASE(), client);
    } catch (const HSVNNoSuchEntryException& exception) {
        std::cout << exception.what() << std::endl;
        return 0;
    }
    return 1;
}
"""

PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(User CXX)
find_package(HSVN QUIET COMPONENTS Missing)
if(HSVN_FOUND)
  message(FATAL_ERROR "A component that is not there was found")
endif()
find_package(HSVN 1.0 REQUIRED)
add_executable(user user.cpp)
target_link_libraries(user PRIVATE HSVN::HSVN)
"""

SURROUNDING_PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(User CXX)
file(WRITE ${PROJECT_BINARY_DIR}/include/own.h "")
add_subdirectory(%s HSVN)
add_executable(user ../user.cpp)
target_link_libraries(user PRIVATE HSVN::HSVN)
if(CMAKE_BUILD_TYPE OR TARGET hsvn_tests OR NOT EXISTS ${PROJECT_BINARY_DIR}/include/own.h)
  message(FATAL_ERROR "The project was changed from within")
endif()
"""


def run(*command, **options):
    done = subprocess.run(command, capture_output=True, text=True, **options)
    if done.returncode:
        raise AssertionError(f"{' '.join(command)} failed:\n{done.stdout}\n{done.stderr}")
    return done.stdout


class InstalledPackage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        top = pathlib.Path(cls.folder.name)
        cls.prefix, cls.work = top / "prefix", top / "work"
        cls.work.mkdir()
        cls.source = cls.work / "user.cpp"
        cls.source.write_text(PROGRAM)
        cls.environment = dict(os.environ, HOME=cls.folder.name, LC_ALL="C.UTF-8",
                               PKG_CONFIG_PATH=str(cls.prefix / "lib/pkgconfig"))
        run("cmake", "--install", BUILD, "--prefix", str(cls.prefix))

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def check_program(self, program, cwd=None, **variables):
        output = run(str(program), env=dict(self.environment, **variables), cwd=cwd)
        self.assertIn("cafe\n", output)
        self.assertRegex(output, r"line 1\.\d+\n")
        self.assertIn("'/no/such/folder' does not exist", output)

    def test_a_program_builds_with_find_package(self):
        (self.work / "CMakeLists.txt").write_text(PROJECT)
        build = self.work / "build"
        run("cmake", "-G", "Ninja", "-S", str(self.work), "-B", str(build), f"-DCMAKE_PREFIX_PATH={self.prefix}",
            f"-DCMAKE_CXX_COMPILER={COMPILER}", f"-DCMAKE_CXX_FLAGS={' '.join(FLAGS)}")
        run("cmake", "--build", str(build))
        self.check_program(build / "user")

    def test_a_project_has_the_library_within_it(self):
        surrounding = self.work / "surrounding"
        surrounding.mkdir()
        (surrounding / "CMakeLists.txt").write_text(SURROUNDING_PROJECT % pathlib.Path(__file__).parents[1])
        run("cmake", "-G", "Ninja", "-S", str(surrounding), "-B", str(surrounding / "build"),
            f"-DCMAKE_CXX_COMPILER={COMPILER}")
        needed = run("ninja", "-C", str(surrounding / "build"), "-t", "inputs", "user")
        self.assertRegex(needed, r"(?m)^HSVN/lib/HSVN/Versions/A/Subversion/.*/HSVNBundle.so$")

    def test_a_program_builds_with_pkg_config(self):
        flags = run("pkg-config", "--cflags", "--libs", "hsvn", env=self.environment).split()
        program = self.work / "user-pkg-config"
        run(COMPILER, "-std=c++20", *FLAGS, str(self.source), *flags, "-o", str(program))
        self.check_program(program)

    def test_a_compiler_that_lacks_what_the_headers_need_is_told_so(self):
        for flag in ("-std=c++17", "-fno-exceptions", "-fno-rtti"):
            done = subprocess.run([COMPILER, "-std=c++20", flag, "-fsyntax-only", f"-I{self.prefix}/include",
                                   str(self.source)], capture_output=True, text=True)
            self.assertRegex(done.stderr[:2000], 'error:? "HSVN .*' + re.escape(flag.replace("17", "20")))

    def test_a_program_finds_the_bundles_beside_the_library_wherever_that_is(self):
        flags = run("pkg-config", "--cflags", "--libs", "hsvn", env=self.environment).split()
        program = self.work / "user-without-path"
        run(COMPILER, "-std=c++20", *FLAGS, str(self.source), *(f for f in flags if "rpath" not in f), "-o",
            str(program))
        # The program changes its folder before it starts the library.
        self.check_program(program, cwd=self.prefix, LD_LIBRARY_PATH="lib/HSVN/Versions/A")
        bare = self.work / "lib/HSVN/Versions/A"
        shutil.copytree(self.prefix / "lib/HSVN/Versions/A", bare, ignore=shutil.ignore_patterns("*.bundle"))
        output = run(str(program), env=dict(self.environment, LD_LIBRARY_PATH=str(bare)))
        self.assertEqual(output, f"There is no bundle of Subversion in '{bare.resolve()}/Subversion'\n")

    def test_public_headers_stand_alone_and_reach_no_subversion_header(self):
        headers = sorted((self.prefix / "include/HSVN").glob("*.h"))
        self.assertGreater(len(headers), 20)
        probe = self.work / "probe.cpp"
        probe.write_text("".join(f"#include <HSVN/{h.name}>\n" for h in reversed(headers)))
        needed = run(COMPILER, "-std=c++20", "-M", f"-I{self.prefix}/include", str(probe))
        self.assertEqual(re.findall(r"\S*/(?:svn|apr|apu)_?\w*\.h|\S*Internal/\S*\.h", needed), [])

    def test_the_package_holds_library_resources_and_bundles(self):
        package = self.prefix / "lib/HSVN/Versions/A"
        self.assertTrue((package / "libHSVN.so.1").exists())
        self.assertTrue((package / "Resources/Scripts/change-svn-wc-format.py").exists())
        self.assertTrue(list(package.glob("Subversion/*.bundle/Info.json")))

    def test_a_copy_of_the_program_finds_its_library_from_anywhere(self):
        copy = self.work / "elsewhere/svn"
        copy.parent.mkdir()
        shutil.copy(self.prefix / "bin/hsvn", copy)
        paths = run("readelf", "-d", str(copy))
        self.assertNotIn(BUILD, paths)
        self.assertRegex(run(str(copy), "--version", "--quiet", env=self.environment), r"^\d+\.\d+\.\d+\n$")

    def test_a_package_without_its_unicode_module_says_so_where_it_is_needed(self):
        module = self.prefix / "lib/HSVN/Versions/A/Unicode.bundle"
        module.rename(self.work / "moved")
        try:
            (self.work / "folder-é").mkdir()
            made = run(str(self.prefix / "bin/hsvn"), "create", "repository-é", env=self.environment, cwd=self.work)
            self.assertEqual(made, "")
            done = subprocess.run([self.prefix / "bin/hsvn", "info", "repository-\u0301"], capture_output=True, text=True,
                                  env=dict(self.environment, LC_ALL="C"), cwd=self.work)
            self.assertIn(f"E020019: '{module}', which", done.stderr)
            self.assertIn("There is no such folder", done.stderr)
            self.assertEqual(done.returncode, 1)
        finally:
            (self.work / "moved").rename(module)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
