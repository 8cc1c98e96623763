#include "HSVNKeyedArchiver.h"
#include "HSVNKeyedUnarchiver.h"
#include "HSVNLocalPath.h"
#include "HSVNParsedURL.h"
#include "HSVNPathArray.h"
#include "HSVNPathWithRevision.h"
#include "HSVNPlatformException.h"
#include "HSVNRevision.h"
#include "HSVNStringPaths.h"
#include "HSVNURL.h"
#include "Internal/Subversion.h"
#include "ReasonOf.h"
#include "SequentialCoder.h"
#include "TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <random>
#include <unistd.h>

using testing::ElementsAre;

namespace {

HSVNPathRef path(const std::string& text) { return HSVNPath::pathWithString(text); }

std::string textOf(const HSVNPathRef& value) { return value ? value->string() : "nil"; }

/// A path class that supplies nothing.
class BarePath : public HSVNPath
{
  public:
    std::string className() const override { return "BarePath"; }

  private:
    HSVNPathRef freshCopy() const override { return std::make_shared<BarePath>(); }
};

/// Sets an environment variable for a scope; null removes it.
class ScopedVariable
{
  public:
    ScopedVariable(const char* name, const char* value) : _name{name}
    {
        if (const char* old = std::getenv(name)) {
            _old = old;
        }
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    ~ScopedVariable() { _old ? setenv(_name, _old->c_str(), 1) : unsetenv(_name); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

  private:
    const char* _name;
    std::optional<std::string> _old;
};

} // namespace

struct LocalText
{
    std::string given, kept, parent, last, shown;
};

class LocalPathTexts : public testing::TestWithParam<LocalText>
{
};

TEST_P(LocalPathTexts, KeepNormalizedFormParentAndName)
{
    const ScopedVariable home{"HOME", "/home/ann/"};
    const auto& expected = GetParam();
    const auto local = HSVNLocalPath::pathWithString(expected.given);
    EXPECT_EQ(local->string(), expected.kept);
    EXPECT_EQ(textOf(local->parent()), expected.parent);
    EXPECT_EQ(local->location().value_or("nil"), expected.parent);
    EXPECT_EQ(local->lastComponent(), expected.last);
    EXPECT_EQ(local->denormalizedString(), expected.shown);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, LocalPathTexts,
    testing::Values(LocalText{"/", "/", "nil", "/", "/"}, LocalText{"/Users/x/", "/Users/x", "/Users", "x", "/Users/x"},
                    LocalText{"/a//", "/a/", "/", "a", "/a/"}, LocalText{"/a//b", "/a//b", "/a", "b", "/a//b"},
                    LocalText{"~", "/home/ann", "/home", "ann", "~"}, LocalText{"~/", "/home/ann", "/home", "ann", "~"},
                    LocalText{"~/a b", "/home/ann/a b", "/home/ann", "a b", "~/a b"},
                    LocalText{"/home/anna", "/home/anna", "/home", "anna", "/home/anna"},
                    LocalText{"/x/~", "/x/~", "/x", "~", "/x/~"},
                    LocalText{"~nosuchuser/x", "~nosuchuser/x", "~nosuchuser", "x", "~nosuchuser/x"},
                    LocalText{"lone", "lone", "nil", "lone", "lone"},
                    LocalText{"/tmp/\xC3\xA9 %41?#", "/tmp/\xC3\xA9 %41?#", "/tmp", "\xC3\xA9 %41?#",
                              "/tmp/\xC3\xA9 %41?#"}));

TEST(LocalPath, FindsTheHomeDirectoryInTheUserDatabaseWhenTheEnvironmentHasNone)
{
    const passwd* user = getpwuid(getuid());
    ASSERT_NE(user, nullptr);
    const std::string home = user->pw_dir;
    for (const char* useless : {static_cast<const char*>(nullptr), "", "not/absolute"}) {
        const ScopedVariable variable{"HOME", useless};
        EXPECT_EQ(path("~/x")->string(), home + "/x");
    }
    EXPECT_EQ(path("~" + std::string{user->pw_name})->string(), home);
    const ScopedVariable variable{"HOME", "/"};
    EXPECT_EQ(path("~")->string(), "/");
    EXPECT_EQ(path("~/x")->denormalizedString(), "/x");
}

TEST(LocalPath, JoinsComponentsAsTheyAre)
{
    const auto base = HSVNLocalPath::pathWithString("/a");
    EXPECT_EQ(base->pathByAddingComponent("/"), base);
    for (const auto& [component, joined] : std::initializer_list<std::pair<const char*, const char*>>{
             {"b", "/a/b"}, {"/b", "/a/b"}, {"~", "/a/~"}, {"b/", "/a/b/"}, {"b c/d", "/a/b c/d"}, {"//", "/a"}})
    {
        EXPECT_EQ(base->pathByAddingComponent(component)->string(), joined);
        EXPECT_EQ(base->pathByNormalizingAndAddingComponent(component)->string(), joined);
    }
    EXPECT_EQ(HSVNLocalPath::fileSystemRoot()->pathByAddingComponent("b")->string(), "/b");
    EXPECT_EQ(HSVNLocalPath::fileSystemRoot(), HSVNLocalPath::fileSystemRoot());
    EXPECT_THAT(HSVNArray::arrayWithStringsOfPaths(base->pathsForChildrenWithLastComponents({"z", "y"})),
                ElementsAre("/a/z", "/a/y"));
}

TEST(LocalPath, AnUnusableTextIsRefusedByName)
{
    EXPECT_EQ(reasonOf<HSVNAssertionException>([] { path(""); }),
              "Invalid parameter not satisfying: string != nil && [string length] > 0");
    EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([] { path("/a\xFF"); }),
              "\"/a\\xff\" is not valid UTF-8 text without NUL characters");
    EXPECT_THROW(path(std::string("/a\0b", 4)), HSVNInvalidArgumentException);
    EXPECT_THROW(path("/a")->pathByAddingComponent("\xC3"), HSVNInvalidArgumentException);
    EXPECT_THROW(path("/a")->pathByAddingComponent(""), HSVNAssertionException);
    EXPECT_THROW(path("lone")->URL(), HSVNInvalidArgumentException);
}

TEST(LocalPath, ResolvesALinkWhereverItLeads)
{
    const TemporaryFolder folder;
    const auto link = [&](const std::string& name, const std::string& destination) {
        std::filesystem::create_symlink(destination, folder / name);
        return HSVNLocalPath::pathWithString(folder / name);
    };
    std::filesystem::create_directories(folder.path() / "real/inner");
    link("alias", folder / "real");
    const std::vector<std::pair<HSVNLocalPathRef, std::string>> links{
        {link("relative", "alias/inner"), folder / "real/inner"},
        {link("absolute", folder / "alias"), folder / "real"},
        {link("dangling", "alias/../none"), folder / "none"},
        {link("loop", "loop"), folder / "loop"}};
    for (const auto& [given, expected] : links) {
        bool wasLink = false;
        EXPECT_EQ(given->resolve(&wasLink)->string(), expected);
        EXPECT_TRUE(wasLink) << given->string();
    }
    for (const char* name : {"real", "missing", "relative/../real"}) {
        const auto plain = path(folder / name);
        bool wasLink = true;
        EXPECT_EQ(plain->resolve(&wasLink), plain);
        EXPECT_FALSE(wasLink) << name;
    }
    EXPECT_EQ(reasonOf<HSVNAssertionException>([] { path("/a")->resolve(nullptr); }),
              "Invalid parameter not satisfying: wasLink != nil");
}

struct Relation
{
    std::string path, base;
    bool isBelow;
    std::string relative, withLinks, ancestor;
};

class PathRelations : public testing::TestWithParam<Relation>
{
};

TEST_P(PathRelations, AnswerWayAndAncestor)
{
    const ScopedVariable home{"HOME", "/home/ann"};
    const auto& expected = GetParam();
    const auto item = path(expected.path);
    const auto base = path(expected.base);
    EXPECT_EQ(item->isDescendentOfPath(base), expected.isBelow);
    EXPECT_EQ(item->isEqualToPathOrDescendentOf(base), expected.isBelow || expected.path == expected.base);
    EXPECT_EQ(item->pathRelativeTo(base).value_or("nil"), expected.relative);
    EXPECT_EQ(item->pathWithSymlinksRelativeTo(base).value_or("nil"), expected.withLinks);
    EXPECT_EQ(textOf(item->commonAncestorFor(base)), expected.ancestor);
}

INSTANTIATE_TEST_SUITE_P(Paths, PathRelations,
                         testing::Values(Relation{"/a/b/c", "/a", true, "/b/c", "./b/c", "/a"},
                                         Relation{"/ab", "/a", false, "nil", "../ab", "/"},
                                         Relation{"/a", "/a", false, "", ".", "/a"},
                                         Relation{"/a/b/c", "/", false, "/a/b/c", "/a/b/c", "/"},
                                         Relation{"/a/x", "/a/b/c", false, "nil", "../../x", "/a"},
                                         Relation{"/a", "/a/b", false, "nil", "..", "/a"},
                                         Relation{"/home/ann/b", "/home", true, "/ann/b", "./ann/b", "/home"},
                                         Relation{"/home/ann/b", "/home/ann", true, "/b", "./b", "/home/ann"},
                                         Relation{"svn://h/r/a%20b", "svn://h/r", true, "/a b", "./a b", "svn://h/r"},
                                         Relation{"svn://h/r", "svn://h", true, "/r", "./r", "svn://h"},
                                         Relation{"svn://h/r", "svn://g/r", false, "nil", "nil", "nil"},
                                         Relation{"file:///x", "file:///y/z", false, "nil", "../../x", "file:///"},
                                         Relation{"/a", "svn://h/a", false, "nil", "../../a", "/"}));

TEST(Path, ARelativeTextLeadsUpAndDownUntilTheTop)
{
    const auto base = path("/a/b");
    for (const auto& [text, expected] : std::initializer_list<std::pair<const char*, const char*>>{
             {"", "/a/b"}, {"./c//d/", "/a/b/c/d"}, {"../x", "/a/x"}, {"../..", "/"}, {"../../../x", "nil"}})
    {
        EXPECT_EQ(textOf(base->pathByAddingRelativePathWithSymlinks(text)), expected) << text;
    }
    EXPECT_EQ(textOf(path("svn://h/a")->pathByAddingRelativePathWithSymlinks("../b")), "svn://h/b");
}

TEST(Path, TheCommonAncestorOfManyIsFoundInOrder)
{
    EXPECT_EQ(HSVNPath::commonAncestorForPaths({}), nullptr);
    EXPECT_EQ(textOf(HSVNPath::commonAncestorForPaths({path("/a/b/c"), path("/a/b/d"), path("/a/e/f")})), "/a");
    EXPECT_EQ(HSVNPath::commonAncestorForPaths({path("svn://h/a"), path("svn://g/a"), path("svn://h/a")}), nullptr);
    EXPECT_EQ(reasonOf<HSVNAssertionException>([] { path("/a")->commonAncestorFor(nullptr); }),
              "Invalid parameter not satisfying: thePath != nil");
    EXPECT_EQ(reasonOf<HSVNAssertionException>([] { path("svn://h")->commonAncestorFor(nullptr); }),
              "Invalid parameter not satisfying: path != nil");
}

TEST(Path, ANameToShowTellsATrunkFromOtherTrunks)
{
    for (const auto& [text, name] :
         std::initializer_list<std::pair<const char*, const char*>>{{"/x/proj/trunk", "proj/trunk"},
                                                                    {"/trunk", "/trunk"},
                                                                    {"svn://h/my%20proj/tags", "my proj/tags"},
                                                                    {"svn://h/branches", "/branches"},
                                                                    {"trunk", "trunk"},
                                                                    {"/x/Trunk", "Trunk"}})
    {
        EXPECT_EQ(path(text)->displayName(), name);
    }
    EXPECT_EQ(path("/a.b/c")->extension(), std::nullopt);
    EXPECT_EQ(path("/a/b.tar.gz")->extension(), "gz");
    EXPECT_EQ(path("/a/.profile")->extension(), "profile");
    EXPECT_EQ(path("/a/b.")->extension(), "");
}

TEST(Path, EqualityHashAndOrderUseTheNormalizedText)
{
    const auto a = path("/a");
    EXPECT_TRUE(a->isEqual(path("/a/")) && a->isEqual(std::string{"/a"}) && a->isEqualToString("/a"));
    EXPECT_FALSE(a->isEqual(path("/A")) || a->isEqual(nullptr) || a->isEqual("/a/"));
    EXPECT_FALSE(a->isEqualToString(std::nullopt) || a->isEqualToPath(nullptr));
    EXPECT_EQ(a->hash(), path("/a/")->hash());
    EXPECT_EQ(a->compare(nullptr), HSVNOrderedDescending);
    EXPECT_EQ(a->compare(path("/a/b")), HSVNOrderedAscending);
    EXPECT_EQ(a->compare(a->copy()), HSVNOrderedSame);
    EXPECT_LT(*a, *path("/b"));
    EXPECT_NE(a->copy(), a);
    EXPECT_EQ(a->copy()->className(), "HSVNLocalPath");
}

TEST(Path, WhatNoClassSuppliesIsAnUnrecognisedOperation)
{
    EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([] { path("/a")->pathAndFile(); }),
              "[HSVNLocalPath pathAndFile]: unrecognised operation");
    EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([] { (void)path("svn://h")->isRoot(); }),
              "[HSVNURL isRoot]: unrecognised operation");
    const BarePath bare;
    EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([&] { (void)bare.string(); }),
              "[BarePath string]: unrecognised operation");
    EXPECT_THROW(bare.denormalizedLocation(), HSVNInvalidArgumentException);
    EXPECT_THROW(bare.pathByAddingComponent("x"), HSVNInvalidArgumentException);
    EXPECT_THROW(bare.parent(), HSVNInvalidArgumentException);
}

