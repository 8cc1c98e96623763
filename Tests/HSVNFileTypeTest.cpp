#include "Command.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNNode.h"
#include "HSVNPackage.h"
#include "HSVNRevision.h"
#include "HSVNTypeRegistry.h"
#include "HSVNURL.h"
#include "ReadingClient.h"
#include "ReasonOf.h"
#include "TestBundles.h"
#include "TestRepository.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string binaryBytes{"\x7F\0\1\2\3\xFF\xFE", 7};

std::string typeOfExtension(const std::string& extension, const char* conformingTo = HSVNTypeItem)
{
    return HSVNTypeRegistry::sharedRegistry().preferredIdentifierForTag(HSVNTypeTagClass::filenameExtension, extension,
                                                                        conformingTo);
}

std::string typeOfMIMEType(const std::string& type, const char* conformingTo = HSVNTypeData)
{
    return HSVNTypeRegistry::sharedRegistry().preferredIdentifierForTag(HSVNTypeTagClass::MIMEType, type, conformingTo);
}

/// A working copy with items of every sort, read through one Subversion line.
class NodeTypeTest : public testing::TestWithParam<const char*>
{
  protected:
    static void SetUpTestSuite()
    {
        repository = std::make_unique<TestRepository>();
        workingCopy = repository->checkOut();
        for (const char* name : {"plain", "page.html", "odd.no-such-extension", "dot."}) {
            addFile(name, "some text\n", nullptr);
        }
        addFile("binary", binaryBytes, nullptr);
        addFile("picture", "text", "image/png");
        addFile("parameters", "text", "text/html; charset=utf-8");
        addFile("unknown text", "text", "text/x-no-such-type");
        addFile("unknown", "text", "application/x-no-such-type");
        addFile("octets", "text", "application/octet-stream");
        addFile("looks like.png", "text", "text/html");
        std::filesystem::create_directory(workingCopy + "/folder");
        std::filesystem::create_directory(workingCopy + "/folder.html");
        mustRun({"svn", "add", "-q", workingCopy + "/folder", workingCopy + "/folder.html"});
        mustRun({"svn", "commit", "-q", "-m", "", workingCopy});
        writeFile(workingCopy + "/unversioned", "text\n");
        writeFile(workingCopy + "/unversioned binary", binaryBytes);
        std::filesystem::create_directory(workingCopy + "/unversioned folder");
    }
    static void TearDownTestSuite() { repository.reset(); }

    static void addFile(const std::string& name, const std::string& bytes, const char* mimeType)
    {
        writeFile(workingCopy + '/' + name, bytes);
        mustRun({"svn", "add", "-q", "--no-auto-props", workingCopy + '/' + name});
        for (const char* property : {"svn:mime-type", "svn:executable"}) {
            mustRun({"svn", "propdel", "-q", property, workingCopy + '/' + name});
        }
        if (mimeType) {
            mustRun({"svn", "propset", "-q", "svn:mime-type", mimeType, workingCopy + '/' + name});
        }
    }
    static HSVNLocalPathRef local(const std::string& name)
    {
        return HSVNLocalPath::pathWithString(workingCopy)->pathByAddingComponent(name);
    }
    static HSVNURLRef remote(const std::string& name)
    {
        return HSVNURL::URLWithString(repository->url())->pathByNormalizingAndAddingComponent(name);
    }
    std::string typeOf(const HSVNPathRef& path, const HSVNLocalPathRef& localFile = nullptr,
                       HSVNNodeKind kind = HSVNNodeKindUnknown) const
    {
        const auto& revision =
            dynamic_cast<const HSVNURL*>(path.get()) ? HSVNRevision::HEAD() : HSVNRevision::WORKING();
        return HSVNNode::UTIForNodeAtPath(path, revision, localFile, kind, reading.client);
    }

    static inline std::unique_ptr<TestRepository> repository;
    static inline std::string workingCopy;
    ReadingClient reading{std::string_view{GetParam()} == "installed"
                              ? nullptr
                              : bundleOfLine(HSVNVersion::versionWithString(GetParam()))};
};

INSTANTIATE_TEST_SUITE_P(Lines, NodeTypeTest, testing::Values("1.4", "1.5", "1.6", "installed"));

} // namespace

