#include "HSVNProperties.h"
#include "Command.h"
#include "HSVNBundleLoader.h"
#include "HSVNEndOfLine.h"
#include "HSVNException.h"
#include "HSVNKeyedArchiver.h"
#include "HSVNKeyedUnarchiver.h"
#include "HSVNLocalPath.h"
#include "HSVNNode.h"
#include "HSVNPropertyNames.h"
#include "HSVNRevision.h"
#include "HSVNStringExternals.h"
#include "HSVNStringPatterns.h"
#include "HSVNURL.h"
#include "ReadingClient.h"
#include "ReasonOf.h"
#include "TestBundles.h"
#include "TestRepository.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// Text tables

TEST(HSVNTextTable, PadsEveryColumnButTheLastAndLeavesEmptyColumnsOut)
{
    HSVNTextTable table{4};
    table.setString("a", 0, 0);
    table.setString("\xC3\xA4\xC3\xB6", 1, 0); // two characters
    table.setString("10", 0, 1);
    table.setString("5", 1, 1);
    table.setString(std::nullopt, 1, 2);
    table.setString("last", 1, 3);
    table.setAlignment(HSVNTextAlignmentRight, 1);
    EXPECT_EQ(table.stringValue(), "a  10 \n\xC3\xA4\xC3\xB6  5 last\n");
    EXPECT_EQ(table.widthForColumn(0), 2U);
    table.setWidth(3, 2);
    EXPECT_EQ(table.stringValue(), "a  10     \n\xC3\xA4\xC3\xB6  5     last\n");
    EXPECT_EQ(HSVNTextTable{3}.stringValue(), "");
    EXPECT_EQ(HSVNTextTable::leftPadString("long", 3), "long");
}

TEST(HSVNTextTable, RefusesPlacesOutsideOfIt)
{
    HSVNTextTable table{2};
    EXPECT_THAT(reasonOf([&] { table.stringAtRow(0, 0); }), HasSubstr("row >= 0 && row < [rows count]"));
    EXPECT_THAT(reasonOf([&] { table.setString("far", std::size_t{1} << 40U, 0); }), HasSubstr("row < 16777216"));
    EXPECT_EQ(table.rowCount(), 0U);
    EXPECT_THAT(reasonOf([&] { table.widthForColumn(2); }), HasSubstr("column >= 0 && column < columns"));
}

// Externals definitions

/// A definition as "source|operative|peg|target".
std::string textOf(const HSVNExternalDefinition& definition)
{
    const auto& revision = *definition.sourceRevision();
    return definition.sourceDirectory() + '|' + revision.operativeRevision()->description() + '|' +
           revision.pegRevision()->description() + '|' + definition.targetDirectory();
}

std::vector<std::string> textsOf(const std::vector<HSVNExternalDefinitionRef>& definitions)
{
    std::vector<std::string> texts;
    for (const auto& definition : definitions) {
        texts.push_back(textOf(*definition));
    }
    return texts;
}

struct ExternalsText
{
    const char* text;
    std::vector<std::string> definitions;
    const char* written; ///< how the library writes the list
};

class ExternalsTexts : public testing::TestWithParam<ExternalsText>
{
};

TEST_P(ExternalsTexts, AreReadAndWrittenInTheOldestFormatThatHoldsThem)
{
    const auto definitions = HSVNString::externalDefinitionListValue(GetParam().text);
    EXPECT_EQ(textsOf(definitions), GetParam().definitions);
    EXPECT_EQ(HSVNString::stringFromExternalDefinitionList(definitions), GetParam().written);
    EXPECT_EQ(HSVNString::stringFromExternalDefinitionList(HSVNString::externalDefinitionListValue(GetParam().written)),
              GetParam().written);
}

TEST_P(ExternalsTexts, KeepTheirMeaningInADictionary)
{
    HSVNProperties properties;
    properties.setExternals(HSVNString::externalDefinitionListValue(GetParam().text));
    EXPECT_EQ(textsOf(properties.externals()), GetParam().definitions);
}

