#include "HSVNCallRecorder.h"
#include "HSVNEndOfLine.h"
#include "HSVNExportOptions.h"
#include "HSVNImportOptions.h"
#include "HSVNMergeOptions.h"
#include "HSVNNode.h"
#include "HSVNNotification.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>
#include <optional>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

namespace files = std::filesystem;

using ImportOptions = std::shared_ptr<HSVNImportOptions>;
using ExportOptions = std::shared_ptr<HSVNExportOptions>;
using MergeOptions = std::shared_ptr<HSVNMergeOptions>;

class ImportExportMerge : public WorkingCopyTest
{
  protected:
    HSVNRevisionNumber import(const HSVNPathRef& path, const HSVNURLRef& to,
                              const ImportOptions& options = HSVNImportOptions::defaults()) const
    {
        return HSVNNode::importNodeAtPath(path, to, options, client);
    }
    HSVNRevisionNumber exportTo(const std::string& name, const HSVNPathRef& from,
                                const ExportOptions& options = HSVNExportOptions::defaults()) const
    {
        return HSVNNode::exportNodeAtPath(from, outside(name), options, client);
    }
    std::string exported(const std::string& name) const { return readFile(repository.beside(name)); }
    bool wasExported(const std::string& name) const { return files::exists(repository.beside(name)); }

    /// Merges what the revisions after the first one, up to the second one, did to trunk.
    void merge(HSVNRevisionNumber first, HSVNRevisionNumber second,
               const MergeOptions& options = HSVNMergeOptions::defaults()) const
    {
        HSVNNode::mergeNodeAtPath(url("trunk"), HSVNRevision::revisionWithNumber(first), url("trunk"),
                                  HSVNRevision::revisionWithNumber(second), at(""), options, client);
    }

    bool is1_4() const { return line() == HSVNVersion::version1_4(); }

    /// The own notifications of an operation between two places: their names, and both places in all of them.
    void expectNotifications(const std::vector<std::string>& names, const std::string& path,
                             const HSVNPathRef& alternatePath)
    {
        EXPECT_EQ(delegate->ownActions(), names);
        for (const auto& notification : {delegate->notifications.front(), delegate->notifications.back()}) {
            EXPECT_EQ(notification->path(), path);
            EXPECT_EQ(notification->alternatePath()->string(), alternatePath->string());
        }
        delegate->notifications.clear();
    }
};

const std::string importStarted = "HSVNNotifyActionImportStarted";
const std::string importFailed = "HSVNNotifyActionImportFailed";
const std::string exportStarted = "HSVNNotifyActionExportStarted";
const std::string exportSucceeded = "HSVNNotifyActionExportSucceeded";
const std::string exportFailed = "HSVNNotifyActionExportFailed";

} // namespace

TEST_P(ImportExportMerge, ImportTakesWhatItsOptionsTell)
{
    const auto tree = outside("tree");
    writeFile(tree->string() + "/in.txt", "in\n");
    writeFile(tree->string() + "/skipped.o", "object\n");
    writeFile(tree->string() + "/sub/deep.txt", "deep\n");
    const auto list = [this](const std::string& folder) {
        return mustRun({"svn", "list", "--recursive", repository.url(folder)});
    };
    const int before = repository.youngest();
    EXPECT_EQ(import(tree, url("new/deep/tree")), before + 1);
    EXPECT_EQ(list("new"), "deep/\ndeep/tree/\ndeep/tree/in.txt\ndeep/tree/sub/\ndeep/tree/sub/deep.txt\n");
    EXPECT_EQ(repository.logMessage(before + 1), "a message");
    EXPECT_EQ(delegate->notifications.back()->revision(), before + 1);
    EXPECT_EQ(delegate->withAction(HSVNNotifyActionCommitAdded).size(), 3U);
    expectNotifications({importStarted, "HSVNNotifyActionImportSucceeded"}, tree->string(), url("new/deep/tree"));

    auto options = HSVNImportOptions::defaults();
    options->setRecursive(false);
    import(tree, url("flat"), options);
    EXPECT_EQ(list("flat"), "in.txt\n");
    options->setMatchIgnorePatterns(false);
    import(tree, url("all"), options);
    EXPECT_EQ(list("all"), "in.txt\nskipped.o\n");
    import(outside("tree/in.txt"), url("single.txt"));
    EXPECT_EQ(repository.contents("single.txt"), "in\n");
}