TEST_P(NodeTypeTest, LocalItemsHaveTheTypeOfTheFirstRuleThatAnswers)
{
    for (const auto& [name, type] :
         std::initializer_list<std::pair<const char*, const char*>>{{"plain", "public.text"},
                                                                    {"page.html", "public.html"},
                                                                    {"odd.no-such-extension", "public.text"},
                                                                    {"dot.", "public.text"},
                                                                    {"binary", "public.data"},
                                                                    {"picture", "public.png"},
                                                                    {"parameters", "public.html"},
                                                                    {"unknown text", "public.text"},
                                                                    {"octets", "public.data"},
                                                                    {"looks like.png", "public.png"},
                                                                    {"folder", "public.directory"},
                                                                    {"folder.html", "public.html"},
                                                                    {"unversioned", "public.text"},
                                                                    {"unversioned binary", "public.data"},
                                                                    {"unversioned folder", "public.directory"}})
    {
        EXPECT_EQ(typeOf(local(name)), type) << name;
    }
    EXPECT_THAT(typeOf(local("unknown")), StartsWith("dyn."));
    EXPECT_EQ(typeOf(local("folder.html"), nullptr, HSVNNodeKindDirectory), "public.directory");
    EXPECT_EQ(HSVNNode::UTIForNodeAtPath(local("binary"), HSVNRevision::BASE(), reading.client), "public.data");
}

TEST_P(NodeTypeTest, RepositoryItemsAreAskedForTheirKindOnly)
{
    EXPECT_EQ(typeOf(remote("folder")), "public.directory");
    EXPECT_EQ(typeOf(remote("folder.html")), "public.html");
    EXPECT_EQ(typeOf(remote("binary")), "public.text") << "its content and properties are not read";
    EXPECT_EQ(typeOf(remote("picture")), "public.text");
    EXPECT_EQ(typeOf(remote("nothing"), local("binary")), "public.data") << "the local copy answers for it";
    EXPECT_EQ(typeOf(remote("nothing"), local("folder")), "public.directory");
    EXPECT_EQ(typeOf(remote("nothing"), nullptr, HSVNNodeKindFile), "public.text") << "nobody is asked";
    EXPECT_THROW(typeOf(remote("nothing")), HSVNException);
}

TEST_P(NodeTypeTest, ContentTellsTheMIMEType)
{
    EXPECT_EQ(HSVNNode::MIMETypeForNodeAtPath(local("binary"), reading.client), "application/octet-stream");
    EXPECT_EQ(HSVNNode::MIMETypeForNodeAtPath(local("picture"), reading.client), std::nullopt);
    EXPECT_THROW(HSVNNode::MIMETypeForNodeAtPath(local("missing"), reading.client), HSVNException);
    EXPECT_THROW(typeOf(local("missing")), HSVNException);
    EXPECT_EQ(reasonOf<HSVNAssertionException>([] { HSVNNode::MIMETypeForNodeAtPath(nullptr, nullptr); }),
              "Invalid parameter not satisfying: path != nil");
}

TEST(NodeType, NilArgumentsAreFailedPreconditionsInTheirOrder)
{
    const auto path = HSVNPath::pathWithString("/x.html");
    const auto reason = [](const HSVNPathRef& item, const HSVNRevisionRef& revision) {
        return reasonOf<HSVNAssertionException>([&] { HSVNNode::UTIForNodeAtPath(item, revision, nullptr); });
    };
    EXPECT_EQ(reason(nullptr, nullptr), "Invalid parameter not satisfying: path != nil");
    EXPECT_EQ(reason(path, nullptr), "Invalid parameter not satisfying: revision != nil");
    EXPECT_EQ(reason(path, HSVNRevision::HEAD()), "Invalid parameter not satisfying: context != nil");
    EXPECT_EQ(reasonOf<HSVNAssertionException>([] { HSVNNode::isTextMIMEType(std::nullopt); }),
              "Invalid parameter not satisfying: mimeType != nil");
}

TEST(NodeType, TextAndDynamicTypesAreToldByTheirBeginning)
{
    EXPECT_TRUE(HSVNNode::isTextMIMEType("text/") && HSVNNode::isTextMIMEType("text/x"));
    EXPECT_FALSE(HSVNNode::isTextMIMEType("text") || HSVNNode::isTextMIMEType("application/text/"));
    EXPECT_TRUE(HSVNNode::isDynamicUTI("dyn") && HSVNNode::isDynamicUTI("dyn.ab"));
    EXPECT_FALSE(HSVNNode::isDynamicUTI(std::nullopt) || HSVNNode::isDynamicUTI("dy") ||
                 HSVNNode::isDynamicUTI("public.dyn"));
}

