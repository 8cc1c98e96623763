#include "HSVNAddOptions.h"
#include "HSVNBundleLoader.h"
#include "HSVNCheckOutOptions.h"
#include "HSVNCommitOptions.h"
#include "HSVNCopyOptions.h"
#include "HSVNDeleteOptions.h"
#include "HSVNDiffOptions.h"
#include "HSVNEndOfLine.h"
#include "HSVNExportOptions.h"
#include "HSVNImportOptions.h"
#include "HSVNLockOptions.h"
#include "HSVNLogOptions.h"
#include "HSVNMergeOptions.h"
#include "HSVNMoveOptions.h"
#include "HSVNRepositoryOptions.h"
#include "HSVNResolveOptions.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatusOptions.h"
#include "HSVNUnlockOptions.h"
#include "HSVNUpdateOptions.h"
#include "Internal/Pool.h"

#include <gtest/gtest.h>
#include <map>

namespace {

/// An option class, a way to change every field, and the descriptions before and after; "%@" stands for the default
/// object description.
struct OptionsCase
{
    const char* className;
    std::shared_ptr<HSVNOptions> (*defaults)();
    void (*change)(HSVNOptions& options);
    const char* initially;
    const char* changed;
};

template <class Class>
std::shared_ptr<HSVNOptions> defaultsOf()
{
    return Class::defaults();
}

template <class Class, auto setter, auto value>
void set(HSVNOptions& options)
{
    (dynamic_cast<Class&>(options).*setter)(value);
}

const OptionsCase optionsCases[] = {
    {"HSVNAddOptions", defaultsOf<HSVNAddOptions>,
     [](HSVNOptions& options) {
         set<HSVNAddOptions, &HSVNAddOptions::setRecursive, false>(options);
         set<HSVNAddOptions, &HSVNAddOptions::setMatchIgnorePatterns, false>(options);
     },
     "{ %@ recursive: 1, force: 1, matchIgnore: 1 }", "{ %@ recursive: 0, force: 1, matchIgnore: 0 }"},
    {"HSVNCheckOutOptions", defaultsOf<HSVNCheckOutOptions>,
     [](HSVNOptions& options) {
         auto& checkOut = dynamic_cast<HSVNCheckOutOptions&>(options);
         checkOut.setRevision(HSVNRevisionSpec::revisionWithNumber(7));
         checkOut.setDepth(HSVNDepthFiles);
         checkOut.setAllowUnversionedObstructions(true);
     },
     "{ { %@ revision: HEAD@UNSPECIFIED}, depth: 3,  processExternals: 1, allowUnversionedObstructions: 0}",
     "{ { %@ revision: 7@UNSPECIFIED}, depth: 1,  processExternals: 1, allowUnversionedObstructions: 1}"},
    {"HSVNCommitOptions", defaultsOf<HSVNCommitOptions>,
     [](HSVNOptions& options) { set<HSVNCommitOptions, &HSVNCommitOptions::setReleaseLocks, false>(options); },
     "{ %@ depth: -2, releaseLocks: 1 }", "{ %@ depth: -2, releaseLocks: 0 }"},
    {"HSVNCopyOptions", defaultsOf<HSVNCopyOptions>,
     [](HSVNOptions& options) { dynamic_cast<HSVNCopyOptions&>(options).setRevision(HSVNRevision::BASE()); },
     "{ %@ revision: UNSPECIFIED }", "{ %@ revision: BASE }"},
    {"HSVNDeleteOptions", defaultsOf<HSVNDeleteOptions>, set<HSVNDeleteOptions, &HSVNDeleteOptions::setForce, true>,
     "{ %@ force: 0 }", "{ %@ force: 1 }"},
    {"HSVNExportOptions", defaultsOf<HSVNExportOptions>,
     [](HSVNOptions& options) {
         auto& exporting = dynamic_cast<HSVNExportOptions&>(options);
         exporting.setInitiatedByUser(false);
         exporting.setOverwriteExisting(true);
         exporting.setEOLMarkers(HSVNEndOfLineCRLF);
     },
     "{ { %@ revision: UNSPECIFIED@UNSPECIFIED} depth: 3, processExternals: 1, overwriteExisting: 0, EOLMarkers: "
     "(null) }",
     "{ { %@ revision: UNSPECIFIED@UNSPECIFIED} depth: 3, processExternals: 1, overwriteExisting: 1, EOLMarkers: CRLF "
     "}"},
    {"HSVNImportOptions", defaultsOf<HSVNImportOptions>,
     set<HSVNImportOptions, &HSVNImportOptions::setMatchIgnorePatterns, false>,
     "{ %@ recursive: 1, matchIgnorePatterns: 1 }", "{ %@ recursive: 1, matchIgnorePatterns: 0 }"},
    {"HSVNLockOptions", defaultsOf<HSVNLockOptions>, set<HSVNLockOptions, &HSVNLockOptions::setStealLocks, true>,
     "{ %@ stealLocks: 0 }", "{ %@ stealLocks: 1 }"},
    {"HSVNMoveOptions", defaultsOf<HSVNMoveOptions>, set<HSVNMoveOptions, &HSVNMoveOptions::setForce, true>,
     "{ %@ force: 0 }", "{ %@ force: 1 }"},
    {"HSVNResolveOptions", defaultsOf<HSVNResolveOptions>,
     set<HSVNResolveOptions, &HSVNResolveOptions::setRecursive, false>, "{ %@ recursive: 1 }", "{ %@ recursive: 0 }"},
    {"HSVNRevertOptions", defaultsOf<HSVNRevertOptions>,
     set<HSVNRevertOptions, &HSVNRevertOptions::setRecursive, false>, "{ %@ recursive: 1 }", "{ %@ recursive: 0 }"},
    {"HSVNUnlockOptions", defaultsOf<HSVNUnlockOptions>,
     set<HSVNUnlockOptions, &HSVNUnlockOptions::setBreakLocks, true>, "{ %@ breakLocks: 0 }", "{ %@ breakLocks: 1 }"},
    {"HSVNUpdateOptions", defaultsOf<HSVNUpdateOptions>,
     [](HSVNOptions& options) {
         set<HSVNUpdateOptions, &HSVNUpdateOptions::setDepth, HSVNDepthEmpty>(options);
         set<HSVNUpdateOptions, &HSVNUpdateOptions::setDepthIsSticky, true>(options);
     },
     "{ %@ depth: -2, depthIsSticky: 0, processExternals: 1, allowUnversionedObstructions: 0 }",
     "{ %@ depth: 0, depthIsSticky: 1, processExternals: 1, allowUnversionedObstructions: 0 }"},
    {"HSVNMergeOptions", defaultsOf<HSVNMergeOptions>, [](HSVNOptions&) {}, "%@", "%@"},
    {"HSVNDiffOptions", defaultsOf<HSVNDiffOptions>, [](HSVNOptions&) {}, "%@", "%@"},
    {"HSVNStatusOptions", defaultsOf<HSVNStatusOptions>,
     [](HSVNOptions& options) {
         auto& status = dynamic_cast<HSVNStatusOptions&>(options);
         status.setRevision(HSVNRevision::HEAD());
         status.setIncludeNormalFiles(true);
         status.setProcessExternals(false);
         status.setIncludeConflictVersionFiles(false);
     },
     "{ %@ revision: UNSPECIFIED, recursive: 1, includeNormalFiles: 0, compareAgainstRepository: 0, "
     "respectIgnoreProperties: 1, processExternals: 1, propagateStatusToAncestor: 0, includeConflictVersionFiles: 1 }",
     "{ %@ revision: HEAD, recursive: 1, includeNormalFiles: 1, compareAgainstRepository: 0, respectIgnoreProperties: "
     "1, processExternals: 0, propagateStatusToAncestor: 0, includeConflictVersionFiles: 0 }"},
    {"HSVNLogOptions", defaultsOf<HSVNLogOptions>,
     [](HSVNOptions& options) {
         auto& log = dynamic_cast<HSVNLogOptions&>(options);
         log.setLimit(10);
         log.setFromRevision(HSVNRevision::revisionWithNumber(9));
         log.setTraverseCopyHistory(false);
     },
     "{ %@ fromRevision: HEAD, toRevision: 0, pegRevision: UNSPECIFIED, limit: 0, discoverChangedPaths: 1, "
     "traverseCopyHistory: 1 }",
     "{ %@ fromRevision: 9, toRevision: 0, pegRevision: UNSPECIFIED, limit: 10, discoverChangedPaths: 1, "
     "traverseCopyHistory: 0 }"},
    {"HSVNRepositoryOptions", defaultsOf<HSVNRepositoryOptions>,
     set<HSVNRepositoryOptions, &HSVNRepositoryOptions::setCompatibility, 1>, "{ %@ compatibility: 2 }",
     "{ %@ compatibility: 1 }"},
    {"HSVNFileSystemOptions", defaultsOf<HSVNFileSystemOptions>,
     set<HSVNFileSystemOptions, &HSVNRepositoryOptions::setCompatibility, 3>, "{ %@ compatibility: 2 }",
     "{ %@ compatibility: 3 }"},
    {"HSVNBerkeleyDBOptions", defaultsOf<HSVNBerkeleyDBOptions>,
     set<HSVNBerkeleyDBOptions, &HSVNBerkeleyDBOptions::setAutomaticLogFileRemoval, false>,
     "{ { %@ compatibility: 2 }, syncAtTransactionCommit: 1, automaticLogFileRemoval: 1 }",
     "{ { %@ compatibility: 2 }, syncAtTransactionCommit: 1, automaticLogFileRemoval: 0 }"},
};

std::string withDescription(std::string format, const HSVNOptions& options)
{
    return format.replace(format.find("%@"), 2, options.objectDescription());
}

class OptionsTest : public testing::TestWithParam<OptionsCase>
{
};

TEST_P(OptionsTest, DescribeTheirInitialAndTheirChangedFields)
{
    const auto options = GetParam().defaults();
    EXPECT_EQ(options->className(), GetParam().className);
    EXPECT_EQ(options->description(), withDescription(GetParam().initially, *options));
    GetParam().change(*options);
    EXPECT_EQ(options->description(), withDescription(GetParam().changed, *options));
}

namespace {

/// An application's class that makes copies of its own, and one that forgets to.
struct OwnOptions : HSVNOptionsOf<OwnOptions, HSVNUpdateOptions>
{
    static constexpr const char* staticClassName = "OwnOptions";
    int added = 0;
};
struct ForgetfulOptions : HSVNUpdateOptions
{
    int added = 0;
};

} // namespace

TEST(OptionsOfAnApplication, AreCopiedWholeOrNotAtAll)
{
    OwnOptions own;
    own.added = 7;
    own.setProcessExternals(false);
    const HSVNOptions& base = own;
    const auto copy = std::dynamic_pointer_cast<OwnOptions>(base.copy());
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->added, 7);
    EXPECT_FALSE(copy->processExternals());
    EXPECT_THROW(ForgetfulOptions{}.copy(), HSVNInternalInconsistencyException);
}

