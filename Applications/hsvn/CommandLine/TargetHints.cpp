#include "CommandLine/TargetHints.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/RevisionArguments.h"
#include "CommandLine/Similarity.h"
#include "CommandLine/Targets.h"
#include "Output/Pager.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fmt/format.h>
#include <optional>
#include <unistd.h>

namespace {

bool isAnyOf(const HSVNException& exception, std::initializer_list<std::int32_t> codes)
{
    return std::any_of(codes.begin(), codes.end(), [&](std::int32_t code) { return hasCause(exception, code); });
}

bool isAboutMissingTarget(const HSVNException& exception)
{
    return isAnyOf(exception, {ENOENT, BadFileName, EntryNotFound, WorkingCopyNotDirectory, WorkingCopyPathNotFound,
                               NodeNotFound, IllegalURL, ServerPathNotFound, UnversionedResource, IllegalTarget});
}

bool exists(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::symlink_status(NativeText::fromUTF8(localStyle(path)), ignored).type() !=
           std::filesystem::file_type::not_found;
}

std::vector<std::string> namesInFolder(const std::string& folder)
{
    constexpr std::size_t most = 10000; // where there are more, most resemble each other
    std::vector<std::string> names;
    std::error_code failure;
    for (std::filesystem::directory_iterator each{NativeText::fromUTF8(localStyle(folder)), failure}, end;
         !failure && each != end && names.size() < most; each.increment(failure))
    {
        names.push_back(NativeText::toUTF8(each->path().filename().string()));
    }
    return names;
}

/// The name that resembles another one most: first of all the same but for case and accents.
std::optional<std::string> closest(const std::string& name, const std::vector<std::string>& names)
{
    const auto folded =
        std::find_if(names.begin(), names.end(), [form = HSVNString::stringForSearching(name)](const auto& each) {
            return HSVNString::stringForSearching(each) == form;
        });
    if (folded != names.end()) {
        return *folded == name ? std::nullopt : std::optional{*folded};
    }
    std::vector<const char*> known;
    std::transform(names.begin(), names.end(), std::back_inserter(known),
                   [](const auto& each) { return each.c_str(); });
    auto found = namesLike(name, known);
    return found.empty() ? std::nullopt : std::optional{std::move(found.front())};
}

/// A path with its first missing component in the form of one that is there.
std::optional<std::string> similarPath(const std::string& path)
{
    std::string missing = path;
    while (!exists(parentFolder(missing))) {
        missing = parentFolder(missing);
    }
    if (exists(missing)) {
        return std::nullopt;
    }
    const auto name = closest(baseName(missing), namesInFolder(parentFolder(missing)));
    if (!name) {
        return std::nullopt;
    }
    const std::string found = joined(parentFolder(missing), *name);
    const std::string whole = found + path.substr(missing.size());
    return exists(whole) ? whole : found;
}

/// The same of a URL's last component.
std::optional<std::string> similarURL(Session& session, const HSVNArguments::Pegged& target)
{
    const std::string parent = parentFolder(target.target);
    const auto& revision = session.options.startRevision()->isEqual(HSVNRevision::UNSPECIFIED())
                               ? HSVNRevision::HEAD()
                               : session.options.startRevision();
    std::vector<std::string> names;
    session.client()->list(HSVNTarget::verbatim(parent),
                           HSVNRevisionSpec::revisionWithRevision(revision, target.pegRevision), {.allFields = false},
                           [&](const HSVNNodeRef& node) { names.push_back(node->name().value_or("")); });
    const auto name = closest(nameOfURL(target.target), names);
    return name ? std::optional{joined(parent, *name)} : std::nullopt;
}

/// The target that an argument names; its form does not matter where it is a path.
HSVNArguments::Pegged targetNamed(Session& session, const std::string& argument)
{
    const auto list = HSVNArguments::canonicalTargets({NativeText::toUTF8(argument)}, session.client());
    return HSVNArguments::parse(list.targets.empty() ? "" : list.targets.front(), session.client());
}

std::optional<std::string> hintAt(Session& session, const std::string& argument, bool isAboutRevision)
{
    const auto target = targetNamed(session, argument);
    if (isAboutRevision) {
        return fmt::format("HEAD is {}", session.client()->latestRevision(HSVNTarget::verbatim(target.target)));
    }
    const auto similar = isURL(target.target) ? similarURL(session, target) : similarPath(target.target);
    return similar ? std::optional{fmt::format("Did you mean '{}'?", *similar)} : std::nullopt;
}

} // namespace

std::vector<std::string> targetHints(Session& session, const HSVNException& exception)
{
    constexpr std::size_t mostTargets = 8;
    const bool isAboutRevision = hasCause(exception, noSuchRevision);
    if (!Pager::isBeforeTerminal(STDERR_FILENO) || (!isAboutRevision && !isAboutMissingTarget(exception))) {
        return {};
    }
    std::vector<std::string> arguments = session.arguments;
    arguments.resize(std::clamp<std::size_t>(arguments.size(), 1, isAboutRevision ? 1 : mostTargets));
    std::vector<std::string> hints;
    for (const auto& argument : arguments) {
        try {
            if (auto hint = hintAt(session, argument, isAboutRevision)) {
                hints.push_back(std::move(*hint));
            }
        } catch (const HSVNException&) { // NOLINT(bugprone-empty-catch)
            // The subcommand's own failure is what counts.
        }
    }
    return hints;
}
