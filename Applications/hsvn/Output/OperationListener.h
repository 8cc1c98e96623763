#pragma once

#include "CommandLine/Cancellation.h"
#include "Output/Output.h"
#include "Output/Progress.h"

#include <HSVN/HSVN.h>

/// What every delegate of the client does while an operation works: it shows the progress and answers whether to go on.
struct QuietListener
{
    static bool queryContinue(HSVNContext& /*context*/)
    {
        Progress::goOn();
        return !Cancellation::isAsked();
    }
};

/// Says that a server has moved, too, as all do but those that print documents.
struct OperationListener : QuietListener
{
    static void notify(HSVNContext& /*context*/, const HSVNNotificationRef& notification)
    {
        if (notification->action() == HSVNNotifyActionURLRedirect && notification->URL()) {
            Output::write("Redirecting to URL '" + notification->URL()->string() + "':\n");
        }
    }
};