INSTANTIATE_TEST_SUITE_P(
    Spellings, ExternalsTexts,
    testing::Values(ExternalsText{"", {}, ""}, ExternalsText{"# a comment\n\n  \n", {}, ""},
                    ExternalsText{
                        "dir http://h/r\nlonger/dir -r 12 http://h/r/x\nd2 -r3 http://h/y",
                        {"http://h/r|HEAD|HEAD|dir", "http://h/r/x|12|12|longer/dir", "http://h/y|3|3|d2"},
                        "dir             http://h/r\nlonger/dir -r12 http://h/r/x\nd2          -r3 http://h/y\n"},
                    ExternalsText{"http://h/r dir", {"http://h/r|HEAD|HEAD|dir"}, "dir http://h/r\n"},
                    ExternalsText{"http://h/r@5 dir", {"http://h/r|5|5|dir"}, "dir -r5 http://h/r\n"},
                    ExternalsText{"-r 5 http://h/r dir\nhttp://h/x@7 other",
                                  {"http://h/r|5|HEAD|dir", "http://h/x|7|7|other"},
                                  "dir   -r5 http://h/r\nother -r7 http://h/x\n"},
                    ExternalsText{"-r5 ^/a@3 dir\n//host/r d\n/r/x e\n../../y f",
                                  {"^/a|5|3|dir", "//host/r|HEAD|HEAD|d", "/r/x|HEAD|HEAD|e", "../../y|HEAD|HEAD|f"},
                                  "-r5 ^/a@3    dir\n    //host/r d\n    /r/x     e\n    ../../y  f\n"},
                    ExternalsText{"\"with blank\" http://h/r\n'single' http://h/x",
                                  {"http://h/r|HEAD|HEAD|with blank", "http://h/x|HEAD|HEAD|single"},
                                  "\"with blank\" http://h/r\nsingle       http://h/x\n"},
                    ExternalsText{"\"^/a b\" c\\ d", {"^/a b|HEAD|HEAD|c d"}, "\"^/a b\" \"c d\"\n"},
                    ExternalsText{"^/name@x@ dir", {"^/name@x|HEAD|HEAD|dir"}, "^/name@x@ dir\n"},
                    ExternalsText{"-r{2020-01-02T03:04:05Z} ^/a dir",
                                  {"^/a|2020-01-02T03:04:05|HEAD|dir"},
                                  "-r{2020-01-02T03:04:05Z} ^/a dir\n"}));

TEST(HSVNExternalDefinitions, OfTheirOwnAreWrittenSoThatTheyAreReadBack)
{
    const auto definition = [](const char* source, const HSVNRevisionSpecRef& revision, const char* target) {
        return std::make_shared<HSVNExternalDefinition>(source, revision, target);
    };
    const auto five = HSVNRevisionSpec::revisionWithNumber(5);
    const auto atNine = HSVNRevisionSpec::pegRevisionWithNumber(9);
    EXPECT_EQ(HSVNString::stringFromExternalDefinitionList(
                  {definition("http://h/a", five, "one"), definition("http://h/b/c", atNine, "two")}),
              "-r5 http://h/a     one\n    http://h/b/c@9 two\n");
    EXPECT_EQ(HSVNString::formatVersionForExternalDefinition(definition("http://h/a", five, "one")),
              HSVNVersion::version1_4());
    for (const char* name : {"#hash", "a\"b", "it's", "back\\slash", "\t", "a  b"}) {
        for (const char* source : {"http://h/r", "^/r e"}) {
            const auto written =
                HSVNString::stringFromExternalDefinitionList({definition(source, HSVNRevisionSpec::HEAD(), name)});
            EXPECT_THAT(textsOf(HSVNString::externalDefinitionListValue(written)),
                        ElementsAre(std::string{source} + "|HEAD|HEAD|" + name))
                << written;
        }
    }
}

