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
    session.client()->setRevisionProperty(HSVNTarget::verbatim(target.url), name, value, target.revision,
                                          {.force = session.options.force});
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
    NotificationPrinter printer{session.options.quiet};
    printNotifications(session, printer);
    session.client()->setProperty(HSVNTargets::verbatim(targets), name, value,
                                  {.depth = session.options.depthOr(HSVNDepthEmpty),
                                   .force = session.options.force,
                                   .changelists = session.options.changelists});
}