TEST_P(ImportExportMerge, AFailedImportTellsWhy)
{
    writeFile(repository.beside("new.txt"), "");
    const auto source = outside("new.txt");
    delegate->commits = false;
    std::optional<HSVNOperationCancelledException> thrown;
    try {
        import(source, url("new.txt"));
    } catch (const HSVNOperationCancelledException& exception) {
        thrown = exception;
    }
    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->reason(), "Operation was cancelled");
    EXPECT_EQ(thrown->status(), 0);
    ASSERT_FALSE(delegate->notifications.empty());
    ASSERT_TRUE(delegate->notifications.back()->error());
    EXPECT_EQ(delegate->notifications.back()->error()->className(), "HSVNOperationCancelledException");
    expectNotifications({importStarted, importFailed}, source->string(), url("new.txt"));
    delegate->commits = true;
    EXPECT_THROW(import(source, url("trunk/a.txt")), HSVNEntryExistsException);
    expectNotifications({importStarted, importFailed}, source->string(), url("trunk/a.txt"));
    EXPECT_THROW(import(outside("none"), url("x")), HSVNException);
    EXPECT_THROW(import(url("trunk"), url("x")), HSVNException);
    EXPECT_EQ(repository.youngest(), 1);
}

TEST_P(ImportExportMerge, ExportsAWorkingCopyAsItIsOrAsItWas)
{
    writeFile(item("a.txt"), "changed\n");
    writeFile(item("new.txt"), "");
    EXPECT_EQ(exportTo("changed", at("")), HSVNInvalidRevision) << "no single revision is what was exported";
    EXPECT_EQ(exported("changed/a.txt"), "changed\n");
    EXPECT_EQ(exported("changed/dir/c.txt"), "dir/c.txt\n");
    EXPECT_FALSE(wasExported("changed/new.txt") || wasExported("changed/.svn"));
    EXPECT_EQ(delegate->notifications.front()->revision(), HSVNInvalidRevision);
    expectNotifications({exportStarted, exportSucceeded}, repository.beside("changed"), at(""));

    auto options = HSVNExportOptions::defaults();
    options->setRevision(HSVNRevisionSpec::BASE());
    exportTo("base", at(""), options);
    EXPECT_EQ(exported("base/a.txt"), "a.txt\n");
    EXPECT_EQ(exportTo("one.txt", at("a.txt")), HSVNInvalidRevision);
    EXPECT_EQ(exported("one.txt"), "changed\n");
}

TEST_P(ImportExportMerge, ExportsAURLAtTheRevisionAskedFor)
{
    repository.put("trunk/a.txt", "second\n");
    EXPECT_EQ(exportTo("newest.txt", url("trunk/a.txt")), 2);
    delegate->notifications.clear();
    repository.change({"rm", "trunk"});
    auto options = HSVNExportOptions::defaults();
    const auto number = [](HSVNRevisionNumber revision) { return HSVNRevision::revisionWithNumber(revision); };
    options->setInitiatedByUser(false);
    options->setRevision(std::make_shared<HSVNRevisionSpec>(number(1), number(2)));
    EXPECT_EQ(exportTo("first", url("trunk"), options), 1);
    EXPECT_EQ(exported("first/a.txt"), "a.txt\n");
    EXPECT_EQ(delegate->notifications.front()->revision(), 1);
    EXPECT_EQ(delegate->notifications.back()->revision(), 1);
    expectNotifications({"HSVNNotifyActionInternalExportStarted", exportSucceeded}, repository.beside("first"),
                        url("trunk"));

    options->setInitiatedByUser(true);
    options->setRevision(std::make_shared<HSVNRevisionSpec>(HSVNRevision::UNSPECIFIED(), number(2)));
    EXPECT_EQ(exportTo("second", url("trunk"), options), 2);
    EXPECT_EQ(exported("second/a.txt"), "second\n");
    EXPECT_EQ(delegate->notifications.front()->revision(), 2) << "the peg revision's number";
    expectNotifications({exportStarted, exportSucceeded}, repository.beside("second"), url("trunk"));
    EXPECT_EQ(exportTo("single.txt", url("trunk/a.txt"), options), 2);
    EXPECT_EQ(exported("single.txt"), "second\n");

    EXPECT_THROW(exportTo("third", url("trunk")), HSVNException);
    EXPECT_NE(delegate->notifications.back()->error(), nullptr);
    delegate->notifications.erase(delegate->notifications.begin(), delegate->notifications.end() - 2);
    expectNotifications({exportStarted, exportFailed}, repository.beside("third"), url("trunk"));
}