TEST(HSVNExternalDefinitions, ThatCannotBeReadAreClearExceptions)
{
    const auto reason = [](const char* text) {
        return reasonOf<HSVNInvalidExternalsDescriptionException>(
            [&] { HSVNString::externalDefinitionListValue(text); });
    };
    EXPECT_THAT(reason("dir"), HasSubstr("'dir'"));
    EXPECT_THAT(reason("dir -rCOMMITTED http://h/r"), HasSubstr("dir -rCOMMITTED"));
    EXPECT_THAT(reason("dir http://h/r http://h/x more"), HasSubstr("more"));
    EXPECT_THAT(reason("http://h/r ../up"), HasSubstr("'../up' is an absolute path or involves '..'"));
    EXPECT_EQ(reasonOf<HSVNException>([] { HSVNString::externalDefinitionListValue("^/a@b dir"); }),
              "Syntax error parsing peg revision 'b'");
}

TEST(HSVNExternalDefinition, IsAValueThatArchivesKeep)
{
    HSVNExternalDefinition definition{"^/a", HSVNRevisionSpec::revisionWithNumber(3), "dir"};
    const auto copy = definition.copy();
    EXPECT_EQ(*copy, definition);
    EXPECT_EQ(copy->hash(), definition.hash());
    EXPECT_TRUE(definition.isEqual(copy) && definition.isEqualToDefinition(copy));
    EXPECT_FALSE(definition.isEqual(nullptr) || definition.isEqualToDefinition(nullptr));
    EXPECT_THAT(definition.description(), HasSubstr("sourceDirectory: ^/a, sourceRevision: "));
    const auto archived =
        HSVNKeyedUnarchiver::unarchiveObjectWithData(HSVNKeyedArchiver::archivedDataWithRootObject(copy));
    EXPECT_TRUE(definition.isEqual(dynamic_cast<const HSVNExternalDefinition*>(archived.get())));
    definition.sourceRevision()->setPegRevision(HSVNRevision::revisionWithNumber(4));
    EXPECT_NE(*copy, definition) << "the copy shares its revision";
    definition.setSourceRevision(nullptr);
    EXPECT_EQ(textOf(definition), "^/a|UNSPECIFIED|UNSPECIFIED|dir");
}

// Standard properties

TEST(HSVNProperties, GiveStandardPropertiesAsValues)
{
    HSVNProperties properties;
    EXPECT_THAT(properties.keywords(), IsEmpty());
    EXPECT_THAT(properties.externals(), IsEmpty());
    EXPECT_EQ(properties.EOLStyle(), HSVNEndOfLineDefault);
    EXPECT_FALSE(properties.isExecutable() || properties.needsLock());

    properties.setKeywords({"Id", "Date"});
    properties.setIgnore({"a", "a", "", "*.o"});
    properties.setEOLStyle(HSVNEndOfLineCRLF);
    properties.setMIMEType("text/plain");
    properties.setIsExecutable(true);
    properties.setNeedsLock(true);
    properties.setExternals(HSVNString::externalDefinitionListValue("^/a dir"));
    EXPECT_EQ(properties.values(), (HSVNProperties::Map{{HSVNPropertyKeywords, "Id Date"},
                                                        {HSVNPropertyIgnore, "a\n*.o"},
                                                        {HSVNPropertyEOLStyle, "CRLF"},
                                                        {HSVNPropertyMIMEType, "text/plain"},
                                                        {HSVNPropertyIsExecutable, "*"},
                                                        {HSVNPropertyNeedsLock, "*"},
                                                        {HSVNPropertyExternals, "^/a dir\n"}}));
    EXPECT_THAT(properties.ignore(), ElementsAre("a", "*.o"));
    EXPECT_THAT(properties.keywords(), ElementsAre("Id", "Date"));
    EXPECT_THAT(textsOf(properties.externals()), ElementsAre("^/a|HEAD|HEAD|dir"));

    EXPECT_THAT(reasonOf<HSVNInvalidArgumentException>([&] { properties.setEOLStyle("lf"); }), HasSubstr("'lf'"));
    properties.setKeywords({});
    properties.setIgnore({""});
    properties.setEOLStyle(HSVNEndOfLineDefault);
    properties.setMIMEType(std::nullopt);
    properties.setIsExecutable(false);
    properties.setNeedsLock(false);
    properties.setExternals({});
    EXPECT_TRUE(properties.empty());
}

