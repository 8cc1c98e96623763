#include "HSVNURL.h"

#include "Command.h"
#include "HSVNLocalPath.h"
#include "HSVNParsedURL.h"
#include "HSVNPlatformException.h"
#include "Internal/TrustedText.h"
#include "ReasonOf.h"
#include "TestRepository.h"

#include <ctime>
#include <gtest/gtest.h>
#include <random>

namespace {

HSVNURLRef url(const std::string& text) { return HSVNURL::URLWithString(text); }

std::string urlText(const HSVNPathRef& value) { return value ? value->string() : "nil"; }

} // namespace

struct URLText
{
    std::string given, kept, parent, last, location;
};

class URLTexts : public testing::TestWithParam<URLText>
{
};

TEST_P(URLTexts, KeepNormalizedFormParentAndName)
{
    const auto& expected = GetParam();
    const auto parsed = url(expected.given);
    EXPECT_EQ(parsed->string(), expected.kept);
    EXPECT_EQ(urlText(parsed->parent()), expected.parent);
    EXPECT_EQ(parsed->lastComponent(), expected.last);
    EXPECT_EQ(parsed->location().value_or("nil"), expected.location);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, URLTexts,
    testing::Values(
        URLText{"svn://host/repo/", "svn://host/repo", "svn://host", "repo", "svn://host"},
        URLText{"svn://host/repo//", "svn://host/repo/", "svn://host/repo", "repo", "svn://host/repo"},
        URLText{"svn://h", "svn://h", "nil", "/", "svn://h"}, URLText{"svn://h/", "svn://h", "nil", "/", "svn://h"},
        URLText{"svn://h//", "svn://h/", "svn://h", "/", "svn://h"}, URLText{"svn://", "svn://", "nil", "/", "svn://"},
        URLText{"file:///", "file:///", "nil", "/", "nil"}, URLText{"FILE:///", "FILE:///", "nil", "/", "nil"},
        URLText{"file:///x", "file:///x", "file:///", "x", "file:///"},
        URLText{"svn:///x", "svn:///x", "svn://", "x", "svn://"},
        URLText{" \n\xC2\xA0svn+ssh://joe@h:22/a/b \t", "svn+ssh://joe@h:22/a/b", "svn+ssh://joe@h:22/a", "b",
                "svn+ssh://joe@h:22/a"},
        URLText{"svn://h/a?b#c", "svn://h/a%3Fb%23c", "svn://h", "a%3Fb%23c", "svn://h"},
        URLText{"svn+my_tunnel://[::1]:3690/a%20b", "svn+my_tunnel://[::1]:3690/a%20b", "svn+my_tunnel://[::1]:3690",
                "a%20b", "svn+my_tunnel://[::1]:3690"}));

struct MalformedURL
{
    std::string text, reason;
};

class MalformedURLs : public testing::TestWithParam<MalformedURL>
{
};

TEST_P(MalformedURLs, AreRefusedWithTheirText)
{
    EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([] { url(GetParam().text); }), GetParam().reason);
}

