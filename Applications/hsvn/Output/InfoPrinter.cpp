#include "Output/InfoPrinter.h"

#include "CommandLine/Dates.h"
#include "CommandLine/Errors.h"
#include "CommandLine/Similarity.h"
#include "CommandLine/Targets.h"
#include "Output/InfoFields.h"
#include "Output/Output.h"
#include "Output/Sizes.h"
#include "Output/Words.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace {

constexpr std::array infoItemNames{std::pair{"kind", InfoItem::Kind},
                                   std::pair{"url", InfoItem::URL},
                                   std::pair{"relative-url", InfoItem::RelativeURL},
                                   std::pair{"repos-root-url", InfoItem::RepositoryRootURL},
                                   std::pair{"repos-uuid", InfoItem::RepositoryUUID},
                                   std::pair{"repos-size", InfoItem::RepositorySize},
                                   std::pair{"revision", InfoItem::Revision},
                                   std::pair{"last-changed-revision", InfoItem::LastChangedRevision},
                                   std::pair{"last-changed-date", InfoItem::LastChangedDate},
                                   std::pair{"last-changed-author", InfoItem::LastChangedAuthor},
                                   std::pair{"wc-root", InfoItem::WorkingCopyRoot},
                                   std::pair{"schedule", InfoItem::Schedule},
                                   std::pair{"depth", InfoItem::Depth},
                                   std::pair{"changelist", InfoItem::Changelist}};

/// A label and a value, when there is one.
void addLine(std::string& text, const char* label, const std::optional<std::string>& value)
{
    if (value) {
        text += fmt::format("{}: {}\n", label, *value);
    }
}

std::optional<std::string> humanDateOf(const std::optional<HSVNDate>& date)
{
    return date ? std::optional{humanDate(*date)} : std::nullopt;
}

std::string sizeOf(std::int64_t size, const Options& options)
{
    return options.humanReadable ? humanSize(size, false) : std::to_string(size);
}

/// A side of a conflict, from the root of the item's own repository on where it is there.
std::string versionOf(const std::optional<HSVNConflictVersion>& version, const std::optional<std::string>& ownRoot)
{
    if (!version || !version->repositoryURL || !version->pathInRepository) {
        return "(none)";
    }
    const std::string& root = *version->repositoryURL;
    const std::string& path = *version->pathInRepository;
    const std::string url =
        path.empty() ? root : HSVNURL::URLWithString(root)->pathByNormalizingAndAddingComponent(path)->string();
    return fmt::format("({}) {}@{}", wordOf(version->kind), root == ownRoot ? "^" + url.substr(root.size()) : url,
                       version->pegRevision);
}

/// What is told of all conflicts of an item together.
void addConflicts(std::string& text, const std::vector<HSVNConflictRecord>& conflicts,
                  const std::optional<std::string>& ownRoot)
{
    std::string properties;
    for (const auto& conflict : conflicts) {
        if (conflict.kind == HSVNConflictKind::Text) {
            addLine(text, "Conflict Previous Base File", relativePathOf(conflict.basePath));
            addLine(text, "Conflict Previous Working File", relativePathOf(conflict.myPath));
            addLine(text, "Conflict Current Base File", relativePathOf(conflict.theirPath));
        } else if (conflict.kind == HSVNConflictKind::Property) {
            properties += " " + conflict.propertyName.value_or("");
        } else {
            text += fmt::format("Tree conflict: {}\n", descriptionOfTreeConflict(conflict));
        }
    }
    if (!properties.empty()) {
        text += fmt::format("Conflicted Properties:{}\n", properties);
    }
    if (conflicts.empty()) {
        return;
    }
    const auto& first = conflicts.front();
    if (first.kind != HSVNConflictKind::Tree) {
        text += fmt::format("Conflict Details: {}\n", descriptionOfIncomingEdit(first));
    }
    text += fmt::format("  Source  left: {}\n  Source right: {}\n", versionOf(first.sourceLeft, ownRoot),
                        versionOf(first.sourceRight, ownRoot));
}

void addLockLines(std::string& text, const HSVNLock& lock)
{
    addLine(text, "Lock Token", lock.token());
    addLine(text, "Lock Owner", lock.owner());
    addLine(text, "Lock Created", humanDateOf(lock.exactCreationDate()));
    addLine(text, "Lock Expires", humanDateOf(lock.exactExpirationDate()));
    if (const auto& comment = lock.comment()) {
        const auto lines = std::count(comment->begin(), comment->end(), '\n') + 1;
        text += fmt::format("Lock Comment ({} {}):\n{}\n", lines, lines == 1 ? "line" : "lines", *comment);
    }
}

void addWorkingCopyLines(std::string& text, const HSVNWorkingCopyInfo& copy)
{
    addLine(text, "Schedule", HSVNTextOfSchedule(copy.schedule));
    if (copy.depth != HSVNDepthUnknown && copy.depth != HSVNDepthInfinity) {
        addLine(text, "Depth", HSVNTextOfDepth(copy.depth));
    }
    addLine(text, "Copied From URL", copy.copyFromURL);
    addLine(text, "Copied From Rev", textOf(copy.copyFromRevision));
    addLine(text, "Moved From", relativePathOf(copy.movedFrom));
    addLine(text, "Moved To", relativePathOf(copy.movedTo));
}

const char* checksumKind(const HSVNWorkingCopyInfo& copy) { return copy.checksumIsSHA1 ? "sha1" : "md5"; }

} // namespace

