#include "HSVNContext.h"
#include "Internal/Browsing.h"
#include "Internal/ConflictRecord.h"
#include "Internal/DepthTranslation.h"
#include "Internal/Operation.h"
#include "Internal/RevisionNumber.h"

HSVNRevisionNumber HSVNContext::switchTo(const HSVNTarget& path, const HSVNTarget& url,
                                         const HSVNRevisionArgument& revision, const HSVNSwitchChoices& choices)
{
    HSVNAssertParameter(revision.spec() != nullptr, "revision != nil");
    HSVNOperation operation{
        *this, "switchTo", {{"path", path.text()}, {"url", url.text()}, {"revision", revision.spec()}}};
    const HSVNRevisionRecords revisions{*revision.spec()};
    const HSVNConflictChoosing choosing{operation, choices.chooser};
    const HSVNUpdateFunctions::Updating record{.depth = HSVNDepthForSubversion(choices.depth),
                                               .depthIsSticky = choices.depthIsSticky,
                                               .ignoreExternals = !choices.processExternals,
                                               .allowObstructions = choices.allowObstructions,
                                               .ignoreAncestry = choices.ignoreAncestry,
                                               .choosing = choosing.record()};
    svn_revnum_t result = SVN_INVALID_REVNUM;
    operation.call(&HSVNUpdateFunctions::client_switch, &result, operation.changed(path.text()),
                   operation.cString(url.text()), &revisions.peg, &revisions.operative, &record, operation.ctx(),
                   operation.pool());
    return HSVNRevisionNumberFromSubversion(result);
}
