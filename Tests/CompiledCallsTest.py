#!/usr/bin/env python3
"""Compiles calls as applications write them: those that must compile without a warning, and those that must not compile.

usage: CompiledCallsTest.py BUILD_FOLDER CXX_COMPILER
"""

import subprocess
import sys
import unittest

BUILD, COMPILER = sys.argv[1:3]
WARNINGS = ["-Wall", "-Wextra", "-Wconversion", "-Wshadow", "-Wpedantic", "-Werror"]

# What an application's delegate declares, and the message whose function is then refused; none for one that is accepted.
DELEGATES = {
    "an overload has the message's arguments": (
        "struct A { void notify(int); void notify(HSVNContext&, const HSVNNotificationRef&); };", None),
    "an object that can be called answers": (
        "struct A { std::function<bool(HSVNContext&)> queryContinue; };", None),
    "a final class answers": (
        "struct A final { void notify(HSVNContext&, const HSVNNotificationRef&); };", None),
    "an abstract class answers": (
        "struct A { virtual ~A() = default; virtual bool queryContinue(HSVNContext&) = 0; };", None),
    "other arguments": ("struct A { bool queryContinue(); };", "queryContinue"),
    "references to what is filled in": (
        "struct A { bool promptForLogMessage(HSVNContext&, std::string&, const std::vector<HSVNCommitItemRef>&) const;"
        " bool promptForCredentials(const HSVNContext&, HSVNCredentialsRef, const std::optional<std::string>&, bool&);"
        " bool promptForUsername(HSVNContext&, auto& name, const auto& realm, auto& mayStore); };", None),
    "another result": ("struct A { void queryContinue(HSVNContext&); };", "queryContinue"),
    "only overloads with other arguments": ("struct A { void notify(int); void notify(double); };", "notify"),
    "inherited overloads with other arguments": (
        "struct B { void notify(int); void notify(double); }; struct A : B {};", "notify"),
    "a template with other arguments": ("struct A { template <class T> void notify(T); };", "notify"),
    "a private function": (
        "class A { bool promptForLogMessage(HSVNContext&, std::string&, const std::vector<HSVNCommitItemRef>&); };",
        "promptForLogMessage"),
    "other arguments in a final class": ("struct A final { void notify(int); };", "notify"),
}

# Functions that are given what they are to fill in by value.
LOST_ANSWERS = {
    "promptForLogMessage": ["std::string, const std::vector<HSVNCommitItemRef>&",
                            "const std::string&, std::vector<HSVNCommitItemRef>"],
    "promptForCredentials": ["const HSVNCredentialsRef&, const std::optional<std::string>&, bool"],
    "promptForAuthenticationErrors": [
        "std::uint32_t, const HSVNCertificateRef&, const std::optional<std::string>&, bool, bool"],
    "promptForUsername": ["std::string, const std::optional<std::string>&, bool&",
                          "std::string&, const std::optional<std::string>&, bool"],
    "promptForCertificateFile": ["std::string, const std::optional<std::string>&, bool&"],
    "promptForCertificatePassphrase": ["std::string&, const std::optional<std::string>&, bool"],
}

HANDLERS = {
    "an overload has the message's arguments": (
        "struct A { bool willMoveNodeAtPath(int); bool willMoveNodeAtPath(const HSVNPathRef&, const HSVNPathRef&, bool,"
        " const HSVNContextRef&, void*); };", None),
    "only overloads with other arguments": (
        "struct A { bool willMoveNodeAtPath(int); bool willMoveNodeAtPath(double); };", "willMoveNodeAtPath"),
    "a private function": (
        "class A { int promptToOverwriteNodeAtPath(const HSVNPathRef&, bool, const HSVNContextRef&, void*); };",
        "promptToOverwriteNodeAtPath"),
}