TEST_P(OptionsTest, ACopyHasTheClassAndTheFieldsAndIsIndependent)
{
    const auto options = GetParam().defaults();
    GetParam().change(*options);
    const auto copy = options->copy();
    EXPECT_EQ(copy->className(), GetParam().className);
    EXPECT_EQ(copy->description(), withDescription(GetParam().changed, *copy));

    const auto source = GetParam().defaults();
    GetParam().change(*source->copy());
    EXPECT_EQ(source->description(), withDescription(GetParam().initially, *source));
}

INSTANTIATE_TEST_SUITE_P(Classes, OptionsTest, testing::ValuesIn(optionsCases),
                         [](const auto& testCase) { return std::string{testCase.param.className}; });

TEST(MergeOptionsTest, ACopyCarriesTheFieldsThatNoDescriptionShows)
{
    const auto options = HSVNMergeOptions::defaults();
    EXPECT_EQ(options->depth(), HSVNDepthInfinity);
    EXPECT_FALSE(options->ignoreAncestry() || options->force() || options->recordOnly() || options->dryRun() ||
                 options->ignoreEOLStyle());
    options->setWhitespaceCompareBehavior(2);
    options->setDryRun(true);
    const auto copy = options->copy();
    EXPECT_EQ(copy->whitespaceCompareBehavior(), 2);
    EXPECT_TRUE(copy->dryRun());
    EXPECT_FALSE(copy->recordOnly());
}