InfoItem infoItemNamed(const std::string& name)
{
    for (const auto& [known, item] : infoItemNames) {
        if (name == known) {
            return item;
        }
    }
    std::vector<const char*> known;
    std::transform(infoItemNames.begin(), infoItemNames.end(), std::back_inserter(known),
                   [](const auto& each) { return each.first; });
    const auto meant = namesLike(name, known);
    fail(ArgumentParsing, fmt::format("'{}' is not a valid value for --show-item{}", name,
                                      meant.empty() ? "" : fmt::format("; did you mean {}?", choiceOf(meant))));
}

void printInfo(const HSVNItemInfo& info, const Options& options)
{
    std::string text;
    addLine(text, "Path", shownTarget(info));
    if (info.kind != HSVNNodeKindDirectory) {
        addLine(text, "Name", baseName(info.target));
    }
    const auto& copy = info.workingCopy;
    addLine(text, "Working Copy Root Path", copy ? copy->rootPath : std::nullopt);
    addLine(text, "URL", info.url);
    addLine(text, "Relative URL", relativeURL(info));
    addLine(text, "Repository Root", info.repositoryRootURL);
    addLine(text, "Repository UUID", info.uuid);
    addLine(text, "Revision", textOf(info.revision));
    addLine(text, "Node Kind", HSVNTextOfNodeKind(info.kind));
    if (info.kind == HSVNNodeKindFile && info.size >= 0) {
        addLine(text, "Size in Repository", sizeOf(info.size, options));
    }
    if (copy) {
        addWorkingCopyLines(text, *copy);
    }
    addLine(text, "Last Changed Author", info.lastChangedAuthor);
    addLine(text, "Last Changed Rev", textOf(info.lastChangedRevision));
    addLine(text, "Last Changed Date", humanDateOf(info.lastChangedDate));
    if (copy) {
        addLine(text, "Text Last Updated", humanDateOf(copy->textTime));
        addLine(text, "Checksum", copy->checksum);
        addConflicts(text, copy->conflicts, info.repositoryRootURL);
    }
    if (info.lock) {
        addLockLines(text, *info.lock);
    }
    addLine(text, "Changelist", copy ? copy->changelist : std::nullopt);
    Output::write(text + "\n");
}

namespace {

std::optional<std::string> valueOf(const HSVNItemInfo& info, InfoItem item, const Options& options)
{
    const auto& copy = info.workingCopy;
    switch (item) {
    case InfoItem::Kind:
        return wordOf(info.kind);
    case InfoItem::URL:
        return info.url;
    case InfoItem::RelativeURL:
        return relativeURL(info);
    case InfoItem::RepositoryRootURL:
        return info.repositoryRootURL;
    case InfoItem::RepositoryUUID:
        return info.uuid;
    case InfoItem::RepositorySize:
        return info.kind == HSVNNodeKindFile && info.size >= 0 ? std::optional{sizeOf(info.size, options)}
                                                               : std::nullopt;
    case InfoItem::Revision:
        return textOf(info.revision);
    case InfoItem::LastChangedRevision:
        return textOf(info.lastChangedRevision);
    case InfoItem::LastChangedDate:
        return info.lastChangedDate ? std::optional{exactDate(*info.lastChangedDate)} : std::nullopt;
    case InfoItem::LastChangedAuthor:
        return info.lastChangedAuthor;
    case InfoItem::WorkingCopyRoot:
        return copy ? copy->rootPath : std::nullopt;
    case InfoItem::Schedule:
        return copy ? std::optional<std::string>{HSVNTextOfSchedule(copy->schedule)} : std::nullopt;
    case InfoItem::Depth:
        return copy && info.kind == HSVNNodeKindDirectory ? std::optional<std::string>{HSVNTextOfDepth(copy->depth)}
                                                          : std::nullopt;
    case InfoItem::Changelist:
        return copy ? copy->changelist : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

void printInfoItem(const HSVNItemInfo& info, InfoItem item, const Options& options,
                   const std::optional<std::string>& name)
{
    const auto value = valueOf(info, item, options);
    if (item == InfoItem::RepositorySize && !value) {
        // Only the repository knows sizes, and only those of files.
        if (info.kind == HSVNNodeKindFile && !name) {
            fail(UnsupportedFeature,
                 fmt::format("can't show in-repository size of working copy file '{}'", shownTarget(info)));
        }
        return;
    }
    const std::string text = value.value_or("");
    const char* const end = options.noNewline ? "" : "\n";
    Output::write(name ? fmt::format("{:<10} {}\n", text, *name) : text + end);
}

nlohmann::ordered_json infoRecord(const HSVNItemInfo& info)
{
    nlohmann::ordered_json record{{"path", shownTarget(info)}};
    for (const auto& [name, item] : infoItemNames) {
        if (const auto value = valueOf(info, item, {})) {
            const bool isNumber =
                item == InfoItem::Revision || item == InfoItem::LastChangedRevision || item == InfoItem::RepositorySize;
            if (isNumber) {
                record[name] = std::stoll(*value);
            } else {
                record[name] = *value;
            }
        }
    }
    if (info.workingCopy && info.workingCopy->checksum) {
        record["checksum"] = {{"kind", checksumKind(*info.workingCopy)}, {"value", *info.workingCopy->checksum}};
    }
    if (info.lock) {
        record["lock"] = {{"token", info.lock->token()}, {"owner", info.lock->owner().value_or("")}};
    }
    for (const auto& conflict : info.workingCopy ? info.workingCopy->conflicts : std::vector<HSVNConflictRecord>{}) {
        record["conflicts"].push_back(conflict.kind == HSVNConflictKind::Tree ? descriptionOfTreeConflict(conflict)
                                      : conflict.kind == HSVNConflictKind::Text
                                          ? "text"
                                          : "property " + conflict.propertyName.value_or(""));
    }
    return record;
}
