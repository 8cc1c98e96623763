#include "HSVNBundleLoader.h"
#include "FakeBundle.h"
#include "HSVNException.h"
#include "Internal/BundleEntryPoints.h"
#include "ReasonOf.h"
#include "TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sstream>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class BundleLoader : public testing::Test
{
  protected:
    std::string folder() const { return _folder.path(); }
    FakeBundle make(const std::string& name, const std::string& version) const { return {folder(), name, version}; }
    /// Writes a package's record; its code, if any, stays.
    void writeRecord(const std::string& name, const std::string& record) const
    {
        writeFile(_folder / name + "/Info.json", record);
    }

    TemporaryFolder _folder;
    HSVNBundleLoader _loader;
};

TEST_F(BundleLoader, LoadsTheBundlesOfAFolderByTheirExtension)
{
    make("b.BUNDLE", "1.5.7");
    make("A.bundle", "1.4.4");
    make("sub/below.bundle", "1.6.5");
    writeFile(_folder / "notes.txt", "no bundle");
    _loader.loadBundlesInDirectoryAtPath(folder());
    EXPECT_THAT(_loader.loadedVersions(), ElementsAre(HSVNVersion{1, 5, 7}, HSVNVersion{1, 4, 4}));
    EXPECT_NO_THROW(_loader.loadBundlesInDirectoryAtPath(_folder / "missing"));
}

TEST_F(BundleLoader, FindsTheNewestBundleThatMatches)
{
    for (const char* version : {"1.5.7", "1.4.4", "1.6.5", "1.5.2"}) {
        _loader.loadBundleAtPath(make(std::string{version} + ".bundle", version).path());
    }
    const auto found = [this](const HSVNVersion& pattern) {
        const auto bundle = _loader.bundleForVersion(pattern);
        return bundle ? _loader.versionForBundle(bundle) : std::nullopt;
    };
    EXPECT_EQ(found({1, 5}), (HSVNVersion{1, 5, 7}));
    EXPECT_EQ(found({1, 6, 5}), (HSVNVersion{1, 6, 5}));
    EXPECT_EQ(found({0, 0}), (HSVNVersion{1, 6, 5}));
    EXPECT_EQ(found({1, 6, 6}), std::nullopt);
    EXPECT_EQ(_loader.versionForBundle(_loader.newestBundle()), (HSVNVersion{1, 6, 5}));
    EXPECT_EQ(_loader.versionForBundle(_loader.defaultBundle()), (HSVNVersion{1, 6, 5}));
    EXPECT_EQ(_loader.versionForBundle(_loader.oldestBundle()), (HSVNVersion{1, 4, 4}));
    EXPECT_EQ(*_loader.infoDictionaryForBundle(_loader.oldestBundle()).at(HSVNInfoWorkingCopyFormatKey).number(), 99);
}

TEST_F(BundleLoader, KeepsTheFirstBundleOfAVersion)
{
    const auto first = _loader.loadBundleAtPath(make("first.bundle", "1.5.7").path());
    EXPECT_EQ(_loader.loadBundleAtPath(make("second.bundle", "1.5.7").path()), first);
    EXPECT_EQ(first->bundle()->path(), _folder / "first.bundle");
    EXPECT_EQ(_loader.loadedVersions().size(), 1U);
}

TEST_F(BundleLoader, AnswersNilWhenNothingIsLoaded)
{
    EXPECT_EQ(_loader.newestVersion(), std::nullopt);
    EXPECT_EQ(_loader.oldestVersion(), std::nullopt);
    EXPECT_EQ(_loader.defaultBundle(), nullptr);
    EXPECT_EQ(_loader.oldestBundle(), nullptr);
    EXPECT_EQ(_loader.bundleForVersion(HSVNVersion{0, 0}), nullptr);
    const auto stranger = HSVNBundleProxy::proxyForBundle(HSVNPackage::packageAtPath(make("x.bundle", "1.0").path()));
    EXPECT_EQ(_loader.versionForBundle(stranger), std::nullopt);
}

TEST_F(BundleLoader, NilArgumentsAreRefused)
{
    using Assertion = HSVNAssertionException;
    const std::string refusal = "Invalid parameter not satisfying: ";
    EXPECT_EQ(reasonOf<Assertion>([&] { _loader.bundleForVersion(std::nullopt); }), refusal + "version != nil");
    EXPECT_EQ(reasonOf<Assertion>([&] { _loader.versionForBundle(nullptr); }), refusal + "bundleObj != nil");
    EXPECT_EQ(reasonOf<Assertion>([&] { _loader.infoDictionaryForBundle(nullptr); }), refusal + "bundle != nil");
}

