#pragma once

#include "HSVNClientDelegate.h"
#include "HSVNNotification.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// A delegate that keeps what it is told and answers as it is set up to.
struct Recorder
{
    /// The answer to a question for a log message.
    std::string message = "a message";
    bool commits = true;

    std::vector<HSVNNotificationRef> notifications;
    /// The items of each question for a log message.
    std::vector<std::vector<HSVNCommitItemRef>> commitItems;

    void notify(HSVNContext&, const HSVNNotificationRef& notification) { notifications.push_back(notification); }

    bool promptForLogMessage(HSVNContext&, std::string& answer, std::vector<HSVNCommitItemRef> items)
    {
        commitItems.push_back(std::move(items));
        answer = message;
        return commits;
    }

    /// The notifications of an action, in the order of their arrival.
    std::vector<HSVNNotificationRef> withAction(HSVNNotifyAction action) const
    {
        std::vector<HSVNNotificationRef> found;
        for (const auto& notification : notifications) {
            if (notification->action() == action) {
                found.push_back(notification);
            }
        }
        return found;
    }

    /// The names of the library's own notifications, in the order of their arrival.
    std::vector<std::string> ownActions() const
    {
        std::vector<std::string> names;
        for (const auto& notification : notifications) {
            if (notification->action() >= HSVNNotifyActionUpdateStarted) {
                names.push_back(HSVNNotification::stringForAction(notification->action()));
            }
        }
        return names;
    }
};

using RecordingDelegate = HSVNClientDelegateFor<Recorder>;
