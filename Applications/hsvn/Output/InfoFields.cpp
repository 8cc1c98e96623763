#include "Output/InfoFields.h"

#include "CommandLine/Targets.h"

std::string shownTarget(const HSVNItemInfo& info) { return relativeToCurrentFolder(info.target); }

std::optional<std::string> relativeURL(const HSVNItemInfo& info)
{
    if (!info.url || !info.repositoryRootURL || !info.url->starts_with(*info.repositoryRootURL)) {
        return std::nullopt;
    }
    const std::string rest = info.url->substr(info.repositoryRootURL->size());
    return "^" + (rest.empty() ? "/" : rest);
}

std::optional<std::string> relativePathOf(const std::optional<std::string>& absolute)
{
    return absolute ? std::optional{relativeToCurrentFolder(*absolute)} : std::nullopt;
}

std::optional<std::string> textOf(HSVNRevisionNumber revision)
{
    return revision == HSVNInvalidRevision ? std::nullopt : std::optional{std::to_string(revision)};
}