TEST_F(BundleLoader, APackageThatCannotBeOpenedIsRefused)
{
    writeFile(_folder / "file.bundle", "not a folder");
    for (const char* name : {"missing.bundle", "file.bundle"}) {
        try {
            _loader.loadBundleAtPath(_folder / name);
            FAIL() << name;
        } catch (const HSVNException& exception) {
            EXPECT_EQ(exception.reason(), "Failed to load svn bundle at " + _folder / name);
            EXPECT_EQ(exception.name(), "HSVNException");
            EXPECT_TRUE(exception.userInfo().empty());
        }
    }
}

TEST_F(BundleLoader, AnUnusableRecordIsRefusedWithItsCause)
{
    const std::tuple<const char*, const char*> cases[] = {
        {"{", "Info.json is not a JSON object"},
        {"[1]", "Info.json is not a JSON object"},
        {R"({"CFBundleVersion": 1.5})", R"("CFBundleVersion" is not a text)"},
        {R"({"CFBundleExecutable": null})", R"("CFBundleExecutable" is not a text)"},
        {R"({"HSVNWorkingCopyFormatVersion": "8"})", R"("HSVNWorkingCopyFormatVersion" is not a whole number)"},
        {R"({"HSVNWorkingCopyFormatVersion": 18446744073709551615})", "is not a whole number"},
    };
    for (const auto& [record, cause] : cases) {
        writeRecord("bad.bundle", record);
        const auto reason = reasonOf<HSVNException>([this] { _loader.loadBundleAtPath(_folder / "bad.bundle"); });
        EXPECT_THAT(reason, HasSubstr("Failed to load svn bundle at " + folder())) << record;
        EXPECT_THAT(reason, HasSubstr(cause)) << record;
    }
    EXPECT_TRUE(_loader.loadedVersions().empty());
}

TEST_F(BundleLoader, AFolderIsLoadedUpToTheFirstBundleThatIsRefused)
{
    make("a.bundle", "1.4.4");
    std::filesystem::create_directory(_folder / "b.bundle"); // without a record
    writeRecord("c.bundle", "{");
    make("d.bundle", "1.6.5");
    EXPECT_THAT(reasonOf<HSVNException>([this] { _loader.loadBundlesInDirectoryAtPath(folder()); }),
                HasSubstr("c.bundle: Info.json is not a JSON object"));
    EXPECT_THAT(_loader.loadedVersions(), ElementsAre(HSVNVersion{1, 4, 4}, HSVNVersion{0, 0}));
    EXPECT_THAT(reasonOf<HSVNException>([this] { _loader.loadBundleAtPath(_folder / "b.bundle")->entryPoints(); }),
                HasSubstr("\"CFBundleExecutable\" is not the name of a file"));
}

TEST_F(BundleLoader, ARecordWithoutAVersionCountsAsZero)
{
    writeRecord("bare.bundle", R"({"other": [1, {"x": null}]})");
    const auto bundle = _loader.loadBundleAtPath(_folder / "bare.bundle");
    EXPECT_EQ(_loader.versionForBundle(bundle), (HSVNVersion{0, 0}));
}

TEST_F(BundleLoader, CodeThatCannotBeUsedIsRefusedWithItsCause)
{
    const std::tuple<const char*, const char*> cases[] = {
        {R"({})", "\"CFBundleExecutable\" is not the name of a file"},
        {R"({"CFBundleExecutable": "../FakeBundle.so"})", "\"CFBundleExecutable\" is not the name of a file"},
        {R"({"CFBundleExecutable": ".."})", "\"CFBundleExecutable\" is not the name of a file"},
        {R"({"CFBundleExecutable": "missing.so"})", "missing.so: cannot open shared object file"},
        {R"({"CFBundleExecutable": "Info.json"})", "Info.json: "},
    };
    for (const auto& [record, cause] : cases) {
        writeRecord("bad.bundle", record);
        const auto proxy = HSVNBundleProxy::proxyForBundle(HSVNPackage::packageAtPath(_folder / "bad.bundle"));
        EXPECT_THAT(reasonOf<HSVNException>([&] { proxy->bundleObject(); }), HasSubstr(cause)) << record;
    }
}

TEST_F(BundleLoader, CodeThatCallsWhatNoLibraryHasIsRefusedBeforeTheCall)
{
    std::istringstream files{HSVN_TEST_INCOMPLETE_CODE};
    int refused = 0;
    for (std::string file; files >> file; ++refused) {
        writeRecord("bad.bundle", R"({"CFBundleExecutable": "bad.so"})");
        std::filesystem::copy_file(file, _folder / "bad.bundle/bad.so",
                                   std::filesystem::copy_options::overwrite_existing);
        const auto proxy = HSVNBundleProxy::proxyForBundle(HSVNPackage::packageAtPath(_folder / "bad.bundle"));
        EXPECT_THAT(reasonOf<HSVNException>([&] { proxy->bundleObject(); }),
                    HasSubstr("undefined symbol: HSVNFunctionOfNoLibrary"))
            << file;
    }
    EXPECT_EQ(refused, 2);
}

