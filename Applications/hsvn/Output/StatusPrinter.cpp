#include "Output/StatusPrinter.h"

#include "CommandLine/Dates.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Targets.h"
#include "Output/Display.h"
#include "Output/Output.h"
#include "Output/Words.h"
#include "Output/XML.h"

#include <filesystem>
#include <fmt/format.h>

namespace {

/// One state for the first column: that of the text where the node's own only says that something is modified.
HSVNStatusKind combinedStatus(const HSVNItemStatus& status)
{
    if (status.nodeStatus == HSVNStatusKindConflicted && !status.versioned && status.conflicted) {
        // A tree conflict's victim that is gone, unless something else took its place.
        return std::filesystem::exists(std::filesystem::symlink_status(NativeText::fromUTF8(status.absolutePath)))
                   ? HSVNStatusKindUnversioned
                   : HSVNStatusKindMissing;
    }
    const bool asksText = status.nodeStatus == HSVNStatusKindConflicted || status.nodeStatus == HSVNStatusKindModified;
    return asksText ? status.textStatus : status.nodeStatus;
}

/// The second column: the properties of what is new as a whole are new with it.
char propertyLetter(const HSVNItemStatus& status)
{
    const bool isNew = status.nodeStatus == HSVNStatusKindAdded && status.propertyStatus == HSVNStatusKindModified;
    return isNew ? ' ' : letterOf(status.propertyStatus);
}

HSVNStatusKind combinedRepositoryStatus(const HSVNItemStatus& status)
{
    return status.repositoryNodeStatus == HSVNStatusKindModified ? status.repositoryTextStatus
                                                                 : status.repositoryNodeStatus;
}

char switchLetter(const HSVNItemStatus& status) { return status.switched ? 'S' : status.fileExternal ? 'X' : ' '; }

/// The lock column when the repository was asked.
char lockLetter(const HSVNItemStatus& status)
{
    if (!status.repositoryLock) {
        return status.lock ? 'B' : ' ';
    }
    if (!status.lock) {
        return 'O';
    }
    return status.lock->isEqualToLock(status.repositoryLock) ? 'K' : 'T';
}

std::string workingRevision(const HSVNItemStatus& status)
{
    if (!status.versioned) {
        return "";
    }
    if (status.revision != HSVNInvalidRevision) {
        return std::to_string(status.revision);
    }
    return "-";
}

/// A value as a column shows it: unknown for versioned items that have none.
std::string column(const std::optional<std::string>& value, bool versioned)
{
    return value.value_or(versioned ? " ? " : "");
}

std::optional<std::string> revisionText(HSVNRevisionNumber revision)
{
    return revision == HSVNInvalidRevision ? std::nullopt : std::optional{std::to_string(revision)};
}

nlohmann::ordered_json lockRecord(const HSVNLock& lock)
{
    nlohmann::ordered_json record{{"token", lock.token()}};
    if (lock.owner()) {
        record["owner"] = *lock.owner();
    }
    if (lock.comment()) {
        record["comment"] = *lock.comment();
    }
    if (const auto date = lock.exactCreationDate()) {
        record["created"] = exactDate(*date);
    }
    return record;
}

} // namespace

void StatusPrinter::setTarget(const std::string& target)
{
    _target = target;
    _absoluteTarget = absolutePath(target);
}

std::string StatusPrinter::shown(const std::string& absolute) const
{
    const std::string relative = relativePath(absolute, _absoluteTarget);
    return localStyle(relative.starts_with("../") ? relative : joined(_target, relative));
}

std::string StatusPrinter::detailedColumns(const HSVNItemStatus& status) const
{
    const Options& options = _session.options;
    const char locks = options.showUpdates ? lockLetter(status) : status.lock ? 'K' : ' ';
    const char tree = status.treeConflicted ? 'C' : ' ';
    const char outOfDate = status.repositoryNodeStatus != HSVNStatusKindNone ? '*' : ' ';
    std::string columns = fmt::format("{}{} {} {:>8} ", locks, tree, outOfDate, workingRevision(status));
    if (!options.verbose) {
        return columns + "  ";
    }
    return columns + fmt::format("{:>8} {:<12} ", column(revisionText(status.changedRevision), status.versioned),
                                 column(status.changedAuthor, status.versioned));
}

std::string StatusPrinter::moveLines(const HSVNItemStatus& status) const
{
    if (status.movedFrom && status.movedFrom == status.movedTo) {
        return fmt::format("\n        > swapped places with {}", shown(*status.movedFrom));
    }
    const std::string to = status.movedTo ? fmt::format("\n        > moved to {}", shown(*status.movedTo)) : "";
    return status.movedFrom ? to + fmt::format("\n        > moved from {}", shown(*status.movedFrom)) : to;
}

std::string StatusPrinter::treeConflictLine(const HSVNItemStatus& status)
{
    std::string line;
    const auto describe = [&](const HSVNItemInfo& info) {
        for (const auto& conflict : info.workingCopy ? info.workingCopy->conflicts : std::vector<HSVNConflictRecord>{})
        {
            if (conflict.kind == HSVNConflictKind::Tree) {
                line = "\n      >   " + descriptionOfTreeConflict(conflict);
            }
        }
    };
    if (status.treeConflicted) {
        HSVNReadItemInfo(status.absolutePath, HSVNRevisionSpec::UNSPECIFIED(), {}, describe, _session.context());
    }
    return line;
}