TEST_P(ImportExportMerge, AnExportOverAFolderNeedsLeaveAndKeepsOtherFiles)
{
    writeFile(repository.beside("there/other.txt"), "");
    writeFile(repository.beside("there/a.txt"), "old\n");
    for (const HSVNPathRef& source : {HSVNPathRef{url("trunk")}, at("")}) {
        EXPECT_THROW(exportTo("there", source), HSVNException);
        EXPECT_EQ(exported("there/a.txt"), "old\n");
        auto options = HSVNExportOptions::defaults();
        options->setOverwriteExisting(true);
        exportTo("there", source, options);
        EXPECT_EQ(exported("there/a.txt"), "a.txt\n");
        EXPECT_TRUE(wasExported("there/other.txt"));
        writeFile(repository.beside("there/a.txt"), "old\n");
    }
}

TEST_P(ImportExportMerge, ExportWritesTheLineEndsAskedFor)
{
    writeFile(item("lines.txt"), "1\n2\n");
    mustRun({"svn", "add", "--quiet", item("lines.txt")});
    mustRun({"svn", "propset", "--quiet", "svn:eol-style", "native", item("lines.txt")});
    commitAll();
    int number = 0;
    for (const HSVNPathRef& source : {HSVNPathRef{url("trunk")}, at("")}) {
        for (const auto& [style, contents] :
             std::vector<std::pair<std::optional<std::string>, std::string>>{{HSVNEndOfLineDefault, "1\n2\n"},
                                                                             {HSVNEndOfLineNative, "1\n2\n"},
                                                                             {HSVNEndOfLineLF, "1\n2\n"},
                                                                             {HSVNEndOfLineCR, "1\r2\r"},
                                                                             {HSVNEndOfLineCRLF, "1\r\n2\r\n"}})
        {
            auto options = HSVNExportOptions::defaults();
            options->setEOLMarkers(style);
            const std::string folder = "eol" + std::to_string(++number);
            exportTo(folder, source, options);
            EXPECT_EQ(exported(folder + "/lines.txt"), contents) << style.value_or("default");
            EXPECT_EQ(exported(folder + "/a.txt"), "a.txt\n") << "a file without the property";
        }
        auto options = HSVNExportOptions::defaults();
        options->setEOLMarkers("FF");
        EXPECT_THROW(exportTo("none" + std::to_string(number), source, options), HSVNException);
    }
}

TEST_P(ImportExportMerge, ExportGoesAsDeepAsAskedAndIntoExternals)
{
    repository.change({"propset", "svn:externals", "^/trunk/dir outer", "trunk"});
    const auto exportWith = [this](const std::string& folder, HSVNDepth depth, bool externals) {
        auto options = HSVNExportOptions::defaults();
        options->setDepth(depth);
        options->setProcessExternals(externals);
        exportTo(folder, url("trunk"), options);
    };
    exportWith("all", HSVNDepthInfinity, true);
    EXPECT_TRUE(wasExported("all/outer/c.txt") && wasExported("all/dir/c.txt"));
    exportWith("alone", HSVNDepthUnknown, false);
    EXPECT_TRUE(!wasExported("alone/outer") && wasExported("alone/dir/c.txt"));
    exportWith("files", HSVNDepthFiles, false);
    EXPECT_TRUE(wasExported("files/a.txt") && !wasExported("files/dir"));
    for (const auto depth : {HSVNDepthImmediates, HSVNDepthEmpty}) {
        const std::string folder = "depth" + std::to_string(depth);
        if (!is1_4()) {
            exportWith(folder, depth, false);
            EXPECT_EQ(wasExported(folder + "/dir"), depth == HSVNDepthImmediates);
            EXPECT_FALSE(wasExported(folder + "/dir/c.txt"));
            continue;
        }
        delegate->notifications.clear();
        EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([&] { exportWith(folder, depth, false); }), "Invalid depth");
        EXPECT_FALSE(wasExported(folder));
        EXPECT_EQ(delegate->notifications.back()->error()->name(), "NSInvalidArgumentException");
        expectNotifications({exportStarted, exportFailed}, repository.beside(folder), url("trunk"));
    }
}