# Calls of a context that compile without a warning.
CALLS = """
#include <HSVN/HSVN.h>
#include <array>
#include <filesystem>
#include <iostream>
#include <set>
void calls(HSVNContext& context, const HSVNContextRef& shared, const HSVNURLRef& url, const std::string& text)
{
    const std::pair<HSVNRevisionRef, HSVNRevisionRef> range{HSVNRevision::BASE(), HSVNRevision::WORKING()};
    context.copy(text, url);
    context.copy("a", "b", {.message = "copied"});
    context.copy(url, text);
    context.copy({text, "b"}, url);
    context.copy({{text, HSVNRevision::HEAD()}}, url);
    context.lock({"a", "b"}, {.steal = true});
    const std::filesystem::path file{text};
    const std::vector<HSVNPathRef> paths{url, HSVNPath::pathWithString(text)};
    context.status(file);
    context.status(std::string_view{text}, {.getAll = true});
    context.status(std::make_shared<HSVNLocalPath>(text));
    context.update(std::set<std::string>{text});
    context.update(std::array{file, file});
    context.revert({file, file});
    context.copy(paths, file);
    context.copy(std::vector{text}, url);
    context.copy(file, url, {.makeParents = true});
    context.checkout(url, file, HSVNRevision::HEAD());
    context.list(url, HSVNRevision::revisionWithNumber(1), {.depth = HSVNDepthInfinity});
    context.contents(text, std::make_shared<HSVNMutableRevisionSpec>(HSVNRevision::BASE()));
    context.info(url, {}, {});
    for (const auto& line : context.blame(url)) { std::cout << line.text; }
    context.blame({url, HSVNRevision::revisionWithNumber(5)}, {}, {}, [](const HSVNBlamedLine&) {});
    context.diff(file, range, {.gitFormat = true, .relativeTo = file});
    HSVNNode::setIgnoredFilenames({"*.o", "built"}, paths.back(), shared);
    HSVNNode::readLogForNodeAtPath(url, std::make_shared<HSVNLogDelegate>(), HSVNLogOptions::defaults(), shared);
    std::string diff = context.diff(text, {range.first, range.second}) + context.diff("a", "b", {.gitFormat = true});
    std::vector<HSVNDifference> items = context.diffSummary(url, range, {.depth = HSVNDepthFiles});
    items = context.diffSummary("a", "b");
    std::vector<HSVNLayoutItem> layout = context.layout(text);
    HSVNConflictedItem{HSVNPath::pathWithString(text), shared};
    HSVNPatch::patchAtPath("~/changes.patch");
    HSVNCreateRepository(url, {.compatibleVersion = HSVNVersion::version1_4()}, shared);
    std::cout << HSVNDate{} << *url << HSVNVersion{1, 4};
}
// Whatever of a record is left out has a value.
HSVNClientSettings settings{.options = {{.category = "config", .section = "auth", .name = "store-passwords"}}};
HSVNDiffSection section{.modified = {.first = 1, .count = 2}};
HSVNConflictRecord conflict{.kind = HSVNConflictKind::Tree};
HSVNItemInfo info{.target = "a"};
HSVNStoredCredential credential{.kind = "svn.simple"};
HSVNBlamedLine line{.number = 1};
// A coder supplies what it offers.
struct : HSVNCoder { bool allowsKeyedCoding() const override { return false; } } coder;
"""


def errors_of(source):
    """What the compiler says of a source; nothing when it compiles."""
    done = subprocess.run([COMPILER, "-std=c++20", "-fsyntax-only", *WARNINGS, f"-I{BUILD}/include", "-x", "c++", "-"],
                          input=source, capture_output=True, text=True)
    return done.stderr if done.returncode else ""


class CompiledCalls(unittest.TestCase):
    def check(self, rows, prefix, instance):
        for title, (declaration, refused) in rows.items():
            with self.subTest(title):
                errors = errors_of(f"{prefix}\n{declaration}\n{instance}\n")
                if refused is None:
                    self.assertEqual(errors, "")
                else:
                    self.assertIn(f"{refused} is not public, or not HSVN", errors)

    def test_a_delegate_that_could_not_be_sent_a_message_of_that_name_does_not_compile(self):
        self.check(DELEGATES, "#include <functional>\n#include <HSVN/HSVNClientDelegate.h>",
                   "template class HSVNClientDelegateOf<A>;")

    def test_a_delegate_that_takes_by_value_what_it_is_to_fill_in_does_not_compile(self):
        for message, lists in LOST_ANSWERS.items():
            for parameters in lists:
                with self.subTest(message, parameters=parameters):
                    errors = errors_of("#include <HSVN/HSVNClientDelegate.h>\n"
                                       f"struct A {{ bool {message}(HSVNContext&, {parameters}); }};\n"
                                       "template class HSVNClientDelegateFor<A>;\n")
                    self.assertIn(f"{message} takes by value what it is to fill in", errors)

    def test_a_handler_that_could_not_be_sent_a_message_of_that_name_does_not_compile(self):
        self.check(HANDLERS, "#include <HSVN/HSVNMoveHandler.h>", "template class HSVNMoveHandlerFor<A>;")

    def test_calls_with_what_an_application_has_at_hand_compile_without_a_warning(self):
        self.assertEqual(errors_of(CALLS), "")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