void StatusPrinter::countConflicts(const HSVNItemStatus& status)
{
    const auto count = [this](ConflictKind kind) { ++_conflicts.at(static_cast<std::size_t>(kind)).remaining; };
    // Each item counts once, as the first of these.
    if (status.treeConflicted) {
        count(ConflictKind::Tree);
    } else if (status.conflicted && status.textStatus == HSVNStatusKindConflicted) {
        count(ConflictKind::Text);
    } else if (status.conflicted && status.propertyStatus == HSVNStatusKindConflicted) {
        count(ConflictKind::Property);
    }
}

void StatusPrinter::printLine(const HSVNItemStatus& status)
{
    countConflicts(status);
    const bool detailed = _session.options.verbose || _session.options.showUpdates;
    const std::string columns = detailed
                                    ? detailedColumns(status)
                                    : fmt::format("{}{} ", status.lock ? 'K' : ' ', status.treeConflicted ? 'C' : ' ');
    Output::write(Display::colouredLine(
        fmt::format("{}{}{}{}{}{}{}{}{}\n", letterOf(combinedStatus(status)), propertyLetter(status),
                    status.locked ? 'L' : ' ', status.copied ? '+' : ' ', switchLetter(status), columns,
                    localStyle(status.path), moveLines(status), treeConflictLine(status))));
}

void StatusPrinter::printXML(const HSVNItemStatus& status)
{
    XML::Attributes attributes{{"item", wordOf(combinedStatus(status))}, {"props", wordOf(status.propertyStatus)}};
    const auto flag = [&](bool holds, const char* name) {
        if (holds) {
            attributes.emplace_back(name, "true");
        }
    };
    flag(status.locked, "wc-locked");
    flag(status.copied, "copied");
    flag(status.switched, "switched");
    flag(status.fileExternal, "file-external");
    if (status.versioned && !status.copied) {
        attributes.emplace_back("revision", std::to_string(status.revision));
    }
    flag(status.treeConflicted, "tree-conflicted");
    if (status.movedFrom) {
        attributes.emplace_back("moved-from", shown(*status.movedFrom));
    }
    if (status.movedTo) {
        attributes.emplace_back("moved-to", shown(*status.movedTo));
    }
    XML xml;
    xml.open("entry", {{"path", localStyle(status.path)}}).open("wc-status", attributes);
    if (status.changedRevision != HSVNInvalidRevision) {
        addCommit(xml, status.changedRevision, status.changedAuthor, status.changedDate.value_or(HSVNDate{}));
    }
    if (status.lock) {
        addLock(xml, *status.lock);
    }
    xml.close("wc-status");
    if (status.repositoryNodeStatus != HSVNStatusKindNone || status.repositoryLock) {
        xml.open("repos-status", {{"props", wordOf(status.repositoryPropertyStatus)},
                                  {"item", wordOf(combinedRepositoryStatus(status))}});
        if (status.repositoryLock) {
            addLock(xml, *status.repositoryLock);
        }
        xml.close("repos-status");
    }
    xml.close("entry").write();
}

nlohmann::ordered_json StatusPrinter::record(const HSVNItemStatus& status) const
{
    nlohmann::ordered_json record{{"path", localStyle(status.path)},
                                  {"item", wordOf(combinedStatus(status))},
                                  {"properties", wordOf(status.propertyStatus)}};
    const auto flag = [&](bool holds, const char* name) {
        if (holds) {
            record[name] = true;
        }
    };
    flag(status.locked, "locked");
    flag(status.copied, "copied");
    flag(status.switched, "switched");
    flag(status.fileExternal, "fileExternal");
    flag(status.treeConflicted, "treeConflicted");
    if (status.versioned && status.revision != HSVNInvalidRevision) {
        record["revision"] = status.revision;
    }
    if (status.changedRevision != HSVNInvalidRevision) {
        auto& commit = record["commit"] = {{"revision", status.changedRevision}};
        if (status.changedAuthor) {
            commit["author"] = *status.changedAuthor;
        }
        if (status.changedDate) {
            commit["date"] = exactDate(*status.changedDate);
        }
    }
    if (status.lock) {
        record["lock"] = lockRecord(*status.lock);
    }
    if (status.changelist) {
        record["changelist"] = *status.changelist;
    }
    if (status.movedFrom) {
        record["movedFrom"] = shown(*status.movedFrom);
    }
    if (status.movedTo) {
        record["movedTo"] = shown(*status.movedTo);
    }
    if (status.repositoryNodeStatus != HSVNStatusKindNone || status.repositoryLock) {
        auto& repository = record["repository"] = {{"item", wordOf(combinedRepositoryStatus(status))},
                                                   {"properties", wordOf(status.repositoryPropertyStatus)}};
        if (status.repositoryLock) {
            repository["lock"] = lockRecord(*status.repositoryLock);
        }
    }
    return record;
}

void StatusPrinter::printConflictSummary() const { Output::write(conflictSummary(_conflicts)); }