TEST_P(ImportExportMerge, MergesADifferenceAndTellsOfConflicts)
{
    repository.put("trunk/a.txt", "theirs\n");
    repository.put("trunk/b.txt", "theirs\n");
    repository.put("trunk/dir/c.txt", "theirs\n");
    writeFile(item("b.txt"), "mine\n");
    auto options = HSVNMergeOptions::defaults();
    options->setDryRun(true);
    merge(1, 4, options);
    EXPECT_EQ(status(), "M       b.txt\n");
    EXPECT_EQ(delegate->withAction(HSVNNotifyActionUpdateUpdate).size(), 3U);

    delegate->notifications.clear();
    merge(1, 4);
    EXPECT_THAT(status(), HasSubstr("M       a.txt\n"));
    EXPECT_THAT(status(), HasSubstr("C       b.txt\n"));
    EXPECT_THAT(status(), HasSubstr("M       dir/c.txt\n"));
    EXPECT_EQ(delegate->withAction(HSVNNotifyActionUpdateUpdate).at(1)->contentState(), 7) << "conflicted";
    // The installed line below the test bundles always sends its own.
    const auto completed = delegate->withAction(HSVNNotifyActionMergeCompleted);
    EXPECT_EQ(completed.size(), line().isLessThan(HSVNVersion::version1_6()) ? 2U : 1U);
    EXPECT_EQ(completed.back()->path(), root);
    EXPECT_THAT(delegate->ownActions(), ElementsAre());
}

TEST_P(ImportExportMerge, MergesOnlyAsDeepAsAskedAndAnyTwoSources)
{
    repository.change({"cp", "HEAD", "trunk", "branch"});
    repository.put("branch/a.txt", "branched\n");
    repository.put("branch/dir/c.txt", "branched\n");
    auto options = HSVNMergeOptions::defaults();
    options->setDepth(HSVNDepthFiles);
    HSVNNode::mergeNodeAtPath(url("trunk"), HSVNRevision::HEAD(), url("branch"), HSVNRevision::HEAD(), at(""), options,
                              client);
    EXPECT_EQ(readFile(item("a.txt")), "branched\n");
    EXPECT_EQ(readFile(item("dir/c.txt")), "dir/c.txt\n");
}

TEST_P(ImportExportMerge, RecordOnlyChangesNoFile)
{
    repository.put("trunk/a.txt", "theirs\n");
    repository.change({"cp", "HEAD", "trunk", "branch"});
    repository.put("trunk/a.txt", "later\n");
    const std::string branch = repository.checkOut("branch-wc", "branch");
    auto options = HSVNMergeOptions::defaults();
    options->setRecordOnly(true);
    const auto record = [&] {
        HSVNNode::mergeNodeAtPath(url("trunk"), HSVNRevision::revisionWithNumber(3), url("trunk"),
                                  HSVNRevision::revisionWithNumber(4), HSVNLocalPath::pathWithString(branch), options,
                                  client);
    };
    if (is1_4()) {
        EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>(record), "Record only option is not supported on 1.4");
        options->setDepth(HSVNDepthImmediates);
        EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>(record), "Invalid depth") << "tested first";
        EXPECT_TRUE(delegate->notifications.empty());
    } else {
        record();
        EXPECT_EQ(readFile(branch + "/a.txt"), "theirs\n");
        EXPECT_EQ(mustRun({"svn", "propget", "svn:mergeinfo", branch}), "/trunk:4\n");
    }
}

TEST_P(ImportExportMerge, AncestryDecidesWhetherUnrelatedFilesAreCompared)
{
    repository.change({"rm", "trunk/a.txt"});
    repository.put("trunk/a.txt", "another file\n");
    auto options = HSVNMergeOptions::defaults();
    options->setIgnoreAncestry(true);
    merge(1, 3, options);
    EXPECT_EQ(status(), "M       a.txt\n");
    mustRun({"svn", "revert", "--quiet", "--recursive", root});
    merge(1, 3);
    EXPECT_THAT(status(), HasSubstr("R  +    a.txt\n"));
}