TEST(Path, AnotherEncodingAnswersNilForWhatItLacks)
{
    EXPECT_EQ(path("/\xC3\xA9")->cStringUsingEncoding("ISO-8859-1"), "/\xE9");
    EXPECT_EQ(path("/\xE2\x82\xAC")->cStringUsingEncoding("ISO-8859-1"), std::nullopt);
    EXPECT_EQ(path("/\xE2\x82\xAC")->cStringUsingEncoding("UTF-8"), "/\xE2\x82\xAC");
    EXPECT_STREQ(path("/\xC3\xA9")->cString(), "/\xC3\xA9");
    EXPECT_THROW(path("/a")->cStringUsingEncoding("no-such-encoding"), HSVNInvalidArgumentException);
}

TEST(Path, ArchivesKeepTheTextAsItIs)
{
    for (const HSVNPathRef& original : {path("/a")->pathByAddingComponent("b/"), path("svn+ssh://joe@h/a%20b")}) {
        const auto data = HSVNKeyedArchiver::archivedDataWithRootObject(original);
        const auto decoded = std::dynamic_pointer_cast<HSVNPath>(HSVNKeyedUnarchiver::unarchiveObjectWithData(data));
        ASSERT_NE(decoded, nullptr);
        EXPECT_EQ(*decoded, *original);
        EXPECT_EQ(decoded->className(), original->className());
        SequentialCoder sequential;
        EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([&] { original->encodeWithCoder(&sequential); }),
                  "Keyed archiver required");
    }
    SequentialCoder sequential;
    EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([&] { HSVNLocalPath{&sequential}; }), "Keyed unarchiver required");
    EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([&] { HSVNURL{&sequential}; }), "Keyed unarchiver required");
}