std::vector<MalformedURL> malformedURLs()
{
    std::vector<MalformedURL> urls{{"host/x", "URL does not contain a scheme"},
                                   {"  ", "URL does not contain a scheme"},
                                   {"://host/x", "URL does not contain a scheme"}};
    for (const char* text :
         {"svn://h/a b", "svn://ho st/a", "svn://h/a%zz", "svn://h/a%2", R"(svn://h/")", "svn://h/[x]",
          "svn://h:port/a", "svn://h:65536/a", "svn://h:99999999999999999999/a", "svn://[::1/a", "svn://[g::1]/a",
          "svn://h/\xC3\xA9", "svn://a@b@h/x", "/x/svn://h", "s vn://h", "svn://h/a\x01"})
    {
        urls.push_back({text, "Failed to parse \"" + std::string{text} + "\". URL is probably malformed."});
    }
    urls.push_back({"svn://h/\xFF", R"("svn://h/\xff" is not valid UTF-8 text without NUL characters)"});
    urls.push_back({{"svn://h/\0", 9}, R"("svn://h/\x00" is not valid UTF-8 text without NUL characters)"});
    return urls;
}

INSTANTIATE_TEST_SUITE_P(Texts, MalformedURLs, testing::ValuesIn(malformedURLs()));

TEST(URL, AnEmptyTextOrNilPathIsAFailedPrecondition)
{
    EXPECT_THROW(url(""), HSVNAssertionException);
    EXPECT_THROW(HSVNURL::URLEncodeString(""), HSVNAssertionException);
    EXPECT_THROW(HSVNURL::URLWithPath(nullptr), HSVNAssertionException);
    EXPECT_THROW(HSVNURL::URLWithPath(HSVNLocalPath::pathWithString("/x")), HSVNInvalidArgumentException);
    EXPECT_EQ(*HSVNURL::URLWithPath(url("svn://h/x")), *url("svn://h/x"));
}

TEST(URL, PartsAreReadFromTheText)
{
    const auto full = url("Svn+SSH://jo%40e:secret@[fe80::1]:022/a%2Fb/%C3%A9%3b;x?q#f");
    EXPECT_EQ(full->scheme(), "Svn+SSH");
    EXPECT_TRUE(full->schemeUsesTunnel());
    EXPECT_EQ(full->user(), "jo@e");
    EXPECT_EQ(full->host(), "[fe80::1]");
    EXPECT_EQ(full->port(), 22);
    EXPECT_EQ(full->hostAndScheme(), "Svn+SSH://jo%40e@[fe80::1]:22");
    EXPECT_EQ(full->relativePath(), "/a/b/%C3%A9%3B%3Bx%3Fq%23f");
    EXPECT_EQ(full->denormalizedRelativePath(), "/a/b/\xC3\xA9;;x?q#f");
    const auto file = url("file:///x");
    EXPECT_TRUE(file->isFileURL() && url("FILE:///x")->isFileURL() && !url("files:///x")->isFileURL());
    EXPECT_EQ(file->host(), std::nullopt);
    EXPECT_EQ(file->user(), std::nullopt);
    EXPECT_EQ(url("svn://h:/x")->port(), std::nullopt);
    EXPECT_EQ(file->hostAndScheme(), "file://");
    const auto parsed = HSVNURL::URLWithSubstitutedSchemeForString("svn+x://h/a");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->string(), "scheme://h/a");
    EXPECT_EQ(parsed->scheme(), "scheme");
    EXPECT_EQ(HSVNURL::URLWithSubstitutedSchemeForString("no/scheme")->path(), "no/scheme");
    EXPECT_FALSE(HSVNURL::URLWithSubstitutedSchemeForString("svn://h/a b"));
    EXPECT_FALSE(HSVNURL::URLWithSubstitutedSchemeForString("a:\x1f"));
}

TEST(URL, EscapesThatAreNoTextStayEscapedForPeople)
{
    EXPECT_EQ(url("svn://h/%C3%A9%FF%20%00%C3")->denormalizedString(), "svn://h/\xC3\xA9%FF %00%C3");
    EXPECT_EQ(url("svn://h/a%20b/c%25")->denormalizedLastComponent(), "c%");
    EXPECT_EQ(url("svn://h/a%20b/c")->denormalizedLocation(), "svn://h/a b");
    EXPECT_EQ(url("svn://u@h/%FF%00x")->stripUser()->string(), "svn://h/%FF%00x");
}

TEST(URL, ChildrenAreAddedEscapedOrRaw)
{
    const auto base = url("svn://h/a");
    EXPECT_EQ(base->pathByAddingComponent("/"), base);
    EXPECT_EQ(base->pathByNormalizingAndAddingComponent("/"), base);
    EXPECT_EQ(base->pathByAddingComponent("/b%20c/")->string(), "svn://h/a/b%20c");
    EXPECT_EQ(base->pathByNormalizingAndAddingComponent("b c%?#")->string(), "svn://h/a/b%20c%25%3F%23");
    EXPECT_EQ(url("file:///")->pathByNormalizingAndAddingComponent("x")->string(), "file:///x");
    EXPECT_EQ(url("svn://")->pathByNormalizingAndAddingComponent("h")->string(), "svn://h");
    EXPECT_THROW(base->pathByAddingComponent("b c"), HSVNInvalidArgumentException);
    EXPECT_THROW(url("svn://")->pathByNormalizingAndAddingComponent("h:x"), HSVNInvalidArgumentException);
    EXPECT_THROW(base->pathByNormalizingAndAddingComponent("\xFF"), HSVNInvalidArgumentException);
    EXPECT_THROW(base->pathByAddingComponent(""), HSVNAssertionException);
    EXPECT_THROW(base->pathByNormalizingAndAddingComponent(""), HSVNAssertionException);
    EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([&] { base->pathByAddingComponent("//"); }),
              "Valid component required");
}

TEST(URL, IsBuiltFromItsParts)
{
    EXPECT_EQ(HSVNURL::URLWithScheme("svn", "a@b:c", "h", 3690, "/x")->string(), "svn://a%40b%3ac@h:3690/x");
    EXPECT_EQ(HSVNURL::URLWithScheme("svn", "%/\\ \xC3\xA9?;", "h", std::nullopt, "x")->string(),
              "svn://%25%2f%5c%20%C3%A9%3F;@h/x");
    EXPECT_EQ(HSVNURL::URLWithScheme("file", std::nullopt, std::nullopt, std::nullopt, std::nullopt)->string(),
              "file:///");
    EXPECT_THROW(HSVNURL::URLWithScheme("svn", std::nullopt, "h", -1, "/x"), HSVNInvalidArgumentException);
    const auto base = url("svn://a%40b@h:1/x%20y?q");
    EXPECT_EQ(base->URLWithScheme("http")->string(), "http://a%40b@h:1/x%20y%3Fq");
    EXPECT_EQ(base->URLWithUser("c@d")->string(), "svn://c%40d@h:1/x%20y%3Fq");
    EXPECT_EQ(base->URLWithUser(std::nullopt)->string(), "svn://h:1/x%20y%3Fq");
    EXPECT_EQ(base->URLWithPort(std::nullopt)->string(), "svn://a%40b@h/x%20y%3Fq");
    EXPECT_EQ(url("svn://h/x")->stripUser()->string(), "svn://h/x");
    EXPECT_EQ(url("svn://u:p@[::1]")->stripUser()->string(), "svn://[::1]");
}

struct CanonicalURL
{
    std::string given, canonical;
};

class CanonicalURLs : public testing::TestWithParam<CanonicalURL>
{
};

TEST_P(CanonicalURLs, AreOneTextForOneServer)
{
    EXPECT_EQ(url(GetParam().given)->canonicalize()->string(), GetParam().canonical);
    EXPECT_EQ(url(GetParam().canonical)->canonicalize()->string(), GetParam().canonical);
}

INSTANTIATE_TEST_SUITE_P(Texts, CanonicalURLs,
                         testing::Values(CanonicalURL{"http://joe@h/r", "http://h:80/r"},
                                         CanonicalURL{"HTTPS://h", "HTTPS://h:443"},
                                         CanonicalURL{"http://joe:pw@h:8080/r%20s", "http://h:8080/r%20s"},
                                         CanonicalURL{"svn+ssh://joe@h/r", "svn+ssh://h/r"},
                                         CanonicalURL{"svn+ssh://joe@h:22/r", "svn+ssh://h:22/r"},
                                         CanonicalURL{"nosuch://joe@h/r", "nosuch://joe@h/r"},
                                         CanonicalURL{"nosuch://joe@h:7/r", "nosuch://h:7/r"},
                                         CanonicalURL{"File://LocalHost/r", "file:///r"},
                                         CanonicalURL{"file://localhost/", "file://localhost"},
                                         CanonicalURL{"file:///r", "file:///r"}));

TEST(URL, DefaultPortsAreTheSystems)
{
    EXPECT_EQ(HSVNURL::defaultPortForScheme("HTTP"), 80);
    EXPECT_EQ(HSVNURL::defaultPortForScheme("nosuch"), 0);
    const auto port = HSVNURL::defaultPortForScheme("svn");
    EXPECT_EQ(url("svn://joe@h/r")->canonicalize()->string(),
              port ? "svn://h:" + std::to_string(port) + "/r" : "svn://joe@h/r");
}

TEST(URL, LocalPathsComeFromFileURLsOnly)
{
    EXPECT_EQ(url("file://localhost/a%20b%25")->localPath()->string(), "/a b%");
    for (const auto& [text, reason] :
         std::initializer_list<std::pair<const char*, const char*>>{{"svn://h/x", "URL is not a file:// URL"},
                                                                    {"file://x", "URL is not a valid file URL"},
                                                                    {"file:///%FF", "URL is not a valid file URL"},
                                                                    {"file:///a%00b", "URL is not a valid file URL"}})
    {
        const auto asked = url(text);
        EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([&] { asked->localPath(); }), reason) << text;
    }
}