TEST(HSVNString, MatchesIgnorePatterns)
{
    EXPECT_TRUE(HSVNString::matchesPatternInArray("a.o", {"*.lo", "*.o"}));
    EXPECT_TRUE(HSVNString::matchesPatternInArray("file~1", {"*~[0-9]"}));
    EXPECT_FALSE(HSVNString::matchesPatternInArray("a.O", {"*.o"}));
    EXPECT_FALSE(HSVNString::matchesPatternInArray("a", {}));
}

// Properties of working copies and repositories

/// One line's bundle over a working copy of "trunk" with the file "trunk/a", seen by the installed svn too.
class NodeProperties : public testing::TestWithParam<const char*>
{
  protected:
    void SetUp() override
    {
        if (!isNewest()) {
            reading.client->setBundle(bundleOfLine(HSVNVersion::versionWithString(GetParam())));
        }
        repository.makeFolder("trunk");
        repository.put("trunk/a", "one\n");
        wc = HSVNPath::pathWithString(repository.checkOut());
        file = wc->pathByAddingComponent("trunk")->pathByAddingComponent("a");
    }
    void set(const std::string& name, const std::optional<std::string>& value)
    {
        HSVNNode::setProperty(name, value, file, reading.client);
    }
    std::optional<std::string> get(const std::string& name, const HSVNPathRef& path,
                                   const HSVNRevisionSpecRef& revision)
    {
        return HSVNNode::propertyWithName(name, path, revision, reading.client);
    }
    static bool isNewest() { return std::string_view{GetParam()} == ""; }
    HSVNProperties::Map list(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision)
    {
        return HSVNNode::propertiesForNodeAtPath(path, revision, reading.client).values();
    }

    TestRepository repository;
    ReadingClient reading;
    HSVNPathRef wc;
    HSVNPathRef file;
};

TEST_P(NodeProperties, AreSetReadAndListed)
{
    const std::string bytes{"\0\x01\xFF\n", 4};
    EXPECT_THAT(list(file, HSVNRevisionSpec::WORKING()), IsEmpty());
    set("custom:bytes", bytes);
    set("custom:empty", "");
    set("custom:text", "\xC3\xA4\n");
    EXPECT_EQ(mustRun({"svn", "propget", "--strict", "custom:bytes", file->string()}), bytes);
    const HSVNProperties::Map expected{{"custom:bytes", bytes}, {"custom:empty", ""}, {"custom:text", "\xC3\xA4\n"}};
    EXPECT_EQ(list(file, HSVNRevisionSpec::WORKING()), expected);
    EXPECT_EQ(get("custom:bytes", file, HSVNRevisionSpec::WORKING()), bytes);
    EXPECT_EQ(get("custom:bytes", file, HSVNRevisionSpec::BASE()), std::nullopt);
    mustRun({"svn", "commit", "-q", "-m", "", wc->string()});
    set("custom:bytes", std::nullopt);
    EXPECT_EQ(get("custom:bytes", file, HSVNRevisionSpec::WORKING()), std::nullopt);
    EXPECT_EQ(get("custom:bytes", file, HSVNRevisionSpec::BASE()), bytes);

    const HSVNPathRef url = HSVNURL::URLWithString(repository.url("trunk/a"));
    EXPECT_EQ(list(url, HSVNRevisionSpec::HEAD()), expected);
    EXPECT_EQ(get("custom:text", url, HSVNRevisionSpec::revisionWithNumber(3)), "\xC3\xA4\n");
    EXPECT_EQ(get("custom:text", url, HSVNRevisionSpec::revisionWithNumber(2)), std::nullopt);
    repository.change({"rm", "trunk/a"});
    EXPECT_EQ(get("custom:text", url, HSVNRevisionSpec::pegRevisionWithNumber(3)), "\xC3\xA4\n");
}

