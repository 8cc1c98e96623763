#include "HSVNContext.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "Internal/Browsing.h"
#include "Internal/ConflictRecord.h"
#include "Internal/DepthTranslation.h"
#include "Internal/Operation.h"
#include "Internal/RevisionNumber.h"

namespace {

/// Refuses what the functions of older lines do not do; those before 1.7 compare no ancestry.
void refuseForOlderLines(const HSVNOperation& operation, const HSVNRevisionSpec& revision,
                         const HSVNSwitchChoices& choices)
{
    operation.refuse(choices.chooser && !operation.isAtLeast({1, 7}), "chooser");
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        return;
    }
    const auto& peg = revision.pegRevision();
    const bool isPegged = !peg->isEqual(HSVNRevision::UNSPECIFIED()) && !peg->isEqual(revision.operativeRevision());
    operation.refuse(isPegged, "peg revision");
    operation.refuse(!HSVNIsDepthOf1_4(choices.depth), "depth");
    operation.refuse(choices.depthIsSticky, "depthIsSticky");
    operation.refuse(!choices.processExternals, "processExternals");
    operation.refuse(choices.allowObstructions, "allowObstructions");
}

} // namespace

HSVNRevisionNumber HSVNContext::switchTo(const HSVNTarget& path, const HSVNTarget& url,
                                         const HSVNRevisionArgument& revision, const HSVNSwitchChoices& choices)
{
    const auto spec = HSVNSpecOrHead(revision.spec());
    HSVNAssertParameter(spec != nullptr, "revision != nil");
    HSVNOperation operation{*this, "switchTo", {{"path", path.text()}, {"url", url.text()}, {"revision", spec}}};
    refuseForOlderLines(operation, *spec, choices);
    const HSVNRevisionRecords revisions{*spec};
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