TEST(PathWithRevision, NeedsAPathButNoRevision)
{
    const auto pair = HSVNPathWithRevision::path(path("/a"), HSVNRevision::HEAD());
    EXPECT_EQ(pair->description(), "{ " + pair->objectDescription() + " path: /a, revision: HEAD }");
    EXPECT_THAT(HSVNPathWithRevision(path("/a"), nullptr).description(), testing::EndsWith("revision: (null) }"));
    EXPECT_EQ(reasonOf<HSVNAssertionException>([] { HSVNPathWithRevision(nullptr, HSVNRevision::HEAD()); }),
              "Invalid parameter not satisfying: thePath != nil");
}

TEST(PathArray, ConvertsListsInOrder)
{
    const auto paths = HSVNArray::arrayWithPathsForStrings({"/b", "svn://joe@h/a%20b", "svn://h:1/c", "/a"});
    EXPECT_THAT(HSVNArray::arrayWithStringsOfPaths(paths), ElementsAre("/b", "svn://joe@h/a%20b", "svn://h:1/c", "/a"));
    EXPECT_THAT(HSVNArray::arrayWithLastPathComponents(paths), ElementsAre("b", "a%20b", "c", "a"));
    EXPECT_THAT(HSVNArray::arrayWithDenormalizedLastPathComponents(paths), ElementsAre("b", "a b", "c", "a"));
    EXPECT_THAT(HSVNArray::arrayWithStringsOfPaths(HSVNArray::arrayWithPathsStrippedOfUsers(paths)),
                ElementsAre("/b", "svn://h/a%20b", "svn://h:1/c", "/a"));
    EXPECT_THAT(HSVNArray::arrayWithStringsOfPaths(HSVNArray::arrayWithCanonicalPaths({paths[0], paths[2]})),
                ElementsAre("/b", "svn://h:1/c"));
    const auto parsed = HSVNArray::arrayWithNSURLsForPaths(paths);
    EXPECT_EQ(parsed[0].string(), "file:///b");
    EXPECT_EQ(parsed[1].user(), "joe");
    std::vector<std::string> servers;
    for (const auto& server : HSVNArray::arrayWithUniqueHostURLsOfPaths(
             HSVNArray::arrayWithPathsForStrings({"svn://h/a", "svn://h/b", "svn://a%40b@h/b", "/x", "/y"})))
    {
        servers.push_back(server->string());
    }
    EXPECT_THAT(servers, testing::UnorderedElementsAre("svn://h", "svn://a%40b@h", "file://"));
    EXPECT_THROW(HSVNArray::arrayWithStringsOfPaths({nullptr}), HSVNAssertionException);
}