TEST(DiffOptionsTest, ACopyHasTheInitialValues)
{
    const auto options = HSVNDiffOptions::defaults();
    options->setWhitespaceCompareBehavior(2);
    options->setIgnoreEOLStyle(true);
    options->setRecursive(false);
    const auto copy = options->copy();
    EXPECT_EQ(copy->whitespaceCompareBehavior(), 0);
    EXPECT_FALSE(copy->ignoreEOLStyle());
    EXPECT_TRUE(copy->recursive());
}

TEST(CheckOutOptionsTest, ACopySharesTheRevision)
{
    const auto options = HSVNCheckOutOptions::defaults();
    EXPECT_EQ(options->copy()->revision(), HSVNRevisionSpec::HEAD());
}

using Entries = std::map<std::string, std::string>;

/// The entries that options write, through the installed Subversion.
Entries entriesOf(const HSVNRepositoryOptions& options)
{
    HSVNBundleLoader loader;
    loader.loadBundlesInDirectoryAtPath(HSVNBundleLoader::defaultBundleDirectory());
    const HSVNBundleScope scope{loader.defaultBundle()};
    const HSVNPool pool;
    const auto& table = HSVNCurrentEntryPoints();
    apr_hash_t* hash = table.apr_hash_make(pool);
    options.addHSVNOptionsTo(hash);
    Entries entries;
    for (auto* index = table.apr_hash_first(pool, hash); index; index = table.apr_hash_next(index)) {
        const void* key = nullptr;
        void* value = nullptr;
        table.apr_hash_this(index, &key, nullptr, &value);
        entries[static_cast<const char*>(key)] = static_cast<const char*>(value);
    }
    return entries;
}

