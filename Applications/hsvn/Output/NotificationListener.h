#pragma once

#include "CommandLine/Session.h"
#include "Output/NotificationPrinter.h"
#include "Output/OperationListener.h"

/// Prints what the client notifies; answers nothing but that and cancellation. The printer outlives it.
class NotificationListener : public OperationListener
{
  public:
    explicit NotificationListener(NotificationPrinter& printer) : _printer{printer} {}

    void notify(HSVNContext& /*context*/, const HSVNNotificationRef& notification) { _printer.print(*notification); }

  private:
    NotificationPrinter& _printer;
};

/// Has the session's client print its notifications.
inline void printNotifications(Session& session, NotificationPrinter& printer)
{
    session.setDelegate(std::make_shared<HSVNClientDelegateFor<NotificationListener>>(printer));
}
