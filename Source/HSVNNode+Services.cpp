// Import, export and merge: HSVNNode (Services).

#include "HSVNException.h"
#include "HSVNExportOptions.h"
#include "HSVNImportOptions.h"
#include "HSVNMergeOptions.h"
#include "HSVNNode.h"
#include "HSVNNotification.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNURL.h"
#include "Internal/DepthTranslation.h"
#include "Internal/Operation.h"
#include "Internal/OperationNotifications.h"
#include "Internal/RevisionNumber.h"

// MARK: Import

HSVNRevisionNumber HSVNNode::importNodeAtPath(const HSVNPathRef& path, const HSVNURLRef& url,
                                              const HSVNImportOptionsRef& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(url != nullptr, "url != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNNode",
                            "importNodeAtPath:intoRepositoryAtURL:withOptions:withContext:",
                            {{"path", path}, {"url", url}, {"options", options}, {"context", context}}};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionImportStarted, HSVNNotifyActionImportSucceeded, HSVNNotifyActionImportFailed}, *path, url};
    return notifications.run(*context, [&] {
        svn_commit_info_t* info = nullptr;
        svn_error_t* const error = operation->client_import2(
            &info, operation.changed(path->string()), operation.cString(url->string()), !options->recursive(),
            !options->matchIgnorePatterns(), operation.ctx(), operation.pool());
        operation.check(error, info);
        if (!info) {
            HSVNOperationCancelledException::exceptionWithReason("Operation was cancelled", 0)->raise();
        }
        const HSVNRevisionNumber revision = HSVNRevisionNumberFromSubversion(info->revision);
        notifications.succeeded().setRevision(revision);
        return revision;
    });
}

// MARK: Export

namespace {

svn_error_t* callExport(HSVNOperation& operation, svn_revnum_t* result, const HSVNPath& from, const HSVNPath& to,
                        const HSVNExportOptions& options)
{
    const svn_opt_revision_t peg = options.revision()->pegRevision()->SVNRevision();
    const svn_opt_revision_t operative = options.revision()->operativeRevision()->SVNRevision();
    const char* source = operation.cString(from.string());
    const char* target = operation.changed(to.string());
    const char* endOfLine = options.EOLMarkers() ? operation.cString(*options.EOLMarkers()) : nullptr;
    const svn_boolean_t ignoreExternals = !options.processExternals();
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        return operation->client_export4(result, source, target, &peg, &operative, options.overwriteExisting(),
                                         ignoreExternals, HSVNDepthForSubversion(options.depth()), endOfLine,
                                         operation.ctx(), operation.pool());
    }
    return operation->client_export3(result, source, target, &peg, &operative, options.overwriteExisting(),
                                     ignoreExternals, HSVNRecurseForDepth(options.depth(), HSVNDepthFiles), endOfLine,
                                     operation.ctx(), operation.pool());
}

/// The operative revision's number, or the peg revision's when that has none.
HSVNRevisionNumber numberAskedFor(const HSVNRevisionSpec& revision)
{
    const HSVNRevisionNumber number = revision.operativeRevision()->number();
    return number != HSVNInvalidRevision ? number : revision.pegRevision()->number();
}

} // namespace

HSVNRevisionNumber HSVNNode::exportNodeAtPath(const HSVNPathRef& fromPath, const HSVNPathRef& toPath,
                                              const HSVNExportOptionsRef& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(toPath != nullptr, "toPath != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(fromPath != nullptr, "fromPath != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNNode",
                            "exportNodeAtPath:toPath:withOptions:withContext:",
                            {{"fromPath", fromPath}, {"toPath", toPath}, {"options", options}, {"context", context}}};
    const auto started =
        options->initiatedByUser() ? HSVNNotifyActionExportStarted : HSVNNotifyActionInternalExportStarted;
    HSVNOperationNotifications notifications{
        {started, HSVNNotifyActionExportSucceeded, HSVNNotifyActionExportFailed}, *toPath, fromPath};
    notifications.started().setRevision(numberAskedFor(*options->revision()));
    return notifications.run(*context, [&] {
        svn_revnum_t result = SVN_INVALID_REVNUM;
        operation.check(callExport(operation, &result, *fromPath, *toPath, *options));
        const HSVNRevisionNumber revision = HSVNRevisionNumberFromSubversion(result);
        notifications.succeeded().setRevision(revision);
        return revision;
    });
}

// MARK: Merge

namespace {

apr_array_header_t* mergeOptionTexts(HSVNOperation& operation, const HSVNMergeOptions& options)
{
    auto* texts = operation->apr_array_make(operation.pool(), 4, sizeof(const char*));
    const auto append = [&](const char* text) { *static_cast<const char**>(operation->apr_array_push(texts)) = text; };
    if (options.whitespaceCompareBehavior() == 1) {
        append("--ignore-space-change");
    } else if (options.whitespaceCompareBehavior() == 2) {
        append("--ignore-all-space");
    }
    if (options.ignoreEOLStyle()) {
        append("--ignore-eol-style");
    }
    return texts;
}

struct MergeSource
{
    const char* path;
    svn_opt_revision_t revision;
};

svn_error_t* callMerge(HSVNOperation& operation, const MergeSource& first, const MergeSource& second,
                       const char* target, const HSVNMergeOptions& options)
{
    const apr_array_header_t* texts = mergeOptionTexts(operation, options);
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        return operation->client_merge3(first.path, &first.revision, second.path, &second.revision, target,
                                        HSVNDepthForSubversion(options.depth()), options.ignoreAncestry(),
                                        options.force(), options.recordOnly(), options.dryRun(), texts, operation.ctx(),
                                        operation.pool());
    }
    const bool recurse = HSVNRecurseForDepth(options.depth(), HSVNDepthFiles);
    if (options.recordOnly()) {
        throw HSVNInvalidArgumentException("Record only option is not supported on 1.4");
    }
    return operation->client_merge2(first.path, &first.revision, second.path, &second.revision, target, recurse,
                                    options.ignoreAncestry(), options.force(), options.dryRun(), texts, operation.ctx(),
                                    operation.pool());
}

} // namespace

void HSVNNode::mergeNodeAtPath(const HSVNPathRef& path1, const HSVNRevisionRef& revision1, const HSVNPathRef& path2,
                               const HSVNRevisionRef& revision2, const HSVNPathRef& workingCopyPath,
                               const HSVNMergeOptionsRef& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(path1 != nullptr, "path1 != nil");
    HSVNAssertParameter(revision1 != nullptr, "revision1 != nil");
    HSVNAssertParameter(path2 != nullptr, "path2 != nil");
    HSVNAssertParameter(revision2 != nullptr, "revision2 != nil");
    HSVNAssertParameter(workingCopyPath != nullptr, "workingCopyPath != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context,
        "HSVNNode",
        "mergeNodeAtPath:revision:withNodeAtPath:revision:intoWorkingCopyAtPath:withOptions:withContext:",
        {{"path1", path1},
         {"revision1", revision1},
         {"path2", path2},
         {"revision2", revision2},
         {"workingCopyPath", workingCopyPath},
         {"options", options},
         {"context", context}}};
    operation.check(callMerge(operation, {operation.cString(path1->string()), revision1->SVNRevision()},
                              {operation.cString(path2->string()), revision2->SVNRevision()},
                              operation.changed(workingCopyPath->string()), *options));
    if (!operation.isAtLeast(HSVNVersion::version1_6())) {
        // Lines before 1.6 do not send it themselves.
        auto completed = HSVNNotification::notificationWithAction(HSVNNotifyActionMergeCompleted);
        completed->setPath(workingCopyPath->string());
        context->notify(completed);
    }
}
