#pragma once

#include "HSVNContext.h"
#include "HSVNNotification.h"
#include "HSVNPath.h"
#include "Internal/CommittedRevision.h"

#include <memory>
#include <string>
#include <vector>

/// The actions of the library's own notifications around one operation.
struct HSVNOperationActions
{
    HSVNNotifyAction started;
    HSVNNotifyAction succeeded;
    HSVNNotifyAction failed;
};

/// The library's own notifications around one operation. `run` sends them; until then, and while the body runs, the
/// operation may fill them in further.
class HSVNOperationNotifications
{
  public:
    /// For an operation on any number of items: the item is named only when there is exactly one, and not in a failure.
    template <class Path>
    HSVNOperationNotifications(const HSVNOperationActions& actions, const std::vector<std::shared_ptr<Path>>& items)
        : HSVNOperationNotifications{actions}
    {
        if (items.size() == 1 && items.front()) {
            nameItem(items.front()->string());
        }
    }
    /// The same for an operation on targets.
    HSVNOperationNotifications(const HSVNOperationActions& actions, const HSVNTargets& targets);
    /// For an operation between two places, both named in all three.
    HSVNOperationNotifications(const HSVNOperationActions& actions, const HSVNPath& path,
                               const HSVNPathRef& alternatePath);
    /// The same for targets; one that is no path, which Subversion refuses in its own words, is no alternate path.
    HSVNOperationNotifications(const HSVNOperationActions& actions, const HSVNTarget& path,
                               const HSVNTarget& alternatePath);

    HSVNNotification& started() { return *_started; }
    HSVNNotification& succeeded() { return *_succeeded; }

    /// Sends the first notification, runs the body and sends the last one. When an exception leaves any of these, the
    /// failed notification carries it, and it goes on; it then tells the revision that the succeeded notification has.
    ///
    /// @return the body's result
    template <class Body>
    auto run(HSVNContext& context, Body body)
    {
        try {
            context.notify(_started);
            auto result = body();
            context.notify(_succeeded);
            return result;
        } catch (...) {
            HSVNCommittedRevision::tell(_succeeded->revision());
            sendFailure(context);
            throw;
        }
    }

  private:
    explicit HSVNOperationNotifications(const HSVNOperationActions& actions);
    void nameItem(const std::string& path);
    void namePlaces(const std::string& path, const HSVNPathRef& alternatePath);
    void sendFailure(HSVNContext& context) noexcept;

    std::shared_ptr<HSVNNotification> _started;
    std::shared_ptr<HSVNNotification> _succeeded;
    std::shared_ptr<HSVNNotification> _failed;
};
