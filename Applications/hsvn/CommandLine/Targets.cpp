#include "CommandLine/Targets.h"

#include "CommandLine/NativeText.h"
#include "CommandLine/RevisionArguments.h"
#include "Output/ErrorOutput.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <system_error>
#include <utility>

namespace {

/// The current folder as it was at the beginning: an operation may put a file in its place.
struct CurrentFolder
{
    std::error_code failure; ///< of asking for it
    std::filesystem::path native = std::filesystem::current_path(failure);
    std::string path = NativeText::toUTF8(native.string());
};

const CurrentFolder& currentFolder()
{
    static const CurrentFolder folder;
    return folder;
}

} // namespace

std::vector<std::string> targetsOf(Session& session)
{
    std::vector<std::string> arguments;
    for (const auto& argument : session.arguments) {
        arguments.push_back(NativeText::toUTF8(argument));
    }
    const auto& further = session.options.targets;
    arguments.insert(arguments.end(), further.begin(), further.end());
    auto list = HSVNArguments::canonicalTargets(arguments, session.client());
    if (list.skipped) {
        printError(*list.skipped, programName() + ": Skipping argument: ");
    }
    return std::move(list.targets);
}

std::vector<std::string> targetsOrCurrentFolder(Session& session)
{
    const bool isImplicit = session.arguments.empty() && session.options.targets.empty();
    auto targets = isImplicit ? std::vector<std::string>{""} : targetsOf(session);
    if (targets.empty()) {
        targets.emplace_back();
    }
    return targets;
}

std::vector<std::string> requiredTargets(Session& session)
{
    auto targets = targetsOf(session);
    if (targets.empty()) {
        fail(InsufficientArguments, "Not enough arguments provided");
    }
    return targets;
}

std::string takeArgument(Session& session)
{
    if (session.arguments.empty()) {
        fail(InsufficientArguments, "Not enough arguments provided");
    }
    std::string argument = std::move(session.arguments.front());
    session.arguments.erase(session.arguments.begin());
    return argument;
}

HSVNArguments::Pegged peggedTarget(Session& session, const std::string& target)
{
    try {
        return HSVNArguments::parse(target, session.client());
    } catch (const HSVNException& exception) {
        const std::string meant = suggestedRevision(target.substr(target.rfind('@') + 1));
        if (meant.empty()) {
            throw;
        }
        throw failure(exception.status(), exception.reason() + meant);
    } catch (const HSVNInvalidArgumentException&) {
        const auto at = target.rfind('@') + 1;
        return HSVNArguments::parse(target.substr(0, at) + clampedText(session.options, target.substr(at)),
                                    session.client());
    }
}

std::vector<std::string> unpeggedTargets(const std::vector<std::string>& targets)
{
    std::vector<std::string> result;
    for (const auto& target : targets) {
        const auto at = target.rfind('@');
        const auto slash = target.rfind('/');
        const bool hasPeg = at != std::string::npos && (slash == std::string::npos || at > slash);
        if (hasPeg && at + 1 < target.size()) {
            fail(IllegalTarget, fmt::format("'{}': a peg revision is not allowed here", target));
        }
        result.push_back(hasPeg ? target.substr(0, at) : target);
    }
    return result;
}

std::vector<std::string> localTargets(const std::vector<std::string>& targets)
{
    auto result = unpeggedTargets(targets);
    requireLocal(result);
    return result;
}

void requireLocal(const std::vector<std::string>& targets)
{
    for (const auto& target : targets) {
        if (isURL(target)) {
            fail(ArgumentParsing, fmt::format("'{}' is not a local path", target));
        }
    }
}

std::vector<std::string> requiredTargetsOfOneKind(Session& session)
{
    auto targets = requiredTargets(session);
    requireOneKind(targets);
    return targets;
}

void requireOneKind(const std::vector<std::string>& targets)
{
    for (const auto& target : targets) {
        if (isURL(target) != isURL(targets.front())) {
            fail(ArgumentParsing, "Error parsing arguments",
                 failure(IllegalTarget, "Cannot mix repository and working copy targets"));
        }
    }
}

void rememberCurrentFolder() { currentFolder(); }

bool isURL(const std::string& target) { return target.find("://") != std::string::npos; }

std::string localStyle(std::string path)
{
    if (path.empty()) {
        path = '.';
    }
    return path;
}

std::optional<std::string_view> pathBelow(std::string_view path, std::string_view folder)
{
    if (!path.starts_with(folder)) {
        return std::nullopt;
    }
    const std::string_view rest = path.substr(folder.size());
    if (rest.empty() || folder == "/") {
        return rest;
    }
    return rest.front() == '/' ? std::optional{rest.substr(1)} : std::nullopt;
}

std::string relativeToCurrentFolder(const std::string& path)
{
    const auto& folder = currentFolder();
    return localStyle(std::string{folder.failure ? path : pathBelow(path, folder.path).value_or(path)});
}

std::string absolutePath(const std::string& path)
{
    if (path.starts_with('/')) {
        return path;
    }
    const auto& folder = currentFolder();
    if (folder.failure) {
        fail(BadFileName, fmt::format("Couldn't determine absolute path of '{}'", localStyle(path)),
             failure(folder.failure.value(), folder.failure.message()));
    }
    const std::string absolute = std::filesystem::path{joined(folder.path, path)}.lexically_normal().string();
    return absolute.size() > 1 && absolute.ends_with('/') ? absolute.substr(0, absolute.size() - 1) : absolute;
}

std::string relativePath(const std::string& path, const std::string& folder)
{
    std::string up;
    for (std::string_view base{folder};; base = base.substr(0, base.rfind('/'))) {
        if (const auto rest = pathBelow(path, base.empty() ? "/" : base)) {
            return rest->empty() && !up.empty() ? up.substr(0, up.size() - 1) : up.append(*rest);
        }
        up += "../";
    }
}

std::string joined(const std::string& folder, const std::string& path)
{
    if (folder.empty() || path.empty()) {
        return folder + path;
    }
    return folder.ends_with('/') ? folder + path : folder + "/" + path;
}

std::string baseName(const std::string& path) { return path == "/" ? path : path.substr(path.rfind('/') + 1); }

std::string parentFolder(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, std::max<std::size_t>(slash, 1));
}

std::string commonFolder(const std::vector<std::string>& paths)
{
    std::string folder = paths.front();
    for (const auto& path : paths) {
        while (!pathBelow(path, folder)) {
            folder = parentFolder(folder);
        }
    }
    return folder;
}

std::string nameOfURL(const std::string& url) { return HSVNURL::URLWithString(url)->denormalizedLastComponent(); }