TEST(HSVNStringPaths, SaysTextsInASCII)
{
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases{
        {"plain", "plain"},
        {"caf\xC3\xA9 \xC5\x82", "cafe {U+0142}"}, // an accent goes, a letter of its own is numbered
        {"\xE2\x80\x98x\xE2\x80\x99 \xE2\x80\x93\xC2\xA0y", "'x' - y"}, // quotation marks, a dash, a hard blank
        {"\xF0\x9F\x98\x80", "{U+01F600}"},
        {"cut \xC3", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(HSVNString::plainASCIIString(text), expected) << text;
    }
}

TEST(StringPaths, ConvertAtTheBoundary)
{
    const svn_string_t string{"a\0b c", 4};
    EXPECT_EQ(HSVNString::stringWithSVNString(&string), std::string("a\0b ", 4));
    EXPECT_EQ(HSVNString::stringByURLEncodingSpaces(" a b%"), "%20a%20b%");
    EXPECT_EQ(HSVNString::stringByReplacingCharactersInSet("a/b\\\xC3\xA9\xC3\xA8", "/\\\xC3\xA8", "_"),
              "a_b_\xC3\xA9_");
}

TEST(Path, RandomRelationsHoldBothWays)
{
    std::mt19937 random{20240}; // NOLINT(cert-msc51-cpp): the same cases in every run
    const auto below = [&random](unsigned limit) { return static_cast<std::size_t>(random() % limit); };
    for (int round = 0; round < 2000; ++round) {
        const std::string names[] = {"a", "b", "ab", "\xC3\xA9", "x y"};
        HSVNPathRef item = HSVNLocalPath::fileSystemRoot();
        HSVNPathRef base = item;
        for (auto depth = below(6); depth > 0; --depth) {
            item = item->pathByAddingComponent(names[below(5)]);
        }
        for (auto depth = below(6); depth > 0; --depth) {
            base = base->pathByAddingComponent(names[below(5)]);
        }
        const auto ancestor = item->commonAncestorFor(base);
        ASSERT_EQ(textOf(ancestor), textOf(base->commonAncestorFor(item)));
        const auto way = item->pathWithSymlinksRelativeTo(base);
        ASSERT_TRUE(way) << *item << " from " << *base;
        ASSERT_EQ(textOf(base->pathByAddingRelativePathWithSymlinks(*way)), item->string()) << *base;
    }
}
