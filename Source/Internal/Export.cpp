#include "Internal/Export.h"

#include "Internal/Browsing.h"
#include "Internal/DepthTranslation.h"
#include "Internal/RevisionNumber.h"

namespace {

svn_error_t* callExport(HSVNOperation& operation, svn_revnum_t* result, const char* from, const char* to,
                        const HSVNRevisionRecords& revisions, const HSVNExportChoices& choices)
{
    const char* const endOfLine = choices.nativeEndOfLine ? operation.cString(*choices.nativeEndOfLine) : nullptr;
    const svn_boolean_t ignoreExternals = !choices.processExternals;
    if (const auto exportTree = operation.newest(&HSVNUpdateFunctions::client_export)) {
        const HSVNUpdateFunctions::Exporting record{.depth = HSVNDepthForSubversion(choices.depth),
                                                    .overwrite = choices.overwrite,
                                                    .ignoreExternals = ignoreExternals,
                                                    .ignoreKeywords = !choices.expandKeywords,
                                                    .nativeEOL = endOfLine};
        return exportTree(result, from, to, &revisions.peg, &revisions.operative, &record, operation.ctx(),
                          operation.pool());
    }
    operation.refuse(!choices.expandKeywords, "expandKeywords");
    operation.refuse(*to == '\0', "to"); // the item's own name, which these places do not make
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        return operation->client_export4(result, from, to, &revisions.peg, &revisions.operative, choices.overwrite,
                                         ignoreExternals, HSVNDepthForSubversion(choices.depth), endOfLine,
                                         operation.ctx(), operation.pool());
    }
    return operation->client_export3(result, from, to, &revisions.peg, &revisions.operative, choices.overwrite,
                                     ignoreExternals, HSVNRecurseForDepth(choices.depth, HSVNDepthFiles), endOfLine,
                                     operation.ctx(), operation.pool());
}

} // namespace

HSVNRevisionNumber HSVNExport(HSVNOperation& operation, const std::string& from, const std::string& to,
                              const HSVNRevisionSpec& revision, const HSVNExportChoices& choices)
{
    const char* const source = operation.cString(from);
    const char* const target = operation.changed(to);
    svn_revnum_t result = SVN_INVALID_REVNUM;
    operation.check(callExport(operation, &result, source, target, HSVNRevisionRecords{revision}, choices));
    return HSVNRevisionNumberFromSubversion(result);
}

HSVNRevisionNumber HSVNNumberOfExport(const HSVNRevisionSpec& revision)
{
    const HSVNRevisionNumber number = revision.operativeRevision()->number();
    return number != HSVNInvalidRevision ? number : revision.pegRevision()->number();
}