TEST(URL, EscapesWhatSubversionEscapes)
{
    std::string name = "\xC3\xA9 \xE2\x82\xAC";
    for (char letter = '!'; letter <= '~'; ++letter) {
        name += letter == '/' ? "" : std::string{letter};
    }
    const TestRepository repository;
    const auto file = HSVNLocalPath::pathWithString(repository.checkOut())->pathByAddingComponent(name);
    writeFile(file->string(), "x");
    mustRun({"svn", "add", "-q", file->string() + "@"});
    const auto reported = mustRun({"svn", "info", "--no-newline", "--show-item", "url", file->string() + "@"});
    EXPECT_EQ(url(repository.url())->pathByNormalizingAndAddingComponent(name)->string(), reported);
    EXPECT_EQ(url(reported)->denormalizedLastComponent(), name);
    EXPECT_EQ(HSVNPath::pathWithDenormalizedString(repository.url(name))->string(), reported);
    EXPECT_EQ(file->URL()->localPath()->string(), file->string());
}

namespace {

/// What can be asked of every path, of a long one and one beside it.
void askPath(const HSVNPathRef& path, const HSVNPathRef& other)
{
    for (const auto& text : {path->denormalizedString(), path->lastComponent(), path->denormalizedLastComponent(),
                             path->displayName(), path->description(), path->location().value_or(""),
                             path->denormalizedLocation().value_or(""), path->extension().value_or("")})
    {
        EXPECT_LE(text.size(), path->string().size());
    }
    EXPECT_EQ(path->isDescendentOfPath(other), false);
    path->parent();
    const auto ancestor = path->commonAncestorFor(other);
    ASSERT_NE(ancestor, nullptr);
    EXPECT_EQ(path->pathRelativeTo(ancestor).has_value(), other->pathRelativeTo(ancestor).has_value());
    EXPECT_NE(path->pathWithSymlinksRelativeTo(other), std::nullopt);
    HSVNPath::commonAncestorForPaths({path, other, path});
    path->canonicalize();
    path->stripUser()->user();
    path->resolve();
    path->copy();
    path->cStringUsingEncoding("UTF-16");
    path->compare(other);
    EXPECT_EQ(*path->URL(), *HSVNURL::URLWithPath(path->URL()));
}

/// What can be made with a long text.
void makePaths(const HSVNPathRef& path, const std::string& text)
{
    path->pathByAddingComponent("x" + text);
    path->pathByNormalizingAndAddingComponent("x" + text);
    path->pathByAddingRelativePathWithSymlinks(text);
    path->pathsForChildrenWithLastComponents({"x" + text, "y"});
}

} // namespace