TEST_P(ImportExportMerge, WhiteSpaceAndLineEndsAreIgnoredWhenAsked)
{
    struct Case
    {
        std::int32_t whitespace;
        bool ignoreEOL;
        std::string theirs;
        std::string mine;
    };
    // The first line differs in each case only in what is to be ignored; without leave that is a conflict.
    for (const auto& [whitespace, ignoreEOL, theirs, mine] :
         {Case{1, false, "one  two\n2\n", "one   two\n2\n"}, Case{2, false, "onetwo\n2\n", "o netwo\n2\n"},
          Case{0, true, "one two\r\n2\n", "one two\r2\n"}})
    {
        SCOPED_TRACE(mine);
        repository.put("trunk/a.txt", "one two\n2\n");
        const int first = repository.youngest();
        mustRun({"svn", "update", "--quiet", root});
        repository.put("trunk/a.txt", theirs);
        for (const bool isIgnored : {false, true}) {
            writeFile(item("a.txt"), mine);
            auto options = HSVNMergeOptions::defaults();
            options->setWhitespaceCompareBehavior(isIgnored ? whitespace : 0);
            options->setIgnoreEOLStyle(isIgnored && ignoreEOL);
            merge(first, first + 1, options);
            EXPECT_EQ(status().find("C       a.txt") == std::string::npos, isIgnored) << status();
            mustRun({"svn", "revert", "--quiet", "--recursive", root});
        }
    }
}

TEST_P(ImportExportMerge, AFailedMergeSendsNoNotificationOfItsOwn)
{
    EXPECT_THROW(merge(1, 99), HSVNException);
    EXPECT_THAT(delegate->ownActions(), ElementsAre());
    EXPECT_TRUE(delegate->withAction(HSVNNotifyActionMergeCompleted).empty());
    EXPECT_EQ(status(), "");
}

INSTANTIATE_TEST_SUITE_P(Lines, ImportExportMerge, everyLineAndAccess(), lineName);

namespace {

using RecordedImportExportMerge = ImportExportMerge;

} // namespace

TEST_P(RecordedImportExportMerge, MakeTheCallOfTheirLine)
{
    HSVNCallRecorder recorder{GetParam()};
    const auto call = [this](const char* on1_4, const char* later, std::vector<std::string> arguments) {
        return HSVNRecordedCall{is1_4() ? on1_4 : later, std::move(arguments)};
    };
    writeFile(repository.beside("new.txt"), "");
    auto importing = HSVNImportOptions::defaults();
    importing->setRecursive(false);
    import(outside("new.txt"), url("new.txt"), importing);
    EXPECT_THAT(recorder.calls(),
                ElementsAre(call("svn_client_import2", "svn_client_import2",
                                 {repository.beside("new.txt"), repository.url("new.txt"), "1", "0"})));

    recorder.clear();
    auto exporting = HSVNExportOptions::defaults();
    exporting->setRevision(
        std::make_shared<HSVNRevisionSpec>(HSVNRevision::revisionWithNumber(1), HSVNRevision::HEAD()));
    exporting->setDepth(HSVNDepthFiles);
    exporting->setOverwriteExisting(true);
    exporting->setProcessExternals(false);
    exporting->setEOLMarkers(HSVNEndOfLineCRLF);
    exportTo("out", url("trunk"), exporting);
    const std::string target = repository.beside("out");
    EXPECT_THAT(recorder.calls(), ElementsAre(call("svn_client_export3", "svn_client_export4",
                                                   {repository.url("trunk"), target, "HEAD", "1", "1", "1",
                                                    is1_4() ? "0" : "files", "CRLF"})));

    recorder.clear();
    auto merging = HSVNMergeOptions::defaults();
    merging->setForce(true);
    merging->setWhitespaceCompareBehavior(2);
    merging->setIgnoreEOLStyle(true);
    merge(1, 2, merging);
    merging->setIgnoreAncestry(true);
    merging->setDryRun(true);
    merging->setForce(false);
    merging->setWhitespaceCompareBehavior(1);
    merging->setIgnoreEOLStyle(false);
    merge(1, 2, merging);
    const std::string trunk = repository.url("trunk");
    const std::vector<std::string> sources{trunk, "1", trunk, "2", root};
    const auto expected = [&](const std::vector<std::string>& on1_4, const std::vector<std::string>& later) {
        auto arguments = sources;
        const auto& rest = is1_4() ? on1_4 : later;
        arguments.insert(arguments.end(), rest.begin(), rest.end());
        return call("svn_client_merge2", "svn_client_merge3", arguments);
    };
    const std::string both = "[--ignore-all-space, --ignore-eol-style]";
    EXPECT_THAT(recorder.calls(),
                ElementsAre(expected({"1", "0", "1", "0", both}, {"infinity", "0", "1", "0", "0", both}),
                            expected({"1", "1", "0", "1", "[--ignore-space-change]"},
                                     {"infinity", "1", "0", "0", "1", "[--ignore-space-change]"})));
}

INSTANTIATE_TEST_SUITE_P(Lines, RecordedImportExportMerge, recordedLines(), lineName);