TEST(TypeRegistry, FindsDeclaredTypesByEitherTag)
{
    EXPECT_EQ(typeOfExtension("HTM"), "public.html");
    EXPECT_EQ(typeOfExtension("tgz"), "org.gnu.gnu-zip-tar-archive");
    EXPECT_EQ(typeOfMIMEType("Image/JPEG"), "public.jpeg");
    EXPECT_EQ(typeOfMIMEType("text/plain;charset=utf-8"), "public.plain-text");
    EXPECT_EQ(typeOfExtension("app", HSVNTypeDirectory), "com.apple.application-bundle");
    EXPECT_THAT(typeOfExtension("html", HSVNTypeDirectory), StartsWith("dyn."));
    EXPECT_THAT(typeOfMIMEType("inode/directory"), StartsWith("dyn.")) << "a folder is no data";
    EXPECT_THAT(typeOfMIMEType("html"), StartsWith("dyn.")) << "an extension is no MIME type";
}

TEST(TypeRegistry, DynamicIdentifiersTellTheirTagsApart)
{
    const auto dynamic = typeOfExtension("no-such");
    EXPECT_EQ(dynamic, typeOfExtension("NO-SUCH"));
    EXPECT_EQ(dynamic, "dyn.aob2we3djmmxgs5dfnu5gk6duhvxg6lltovrwq");
    EXPECT_NE(dynamic, typeOfExtension("no-sucj"));
    EXPECT_NE(dynamic, typeOfExtension("no-such", HSVNTypeData));
    EXPECT_NE(dynamic, typeOfMIMEType("no-such", HSVNTypeItem));
    EXPECT_EQ(dynamic.find_first_not_of("abcdefghijklmnopqrstuvwxyz234567."), std::string::npos);
}

TEST(TypeRegistry, EveryDeclaredTypeHasAPlaceInTheHierarchy)
{
    const auto& registry = HSVNTypeRegistry::sharedRegistry();
    const auto identifiers = registry.identifiers();
    EXPECT_GE(identifiers.size(), 300U);
    EXPECT_TRUE(registry.conforms("public.c-plus-plus-source", HSVNTypeText));
    EXPECT_TRUE(registry.conforms("public.png", HSVNTypeData));
    EXPECT_FALSE(registry.conforms("public.png", HSVNTypeText));
    EXPECT_FALSE(registry.conforms(HSVNTypeItem, HSVNTypeData));
    EXPECT_FALSE(registry.conforms("no.such.type", HSVNTypeItem));
    for (const auto& identifier : identifiers) {
        EXPECT_FALSE(registry.conforms(identifier, HSVNTypeDirectory) && registry.conforms(identifier, HSVNTypeData))
            << identifier;
    }
}

struct BrokenTable
{
    const char* text;
    const char* cause;
};

class BrokenTables : public testing::TestWithParam<BrokenTable>
{
};

TEST_P(BrokenTables, AreAClearException)
{
    const TemporaryFolder folder;
    const auto file = folder / "Types.json";
    writeFile(file, GetParam().text);
    const auto reason = reasonOf<HSVNException>([&] { HSVNTypeRegistry{file}; });
    EXPECT_THAT(reason, StartsWith("Failed to load the type table at " + file + ": "));
    EXPECT_THAT(reason, HasSubstr(GetParam().cause));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, BrokenTables,
    testing::Values(BrokenTable{"", "parse error"}, BrokenTable{"[]", "type_error"},
                    BrokenTable{"{}", "'types' not found"}, BrokenTable{R"({"types": [{}]})", "'identifier' not found"},
                    BrokenTable{R"({"types": [{"identifier": 1}]})", "type must be string"},
                    BrokenTable{R"({"types": [{"identifier": "a", "extensions": "x"}]})", "type must be array"},
                    BrokenTable{R"({"types": [{"identifier": "a"}, {"identifier": "a"}]})", "\"a\" is declared twice"},
                    BrokenTable{R"({"types": [{"identifier": "a", "conformsTo": ["b"]}]})", "\"b\" is not declared"},
                    BrokenTable{R"({"types": [{"identifier": "a", "conformsTo": ["b"]},
                                              {"identifier": "b", "conformsTo": ["a"]}]})",
                                "\"a\" conforms to itself"}));

TEST(TypeRegistry, AMissingTableIsAClearException)
{
    EXPECT_EQ(reasonOf<HSVNException>([] { HSVNTypeRegistry{"/no/such/table"}; }),
              "Failed to load the type table at /no/such/table: it cannot be opened");
}
