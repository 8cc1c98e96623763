#include "HSVNContext.h"
#include "Internal/Move.h"

HSVNCommitResult HSVNContext::move(const HSVNTargets& sources, const HSVNTarget& destination,
                                   const HSVNMoveChoices& choices,
                                   const HSVNReceiver<const HSVNCommitResult&>& receiver)
{
    HSVNAssertParameter(!sources.empty(), "[sources count] > 0");
    HSVNRevisionChange change{*this,
                              "move",
                              {{"sources", sources.texts()}, {"destination", destination.text()}},
                              choices.message,
                              choices.revisionProperties,
                              receiver};
    return HSVNMove(change, sources.texts(), destination.text(), choices);
}
