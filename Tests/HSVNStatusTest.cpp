#include "HSVNStatus.h"

#include "HSVNKeyedArchiver.h"
#include "HSVNKeyedUnarchiver.h"
#include "HSVNLock.h"
#include "HSVNPath.h"
#include "HSVNURL.h"
#include "HSVNVersion.h"
#include "Internal/SharedText.h"
#include "Internal/Subversion.h"
#include "SequentialCoder.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <utility>

namespace {

TEST(StatusKindTest, SubversionsKindsBecomeBitsAndUnknownOnesTheUnknownKind)
{
    for (std::int32_t kind = svn_wc_status_unversioned; kind <= svn_wc_status_incomplete; ++kind) {
        EXPECT_EQ(HSVNConvertStatusKind(kind), 1U << (kind - svn_wc_status_unversioned)) << kind;
    }
    EXPECT_EQ(HSVNConvertStatusKind(svn_wc_status_none), HSVNStatusKindNone);
    for (const std::int32_t kind : {-1, 0, 15, 99}) {
        EXPECT_EQ(HSVNConvertStatusKind(kind), HSVNStatusKindUnknown) << kind;
        EXPECT_TRUE(HSVNIsAbnormalStatus(kind)) << kind;
    }
    for (std::int32_t schedule = 0; schedule <= 3; ++schedule) {
        EXPECT_EQ(HSVNConvertSchedule(schedule), schedule);
    }
    EXPECT_EQ(HSVNConvertSchedule(4), HSVNScheduleInvalid);
}

TEST(StatusKindTest, AbnormalSubversionKindsAreThoseOfAbnormalRecords)
{
    for (std::int32_t kind = svn_wc_status_none; kind <= svn_wc_status_incomplete; ++kind) {
        HSVNStatus text;
        text.setTextStatus(HSVNConvertStatusKind(kind));
        HSVNStatus property;
        property.setPropertyStatus(HSVNConvertStatusKind(kind));
        EXPECT_EQ(HSVNIsAbnormalStatus(kind), text.isAbnormal()) << kind;
        EXPECT_EQ(HSVNIsAbnormalStatus(kind), property.isAbnormal()) << kind;
    }
    EXPECT_FALSE(HSVNIsAbnormalStatus(svn_wc_status_external));
    EXPECT_TRUE(HSVNIsAbnormalStatus(svn_wc_status_unversioned));
}

TEST(StatusKindTest, AnAggregateIsTheUnion)
{
    EXPECT_EQ(HSVNAggregateStatus(HSVNStatusKindNormal, HSVNStatusKindNone, std::nullopt), 2U);
    EXPECT_EQ(HSVNAggregateStatus(HSVNStatusKindModified, HSVNStatusKindConflicted, 66U), 64U | 256U | 2U);
}

TEST(StatusTest, OnlyUnversionedAndIgnoredItemsAreNotVersioned)
{
    EXPECT_TRUE(HSVNStatus{}.isVersioned());
    EXPECT_TRUE(HSVNStatus::normal()->isVersioned());
    EXPECT_EQ(HSVNStatus::normal()->propertyStatus(), HSVNStatusKindNormal);
    EXPECT_FALSE(HSVNStatus::unversioned()->isVersioned());
    EXPECT_EQ(HSVNStatus::unversioned()->propertyStatus(), HSVNStatusKindNone);
    EXPECT_FALSE(HSVNStatus::ignored()->isVersioned());
}

TEST(StatusTest, ReadsRevisionsFromTheNamesOfConflictFiles)
{
    const std::pair<std::optional<std::string>, HSVNRevisionNumber> names[] = {
        {"main.c.r1234", 1234},
        {"main.c.r0", 0},
        {"main.c.rx", 0},
        {"main.c.r12x", 12},
        {"main.c.r99999999999", 2147483647},
        {"main.c.mine", HSVNInvalidRevision},
        {"main.c.r", HSVNInvalidRevision},
        {"main.c.R12", HSVNInvalidRevision},
        {"r12", HSVNInvalidRevision},
        {"main.", HSVNInvalidRevision},
        {"", HSVNInvalidRevision},
        {std::nullopt, HSVNInvalidRevision},
    };
    for (const auto& [name, revision] : names) {
        EXPECT_EQ(HSVNStatus::revisionFromFilename(name), revision) << name.value_or("nil");
    }
    HSVNStatus status;
    status.setConflictOldVersion("a.r3");
    status.setConflictNewVersion("a.r5");
    EXPECT_EQ(status.conflictOldRevision(), 3);
    EXPECT_EQ(status.conflictNewRevision(), 5);
}

TEST(StatusTest, KeepsChecksumsOfEveryForm)
{
    HSVNStatus status;
    for (const std::optional<std::string>& checksum : {std::optional<std::string>{"0123456789abcdef0123456789abcdef"},
                                                       {"0123456789ABCDEF0123456789ABCDEF"},
                                                       {"da39a3ee5e6b4b0d3255bfef95601890afd80709"},
                                                       {""},
                                                       {std::nullopt},
                                                       {"ffffffffffffffffffffffffffffffff"}})
    {
        status.setChecksum(checksum);
        EXPECT_EQ(status.checksum(), checksum);
        EXPECT_EQ(status.copy()->checksum(), checksum);
    }
}

/// A status with every field of Subversion's records set.
class SVNStatusTest : public testing::Test
{
  protected:
    SVNStatusTest()
    {
        entry.cmt_rev = 5;
        entry.cmt_date = 5'000'000;
        entry.cmt_author = "anna";
        entry.deleted = 1;
        entry.has_props = 1;
        entry.schedule = svn_wc_schedule_add;
        entry.copyfrom_url = "file:///r/a b";
        entry.copyfrom_rev = 4;
        entry.conflict_old = "f.r4";
        entry.conflict_new = "f.r5";
        entry.conflict_wrk = "f.mine";
        entry.prejfile = "f.prej";
        entry.text_time = 6'000'000;
        entry.prop_time = 7'000'000;
        entry.checksum = "0123456789abcdef0123456789abcdef";
        entry.depth = svn_depth_infinity;
        lock.path = "/f";
        lock.token = "opaquelocktoken:1";
        lock.creation_date = 8'000'000;
        status.entry = &entry;
        status.text_status = svn_wc_status_conflicted;
        status.prop_status = svn_wc_status_modified;
        status.repos_text_status = svn_wc_status_deleted;
        status.repos_prop_status = static_cast<svn_wc_status_kind>(15);
        status.copied = 1;
        status.repos_lock = &lock;
        status.ood_last_cmt_rev = 9;
        status.ood_last_cmt_date = 9'000'000;
        status.ood_last_cmt_author = "ben";
    }