TEST_P(NodeProperties, HoldPatternsAndDefinitions)
{
    EXPECT_THAT(HSVNNode::ignoredFilenamesForNodeAtPath(wc, HSVNRevisionSpec::WORKING(), reading.client), IsEmpty());
    HSVNNode::setIgnoredFilenames({{"*.o", "b c", "*.o"}}, wc, reading.client);
    EXPECT_EQ(mustRun({"svn", "propget", "--strict", "svn:ignore", wc->string()}), "*.o\nb c\n");
    EXPECT_THAT(HSVNNode::ignoredFilenamesForNodeAtPath(wc, HSVNRevisionSpec::WORKING(), reading.client),
                ElementsAre("*.o", "b c"));
    HSVNNode::setIgnoredFilenames(std::nullopt, wc, reading.client);
    EXPECT_EQ(mustRun({"svn", "proplist", wc->string()}), "");

    HSVNNode::setProperty(HSVNPropertyExternals, "dir " + repository.url("trunk"), wc, reading.client);
    EXPECT_THAT(textsOf(HSVNNode::externalDefinitionsForNodeAtPath(wc, HSVNRevisionSpec::WORKING(), reading.client)),
                ElementsAre(repository.url("trunk") + "|HEAD|HEAD|dir"));
}

TEST_P(NodeProperties, ThatSubversionKeepsAsTextEndTheirLinesInItsWay)
{
    const auto revision = HSVNRevision::revisionWithNumber(1);
    const std::string hook = repository.path() + "/hooks/pre-revprop-change";
    writeFile(hook, "#!/bin/sh\n");
    std::filesystem::permissions(hook, std::filesystem::perms::owner_all);
    const auto change = [&](const std::string& name, const std::string& value) {
        reading.client->setProperty(wc, name, value);
        EXPECT_EQ(get(name, wc, HSVNRevisionSpec::WORKING()), name == "svn:ignore" ? "a\nb\n" : value);
        reading.client->setProperty(wc, name, std::nullopt);
    };
    for (const std::string value : {"a\r\nb\r\n", "a\rb\r", "a\nb\n", "a\r\nb\n"}) {
        const auto set = [&](const char* name) { HSVNNode::setProperty(name, value, wc, reading.client); };
        set("custom");
        EXPECT_EQ(get("custom", wc, HSVNRevisionSpec::WORKING()), value);
        if (value == "a\r\nb\n") { // as svn answers
            EXPECT_EQ(reasonOf<HSVNException>([&] { set("svn:ignore"); }), "Inconsistent line ending style");
            continue;
        }
        set("svn:ignore");
        EXPECT_EQ(get("svn:ignore", wc, HSVNRevisionSpec::WORKING()), "a\nb\n");
        if (isNewest()) {
            change("svn:ignore", value);
            change("custom", value);
            reading.client->setRevisionProperty(repository.url(), "svn:log", value, revision);
            EXPECT_EQ(repository.logMessage(1), "a\nb\n");
        }
    }
}

TEST_P(NodeProperties, NameWhatIsWrong)
{
    writeFile(wc->string() + "/new", "");
    const auto unversioned = wc->pathByAddingComponent("new");
    EXPECT_THAT(reasonOf<HSVNUnversionedResourceException>([&] { list(unversioned, HSVNRevisionSpec::WORKING()); }),
                HasSubstr("new"));
    EXPECT_THAT(reasonOf<HSVNNoSuchEntryException>([&] { get("a", unversioned, HSVNRevisionSpec::WORKING()); }),
                HasSubstr("new"));
    EXPECT_THAT(
        reasonOf<HSVNNoSuchEntryException>([&] { HSVNNode::setProperty("a", "b", unversioned, reading.client); }),
        HasSubstr("new"));
    EXPECT_THAT(reasonOf<HSVNException>([&] { set("svn:eol-style", "wrong"); }), HasSubstr("wrong"));
    EXPECT_THAT(reasonOf<HSVNException>([&] { set("a\nb", "x"); }), HasSubstr("Bad property name"));
    EXPECT_EQ(reasonOf([&] { set("", "x"); }),
              "Invalid parameter not satisfying: propName != nil && [propName length] > 0");
    EXPECT_EQ(reasonOf([&] { get("a", nullptr, HSVNRevisionSpec::HEAD()); }),
              "Invalid parameter not satisfying: path != nil");
    EXPECT_EQ(reasonOf([&] { list(file, nullptr); }), "Invalid parameter not satisfying: revision != nil");
}

INSTANTIATE_TEST_SUITE_P(Lines, NodeProperties, testing::Values("", "1.4", "1.5", "1.6"));

} // namespace
