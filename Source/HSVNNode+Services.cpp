// Import, export and merge: HSVNNode (Services).

#include "HSVNException.h"
#include "HSVNNode.h"
#include "HSVNRevision.h"
#include "HSVNURL.h"
#include "Internal/Export.h"
#include "Internal/Import.h"
#include "Internal/Merge.h"
#include "Internal/OperationNotifications.h"

// MARK: Import

HSVNRevisionNumber HSVNNode::importNodeAtPath(const HSVNPathRef& path, const HSVNURLRef& url,
                                              const HSVNImportOptionsRef& options, const HSVNContextRef& context)
{
    HSVNRevisionChange change{context,
                              "HSVNNode",
                              "importNodeAtPath:intoRepositoryAtURL:withOptions:withContext:",
                              {{"path", path}, {"url", url}, {"options", options}, {"context", context}}};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionImportStarted, HSVNNotifyActionImportSucceeded, HSVNNotifyActionImportFailed}, *path, url};
    return notifications.run(*context, [&] {
        const auto result = HSVNImport(change, path->string(), url->string(), options->choices());
        if (result.revision == HSVNInvalidRevision) {
            HSVNOperationCancelledException::exceptionWithReason("Operation was cancelled", 0)->raise();
        }
        notifications.succeeded().setRevision(result.revision);
        return result.revision;
    });
}

// MARK: Export

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
    notifications.started().setRevision(HSVNNumberOfExport(*options->revision()));
    return notifications.run(*context, [&] {
        const HSVNRevisionNumber revision =
            HSVNExport(operation, fromPath->string(), toPath->string(), *options->revision(), options->choices());
        notifications.succeeded().setRevision(revision);
        return revision;
    });
}

// MARK: Merge

void HSVNNode::mergeNodeAtPath(const HSVNPathRef& path1, const HSVNRevisionRef& revision1, const HSVNPathRef& path2,
                               const HSVNRevisionRef& revision2, const HSVNPathRef& workingCopyPath,
                               const HSVNMergeOptionsRef& options, const HSVNContextRef& context)
{
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
    HSVNMergeDifference(operation, {operation.cString(path1->string()), revision1->SVNRevision()},
                        {operation.cString(path2->string()), revision2->SVNRevision()}, workingCopyPath->string(),
                        options->choices());
}
