#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/Output.h"

#include <fmt/format.h>

namespace {

[[noreturn]] void failAdvising(const std::string& message)
{
    fail(ArgumentParsing, fmt::format("Try '{} help' for more info", programName()), failure(ArgumentParsing, message));
}

std::string pathOfRepository(const Session& session)
{
    if (session.arguments.empty()) {
        fail(ArgumentParsing, "Repository argument required");
    }
    std::string path = NativeText::toUTF8(session.arguments.front());
    if (isURL(path)) {
        fail(ArgumentParsing, fmt::format("'{}' is a URL when it should be a local path", path));
    }
    if (session.arguments.size() > 1) {
        failAdvising("Too many arguments");
    }
    while (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    return path;
}

/// What the types of repositories cannot do.
void checkType(const std::string& type, const std::optional<HSVNVersion>& version)
{
    if (type == "bdb") {
        Output::writeError(fmt::format("{}: warning: The \"bdb\" repository back-end is deprecated, consider using "
                                       "\"fsfs\" instead.\n",
                                       programName()));
    }
    if (version && version->isLessThan({1, 1}) && type != "bdb") {
        failAdvising("Repositories compatible with 1.0.x must use --fs-type=bdb");
    }
    if (version && version->isLessThan({1, 9}) && type == "fsx") {
        failAdvising("Repositories compatible with 1.8.x or earlier cannot use --fs-type=fsx");
    }
}

void runCreate(Session& session)
{
    const Options& options = session.options;
    const std::string path = pathOfRepository(session);
    checkType(options.fileSystemType.value_or("fsfs"), options.compatibleVersion);
    HSVNCreateRepository(HSVNTarget::verbatim(path),
                         {.type = options.fileSystemType,
                          .compatibleVersion = options.compatibleVersion,
                          .syncAtTransactionCommit = !options.bdbTransactionNoSync,
                          .automaticLogFileRemoval = !options.bdbLogKeep},
                         session.context());
}

} // namespace

const Subcommand& createSubcommand()
{
    static const Subcommand subcommand{
        "create",
        {},
        "Create a new, empty repository.",
        "create REPOS_PATH",
        "REPOS_PATH is a folder that is missing or empty.",
        {OptionId::BDBTxnNosync, OptionId::BDBLogKeep, OptionId::ConfigDir, OptionId::FileSystemType,
         OptionId::CompatibleVersion, OptionId::Pre14Compatible, OptionId::Pre15Compatible, OptionId::Pre16Compatible},
        {},
        runCreate,
        RevisionUse::One,
        HSVNDepthFiles,
        true};
    return subcommand;
}