TEST(URL, NoTextTakesMoreThanTimeInProportionToItsLength)
{
    for (const std::string part : {"%", "/", "a/", "../", "%C3%A9", "%2F/", "?/"}) {
        const auto start = std::clock();
        std::string text;
        while (text.size() < 60'000) {
            text += part;
        }
        const auto base = url("svn://joe@h");
        base->URLWithUser(text);
        const auto deep = HSVNURL::URLEncodeString("svn://joe@h/" + text + "x");
        for (const auto& made : {deep, deep->URLWithScheme("http"), deep->URLWithUser("other"), deep->URLWithPort(1)}) {
            made->hostAndScheme();
            made->relativePath();
            made->denormalizedRelativePath();
        }
        deep->pathRelativeTo(base);
        askPath(deep, HSVNURL::URLEncodeString("svn://joe@h/" + text + "y"));
        askPath(HSVNLocalPath::pathWithString("/a/" + text + "x"), HSVNLocalPath::pathWithString("/a/" + text + "y"));
        makePaths(HSVNLocalPath::pathWithString("/a/" + text), text);
        if (part != "%") { // which is no name in a URL
            makePaths(deep, text);
        }
        EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC) << part;
    }
}

TEST(URL, LongPathsAreNoLimit)
{
    auto deep = HSVNPathRef{url("svn://h")};
    for (int depth = 0; depth < 300; ++depth) {
        deep = deep->pathByNormalizingAndAddingComponent(std::string(20, '%'));
    }
    EXPECT_EQ(deep->string().size(), 7U + 300 * 61);
    EXPECT_EQ(urlText(deep->commonAncestorFor(url("svn://h/x"))), "svn://h");
    EXPECT_EQ(url(deep->string())->denormalizedString().size(), 7U + 300 * 21);
}

