#include "HSVNContext.h"
#include "Internal/Copy.h"

HSVNCommitResult HSVNContext::copy(const std::vector<HSVNTargetInRevision>& sources, const HSVNTarget& destination,
                                   const HSVNCopyChoices& choices,
                                   const HSVNReceiver<const HSVNCommitResult&>& receiver)
{
    HSVNAssertParameter(!sources.empty(), "[sources count] > 0");
    std::vector<std::pair<std::string, HSVNRevisionSpecRef>> named;
    for (const auto& source : sources) {
        named.emplace_back(source.target.text(), source.revision);
    }
    HSVNRevisionChange change{*this,
                              "copy",
                              {{"sources", named}, {"destination", destination.text()}},
                              choices.message,
                              choices.revisionProperties,
                              receiver};
    return HSVNCopy(change, sources, destination.text(), choices);
}