TEST(RepositoryOptionsTest, CompatibilityCountsBackFromTheNewestFormat)
{
    const std::pair<std::int32_t, Entries> cases[] = {
        {0, {}},
        {1, {{"pre-1.6-compatible", "1"}}},
        {2, {{"pre-1.5-compatible", "1"}}},
        {3, {{"pre-1.4-compatible", "1"}}},
        {4, {}},
    };
    for (const auto& [compatibility, entries] : cases) {
        HSVNFileSystemOptions options;
        options.setCompatibility(compatibility);
        EXPECT_EQ(entriesOf(options), entries) << compatibility;
    }
}

TEST(RepositoryOptionsTest, BerkeleyDBOptionsAddTheirOwnEntries)
{
    HSVNBerkeleyDBOptions options;
    EXPECT_EQ(entriesOf(options),
              (Entries{{"pre-1.5-compatible", "1"}, {"bdb-txn-nosync", "0"}, {"bdb-log-autoremove", "1"}}));
    options.setCompatibility(0);
    options.setSyncAtTransactionCommit(false);
    options.setAutomaticLogFileRemoval(false);
    EXPECT_EQ(entriesOf(options), (Entries{{"bdb-txn-nosync", "1"}, {"bdb-log-autoremove", "0"}}));
}

} // namespace