namespace {

/// A text of random characters out of a few that matter.
std::string randomText(std::mt19937& random, const std::vector<std::string>& alphabet, std::size_t longest)
{
    std::string text;
    for (auto count = 1 + random() % longest; count > 0; --count) {
        text += alphabet[random() % alphabet.size()];
    }
    return text;
}

} // namespace

TEST(URL, RandomTextsAreRefusedOrSound)
{
    std::mt19937 random{4711}; // NOLINT(cert-msc51-cpp): the same cases in every run
    const std::vector<std::string> alphabet{"a",      "b",    "/",  "/",  ":", "@", "%",  "%20", "%2F",  "%00",
                                            "%C3%A9", "[",    "]",  " ",  "?", "#", "~",  "::1", "80",   "\xC3\xA9",
                                            "+",      "\xC3", "\n", "..", ".", ";", "%E", "//",  "file", "://"};
    int accepted = 0;
    for (int round = 0; round < 20000; ++round) {
        const auto text = (round % 2 ? "svn://h/" : "svn://") + randomText(random, alphabet, 8);
        HSVNURLRef parsed;
        try {
            parsed = url(text);
        } catch (const HSVNInvalidArgumentException&) {
            continue;
        }
        ++accepted;
        if (!parsed->string().ends_with('/')) {
            ASSERT_EQ(*url(parsed->string()), *parsed) << text;
        }
        for (auto step = parsed; step; step = step->parent()) {
            ASSERT_NO_THROW(url(step->string())) << text;
            ASSERT_NO_THROW(url(step->canonicalize()->string())) << text;
            ASSERT_NO_THROW(step->hostAndScheme()) << text;
        }
    }
    EXPECT_GT(accepted, 2000);
}

TEST(URL, RandomNamesComeBackFromTheirURL)
{
    std::mt19937 random{1848}; // NOLINT(cert-msc51-cpp): the same cases in every run
    const std::vector<std::string> alphabet{"a", "%", "%41", "?", "#", "[",        "]",         "@",      ":", " ",
                                            "~", ";", "+",   ".", "&", "\xC3\xA9", "e\xCC\x81", "\x01\n", "\\"};
    const auto base = url("svn://joe@[::1]:1/r%20s");
    for (int round = 0; round < 5000; ++round) {
        const auto name = randomText(random, alphabet, 6);
        const auto child = base->pathByNormalizingAndAddingComponent(name);
        ASSERT_EQ(*child, *url(child->string()));
        ASSERT_EQ(*child->parent(), *base);
        ASSERT_EQ(child->denormalizedLastComponent(), name);
        ASSERT_EQ(*HSVNURL::URLEncodeString(child->denormalizedString()), *child);
        ASSERT_EQ(child->URLWithPort(1)->string(), child->string());
        const auto local = HSVNLocalPath::pathWithString("/r s/" + name);
        ASSERT_EQ(local->URL()->localPath()->string(), local->string());
    }
}