TEST_F(BundleLoader, ABundleOfAnotherLineThanItsRecordSaysIsRefused)
{
    const auto fake = make("fake.bundle", "1.6.5");
    fake.state().version = "1.14.2";
    const auto proxy = _loader.loadBundleAtPath(fake.path());
    const auto reason = reasonOf<HSVNException>([&] { proxy->entryPoints(); });
    EXPECT_THAT(reason, HasSubstr(fake.path()));
    EXPECT_THAT(reason, HasSubstr("it says that it is of Subversion 1.6.5, but its Subversion is 1.14.2"));
    fake.state().version = "1.6.23";
    EXPECT_NE(proxy->entryPoints(), nullptr) << "a later patch release of the same line";
}

TEST_F(BundleLoader, ABundleThatDoesNotStartIsAskedAgain)
{
    const auto fake = make("fake.bundle", "1.6.5");
    fake.state().startFails = true;
    const auto proxy = _loader.loadBundleAtPath(fake.path());
    EXPECT_THAT(reasonOf<HSVNException>([&] { proxy->bundleObject(); }), HasSubstr("could not be started"));
    fake.state().startFails = false;
    EXPECT_EQ(proxy->bundleObject()->entryPoints(), proxy->entryPoints());
    EXPECT_EQ(fake.state().starts, 2);
}

TEST_F(BundleLoader, APlaceThatTheLineMustFillIsMissed)
{
    const std::tuple<const char*, int, bool> cases[] = {
        {"1.4.6", 49, true},  {"1.4.6", 60, true},  {"1.4.6", 59, false}, {"1.6.5", 60, false},
        {"1.6.5", 59, true},  {"1.6.5", 88, true},  {"1.6.5", 90, false}, {"1.6.5", 22, true},
        {"1.6.5", 5, false},  {"1.6.5", 6, false},  {"1.6.5", 7, false},  {"1.6.5", 42, false},
        {"1.6.5", 72, false}, {"1.6.5", 73, false}, {"1.6.5", 74, false}, {"1.6.5", 79, false},
    };
    int index = 0;
    for (const auto& [version, place, isMissed] : cases) {
        const auto fake = make(std::to_string(index++) + ".bundle", version);
        fake.state().missingPlace = place;
        const auto proxy = HSVNBundleProxy::proxyForBundle(HSVNPackage::packageAtPath(fake.path()));
        const auto reason = reasonOf<HSVNException>([&] { proxy->bundleObject(); });
        EXPECT_THAT(reason, HasSubstr(isMissed ? "it does not fill entry point " + std::to_string(place) : "nothing"));
    }
}

TEST_F(BundleLoader, TwoThreadsNeverMakeTwoPrincipalObjects)
{
    const auto fake = make("fake.bundle", "9.8.7");
    const auto proxy = _loader.loadBundleAtPath(fake.path());
    EXPECT_FALSE(fake.isLoaded()) << "opening a package must not load its code";
    fake.state().startMilliseconds = 50; // so that all threads meet
    std::vector<HSVNBundleRef> objects(8);
    {
        std::vector<std::jthread> threads;
        for (auto& object : objects) {
            threads.emplace_back([&] { object = proxy->bundleObject(); });
        }
    }
    EXPECT_THAT(objects, testing::Each(proxy->bundleObject()));
    EXPECT_EQ(fake.state().starts, 1);
}

TEST_F(BundleLoader, TheDefaultFolderLiesInTheLibrarysOwnPackage)
{
    EXPECT_TRUE(
        std::filesystem::equivalent(HSVNBundleLoader::defaultBundleDirectory(), HSVN_BUILD_PACKAGE "/Subversion"));
}

TEST_F(BundleLoader, TheStackOfBundlesBelongsToItsThread)
{
    using Generic = HSVNGenericException;
    const auto a = _loader.loadBundleAtPath(make("a.bundle", "1.4.4").path());
    const auto b = _loader.loadBundleAtPath(make("b.bundle", "1.5.7").path());
    HSVNBundlePush(a);
    HSVNBundlePush(b);
    EXPECT_EQ(HSVNBundleCurrent(), b);
    std::jthread{[] { EXPECT_EQ(reasonOf<Generic>(HSVNBundleCurrent), "Bundle stack is empty"); }}.join();
    EXPECT_THROW(HSVNBundlePush(nullptr), HSVNInvalidArgumentException);
    EXPECT_EQ(HSVNBundlePop(), b);
    EXPECT_EQ(HSVNBundleCurrent(), a);
    EXPECT_EQ(HSVNBundlePop(), a);
    EXPECT_EQ(reasonOf<Generic>(HSVNBundlePop), "Unbalanced bundle stack pop");
    EXPECT_EQ(reasonOf<Generic>(HSVNBundleCurrent), "Bundle stack is empty");
}

} // namespace
