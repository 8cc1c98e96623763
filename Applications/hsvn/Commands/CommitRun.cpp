#include "Commands/CommitRun.h"

#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "Output/NotificationListener.h"
#include "Output/Output.h"

#include <fmt/format.h>
#include <string_view>
#include <sys/stat.h>

namespace {

/// Answers the client's questions for log messages beside printing.
class CommitListener : public NotificationListener
{
  public:
    CommitListener(NotificationPrinter& printer, LogMessage& message) : NotificationListener{printer}, _message{message}
    {
    }

    bool promptForLogMessage(HSVNContext& /*context*/, std::string& message,
                             const std::vector<HSVNCommitItemRef>& items)
    {
        return _message.answer(message, items);
    }

  private:
    LogMessage& _message;
};

void printResult(const HSVNCommitResult& result)
{
    if (result.revision != HSVNInvalidRevision) {
        Output::write(fmt::format("Committed revision {}.\n", result.revision));
    }
    if (result.postCommitError) {
        Output::write(fmt::format("\nWarning: {}\n", *result.postCommitError));
    }
    Output::flush();
}

bool isVersioned(const std::string& path, const HSVNClientRef& client)
{
    bool isVersioned = false;
    try {
        client->status(HSVNTarget::verbatim(path), {.depth = HSVNDepthEmpty, .getAll = true},
                       [&](const HSVNNodeRef& node) { isVersioned = isVersioned || node->status()->versioned(); });
    } catch (const HSVNException&) { // NOLINT(bugprone-empty-catch): no working copy there
    }
    return isVersioned;
}

} // namespace

CommitRun::CommitRun(Session& session, bool commits, NotifiedOperation operation, const std::string& folder)
    : _session{session}, _printer{session.options.quiet, operation}
{
    if (!commits) {
        refuseLogMessage(session.options);
        printNotifications(session, _printer);
        return;
    }
    _message.emplace(session, folder);
    session.setDelegate(std::make_shared<HSVNClientDelegateFor<CommitListener>>(_printer, *_message));
}

std::map<std::string, std::string> CommitRun::revisionProperties() const
{
    return revisionPropertiesOf(_session.options);
}

HSVNReceiver<const HSVNCommitResult&> CommitRun::receiver()
{
    if (_session.options.quiet) {
        return {};
    }
    return [this](const HSVNCommitResult& result) {
        _failsToPrint = true;
        printResult(result);
        _failsToPrint = false;
    };
}

void CommitRun::run(const std::function<void(HSVNClient& client)>& change)
{
    try {
        change(*_session.client());
    } catch (const HSVNException& exception) {
        throw _message ? _message->withLeftFile(exception) : exception;
    }
    if (_message) {
        _message->discardFile();
    }
}

void checkMessageSource(Session& session)
{
    const Options& options = session.options;
    if (options.forceLog || !session.subcommand->accepts(OptionId::ForceLog)) {
        return;
    }
    const bool isLock = std::string_view{session.subcommand->name} == "lock";
    if (options.file && isVersioned(*options.file, session.client())) {
        fail(LogMessageIsVersionedFile, fmt::format("{} file is a versioned file; use '--force-log' to override",
                                                    isLock ? "Lock comment" : "Log message"));
    }
    struct stat found = {};
    if (options.message && lstat(options.message->c_str(), &found) == 0) {
        fail(LogMessageIsPath, fmt::format("The {} is a pathname (was -F intended?); use '--force-log' to override",
                                           isLock ? "lock comment" : "log message"));
    }
}
