#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "CommandLine/TextFiles.h"
#include "Output/NotificationListener.h"

namespace {

/// The comment of -m or -F as UTF-8; nil for neither.
std::optional<std::string> commentOf(const Options& options)
{
    const auto& given = options.file ? options.fileContents : options.message;
    if (!given) {
        return std::nullopt;
    }
    if (given->find('\0') != std::string::npos) {
        fail(BadLogMessage, "Lock comment contains a zero byte");
    }
    return withUnixLineEnds(NativeText::toUTF8(*given, options.encoding));
}

void runLock(Session& session)
{
    auto targets = requiredTargetsOfOneKind(session);
    const auto comment = commentOf(session.options);
    targets = unpeggedTargets(targets);
    NotificationPrinter printer{session.options.quiet};
    printNotifications(session, printer);
    session.client()->lock(HSVNTargets::verbatim(targets), {.comment = comment, .steal = session.options.force});
    if (printer.hasWarned()) {
        fail(IllegalTarget, "One or more locks could not be obtained");
    }
}

} // namespace

const Subcommand& lockSubcommand()
{
    static const Subcommand subcommand{"lock",
                                       {},
                                       "Lock working copy paths or URLs in the repository, so that\n"
                                       "no other user can commit changes to them.",
                                       "lock TARGET...",
                                       "--force takes a lock over that someone else or another working copy holds.",
                                       {OptionId::Targets, OptionId::Message, OptionId::File, OptionId::ForceLog,
                                        OptionId::Encoding, OptionId::Force, OptionId::Quiet},
                                       {{OptionId::Message, "specify lock comment ARG"},
                                        {OptionId::File, "read lock comment from file ARG"},
                                        {OptionId::ForceLog, "force validity of lock comment source"},
                                        {OptionId::Force, "steal locks"}},
                                       runLock};
    return subcommand;
}
