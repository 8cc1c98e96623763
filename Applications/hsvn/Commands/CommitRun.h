#pragma once

#include "Interaction/LogMessage.h"
#include "Output/NotificationPrinter.h"

#include <HSVN/HSVN.h>

#include <functional>
#include <map>
#include <optional>
#include <string>

/// One run of a subcommand that commits, or that makes the same change in a working copy: prints notifications, asks
/// for the log message and tells the revision.
class CommitRun
{
  public:
    /// @param commits  whether the change is committed; a log message is refused otherwise
    /// @param folder   see `LogMessage`
    CommitRun(Session& session, bool commits, NotifiedOperation operation = NotifiedOperation::Other,
              const std::string& folder = {});

    NotificationPrinter& printer() { return _printer; }
    /// Runs the change.
    ///
    /// @throws HSVNException what went wrong, and where an edited message was left
    void run(const std::function<void(HSVNClient& client)>& change);
    /// What --with-revprop gives the new revision.
    std::map<std::string, std::string> revisionProperties() const;
    /// Who prints the new revision; nil for nobody.
    HSVNReceiver<const HSVNCommitResult&> receiver();
    /// Whether it failed for want of a log message or because the result could not be printed: failures of the program,
    /// which Subversion has not put into its words.
    bool hasOwnFailure() const { return _failsToPrint || (_message && _message->hasFailed()); }

  private:
    Session& _session;
    NotificationPrinter _printer;
    std::optional<LogMessage> _message;
    bool _failsToPrint = false;
};

/// Fails when the text or the file of a log message, or of a lock's comment, looks as if the other was meant.
void checkMessageSource(Session& session);