    HSVNStatusRef converted(const HSVNVersion& version = HSVNVersion::version1_6()) const
    {
        return HSVNStatus::statusWithSVNStatus(&status, version);
    }

    svn_wc_entry_t entry{};
    svn_lock_t lock{};
    svn_wc_status2_t status{};
};

void expectStates(const HSVNStatus& record)
{
    EXPECT_EQ(record.textStatus(), HSVNStatusKindConflicted);
    EXPECT_EQ(record.propertyStatus(), HSVNStatusKindModified);
    EXPECT_EQ(record.repositoryTextStatus(), HSVNStatusKindDeleted);
    EXPECT_EQ(record.repositoryPropertyStatus(), HSVNStatusKindUnknown);
    EXPECT_FALSE(record.locked());
    EXPECT_TRUE(record.copied());
    EXPECT_FALSE(record.switched());
    EXPECT_TRUE(record.deleted());
    EXPECT_FALSE(record.absent());
    EXPECT_TRUE(record.hasProperties());
    EXPECT_FALSE(record.hasPropertyModifications());
    EXPECT_EQ(record.schedule(), HSVNScheduleAdd);
}

void expectCommits(const HSVNStatus& record)
{
    EXPECT_EQ(record.lastChangedRevision(), 5);
    EXPECT_EQ(record.lastChangedDate(), HSVNDate{5'000'000});
    EXPECT_EQ(record.lastChangedAuthor(), "anna");
    EXPECT_EQ(record.outOfDateLastCommitRevision(), 9);
    EXPECT_EQ(record.outOfDateLastCommitDate(), HSVNDate{9'000'000});
    EXPECT_EQ(record.outOfDateLastCommitAuthor(), "ben");
}

void expectFields(const HSVNStatus& record)
{
    expectStates(record);
    expectCommits(record);
    ASSERT_TRUE(record.copyFromURL());
    EXPECT_EQ(record.copyFromURL()->string(), "file:///r/a%20b");
    EXPECT_EQ(record.copyFromRevision(), 4);
    EXPECT_EQ(record.conflictOldVersion(), "f.r4");
    EXPECT_EQ(record.conflictNewVersion(), "f.r5");
    EXPECT_EQ(record.conflictWorkingVersion(), "f.mine");
    EXPECT_EQ(record.propertyRejectFilePath(), "f.prej");
    EXPECT_EQ(record.upToDateTextDate(), HSVNDate{6'000'000});
    EXPECT_EQ(record.upToDatePropertyDate(), HSVNDate{7'000'000});
    EXPECT_EQ(record.checksum(), "0123456789abcdef0123456789abcdef");
    ASSERT_TRUE(record.repositoryLock());
    EXPECT_EQ(record.repositoryLock()->token(), "opaquelocktoken:1");
}

TEST_F(SVNStatusTest, EveryFieldIsConvertedCopiedAndArchivedButTheDepth)
{
    const auto record = converted();
    expectFields(*record);
    EXPECT_EQ(record->depth(), HSVNDepthInfinity);

    const auto copy = record->copy();
    expectFields(*copy);
    EXPECT_EQ(copy->depth(), HSVNDepthUnknown);
    copy->setConflictOldVersion(std::nullopt);
    EXPECT_EQ(record->conflictOldVersion(), "f.r4");

    const auto archive = HSVNKeyedArchiver::archivedDataWithRootObject(record);
    const auto decoded = HSVNKeyedUnarchiver::unarchiveObjectOfClass<HSVNStatus>(archive);
    expectFields(*decoded);
    EXPECT_EQ(decoded->depth(), HSVNDepthEmpty);
}

/// The names of the flags that are set.
std::set<std::string> flagsOf(const HSVNStatus& record)
{
    std::set<std::string> names;
    const auto add = [&](const char* name, bool isSet) {
        if (isSet) {
            names.insert(name);
        }
    };
    add("locked", record.locked());
    add("copied", record.copied());
    add("switched", record.switched());
    add("deleted", record.deleted());
    add("absent", record.absent());
    add("hasProperties", record.hasProperties());
    add("hasPropertyModifications", record.hasPropertyModifications());
    add("fileExternal", record.fileExternal());
    add("incomplete", record.incomplete());
    return names;
}

TEST(StatusTest, EachFlagIsConvertedCopiedAndArchivedByItself)
{
    svn_wc_entry_t entry{};
    svn_wc_status2_t status{};
    status.entry = &entry;
    const std::pair<const char*, svn_boolean_t*> flags[] = {{"locked", &status.locked},
                                                            {"copied", &status.copied},
                                                            {"switched", &status.switched},
                                                            {"deleted", &entry.deleted},
                                                            {"absent", &entry.absent},
                                                            {"hasProperties", &entry.has_props},
                                                            {"hasPropertyModifications", &entry.has_prop_mods},
                                                            {"fileExternal", &status.file_external},
                                                            {"incomplete", &entry.incomplete}};
    for (const auto& [name, field] : flags) {
        *field = 1;
        const auto record = HSVNStatus::statusWithSVNStatus(&status, HSVNVersion::version1_6());
        *field = 0;
        const std::set<std::string> expected{name};
        EXPECT_EQ(flagsOf(*record), expected);
        EXPECT_EQ(flagsOf(*record->copy()), expected);
        const auto archive = HSVNKeyedArchiver::archivedDataWithRootObject(record);
        EXPECT_EQ(flagsOf(*HSVNKeyedUnarchiver::unarchiveObjectOfClass<HSVNStatus>(archive)), expected);
    }
}

TEST(StatusTest, FurtherFieldsAreCopiedAndArchived)
{
    HSVNStatus record;
    record.setRevision(7);
    record.setNodeStatus(HSVNStatusKindReplaced);
    record.setRepositoryNodeStatus(HSVNStatusKindDeleted);
    record.setVersioned(true);
    record.setTreeConflicted(true);
    record.setChangelist("list");
    record.setMovedFrom("/a");
    record.setMovedTo("/b");
    const auto archive = HSVNKeyedArchiver::archivedDataWithRootObject(record.copy());
    const auto decoded = HSVNKeyedUnarchiver::unarchiveObjectOfClass<HSVNStatus>(archive);
    for (const auto& status : {record.copy(), HSVNStatusRef{decoded}}) {
        EXPECT_EQ(status->revision(), 7);
        EXPECT_EQ(status->nodeStatus(), HSVNStatusKindReplaced);
        EXPECT_EQ(status->repositoryNodeStatus(), HSVNStatusKindDeleted);
        EXPECT_TRUE(status->versioned() && status->treeConflicted() && status->conflicted());
        EXPECT_FALSE(status->textConflicted() || status->propertiesConflicted());
        EXPECT_EQ(status->changelist(), "list");
        EXPECT_EQ(status->movedFrom(), "/a");
        EXPECT_EQ(status->movedTo(), "/b");
    }
}

TEST_F(SVNStatusTest, ALineBefore15HasNoDepth)
{
    EXPECT_EQ(converted(HSVNVersion::version1_4())->depth(), HSVNDepthUnknown);
    EXPECT_EQ(converted(HSVNVersion::version1_5())->depth(), HSVNDepthInfinity);
}

TEST_F(SVNStatusTest, WithoutAnEntryItsFieldsKeepTheirInitialValues)
{
    status.entry = nullptr;
    status.repos_lock = nullptr;
    status.ood_last_cmt_rev = SVN_INVALID_REVNUM;
    status.ood_last_cmt_date = 0;
    status.ood_last_cmt_author = nullptr;
    const auto record = converted();
    EXPECT_EQ(record->lastChangedRevision(), HSVNInvalidRevision);
    EXPECT_EQ(record->copyFromRevision(), HSVNInvalidRevision);
    EXPECT_EQ(record->outOfDateLastCommitRevision(), HSVNInvalidRevision);
    EXPECT_EQ(record->outOfDateLastCommitDate(), std::nullopt);
    EXPECT_EQ(record->lastChangedDate(), std::nullopt);
    EXPECT_EQ(record->lastChangedAuthor(), std::nullopt);
    EXPECT_EQ(record->checksum(), std::nullopt);
    EXPECT_EQ(record->schedule(), HSVNScheduleNormal);
    EXPECT_EQ(record->depth(), HSVNDepthUnknown);
    EXPECT_FALSE(record->copyFromURL() || record->repositoryLock());
    EXPECT_THROW(HSVNStatus::statusWithSVNStatus(nullptr, HSVNVersion::version1_6()), HSVNAssertionException);
}

TEST(AuthorsOfAScan, AreOneTextWhereTheyAreEqual)
{
    HSVNTextCache texts;
    const std::string sameAuthor = "anna";
    EXPECT_EQ(texts.sharedText("anna"), texts.sharedText(sameAuthor.c_str()));
    EXPECT_NE(texts.sharedText("anna"), texts.sharedText("bert"));
    EXPECT_EQ(texts.sharedText(nullptr), nullptr);
}

TEST(StatusArchiveTest, RefusesCodersWithoutKeysAndValuesThatAreNoKinds)
{
    SequentialCoder sequential;
    EXPECT_THROW(HSVNStatus{}.encodeWithCoder(&sequential), HSVNInvalidArgumentException);
    EXPECT_THROW(HSVNStatus{&sequential}, HSVNInvalidArgumentException);
    EXPECT_THROW(HSVNStatus{}.encodeWithCoder(nullptr), HSVNAssertionException);
    EXPECT_THROW(HSVNStatus{static_cast<HSVNCoder*>(nullptr)}, HSVNAssertionException);
    const std::pair<const char*, std::int64_t> bad[] = {
        {"textStatus", 3}, {"propertyStatus", 8192}, {"repositoryTextStatus", -1}, {"schedule", 4}, {"schedule", -2}};
    for (const auto& [key, value] : bad) {
        HSVNKeyedArchiver archiver;
        archiver.encodeInteger(value, key);
        HSVNKeyedUnarchiver unarchiver{archiver.encodedData()};
        EXPECT_THROW(HSVNStatus{&unarchiver}, HSVNInvalidArgumentException) << key << " " << value;
    }
}

} // namespace
