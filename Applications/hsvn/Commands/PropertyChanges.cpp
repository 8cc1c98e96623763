#include "Commands/PropertyChanges.h"

#include "CommandLine/Errors.h"
#include "CommandLine/Targets.h"
#include "Output/NotificationListener.h"
#include "Output/PropertyPrinter.h"

#include <algorithm>

void changeRevisionProperty(Session& session, const std::string& name, const std::optional<std::string>& value)
{
    const auto target = revisionPropertyTarget(session, unpeggedTargets(targetsOrCurrentFolder(session)));
    NotificationPrinter printer{session.options.quiet};
    printNotifications(session, printer);
    HSVNChangeRevisionProperty(name, value, target.url, target.revision, session.options.force, session.client());
}

void changeProperty(Session& session, const std::string& name, const std::optional<std::string>& value,
                    const std::vector<std::string>& targets)
{
    const auto urls = std::count_if(targets.begin(), targets.end(), isURL);
    if (urls != 0) {
        fail(IllegalTarget, urls == static_cast<std::ptrdiff_t>(targets.size())
                                ? "Targets must be working copy paths"
                                : "Cannot mix repository and working copy targets");
    }
    HSVNPropertyChangeOptions wishes;
    wishes.depth = session.options.depthOr(HSVNDepthEmpty);
    wishes.force = session.options.force;
    wishes.changelists = session.options.changelists;
    NotificationPrinter printer{session.options.quiet};
    printNotifications(session, printer);
    HSVNChangeProperty(name, value, targets, wishes, session.client());
}
