#include "Output/StatusPrinter.h"

#include "CommandLine/Dates.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Targets.h"
#include "Output/Display.h"
#include "Output/Output.h"
#include "Output/Words.h"
#include "Output/XML.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>

namespace {

/// The state for the first column.
HSVNStatusKind shownStatus(const HSVNNode& node)
{
    const HSVNStatus& status = *node.status();
    if (status.nodeStatus() == HSVNStatusKindConflicted && !status.versioned() && status.conflicted()) {
        // A tree conflict's victim that is gone, unless something else took its place.
        return std::filesystem::exists(std::filesystem::symlink_status(NativeText::fromUTF8(node.path()->string())))
                   ? HSVNStatusKindUnversioned
                   : HSVNStatusKindMissing;
    }
    return status.textStatus();
}

/// The second column: the properties of what is new as a whole are new with it.
char propertyLetter(const HSVNStatus& status)
{
    const bool isNew = status.nodeStatus() == HSVNStatusKindAdded && status.propertyStatus() == HSVNStatusKindModified;
    return isNew ? ' ' : letterOf(status.propertyStatus());
}

/// A state of the repository's side: what is known to be unchanged is none of its changes.
const char* repositoryWord(HSVNStatusKind kind)
{
    return wordOf(kind == HSVNStatusKindNormal ? HSVNStatusKindNone : kind);
}

char switchLetter(const HSVNStatus& status) { return status.switched() ? 'S' : status.fileExternal() ? 'X' : ' '; }

/// The lock column when the repository was asked.
char lockLetter(const HSVNNode& node)
{
    switch (node.lockStatus()) {
    case HSVNLockStatusLockedElsewhere:
        return 'O';
    case HSVNLockStatusLockedHere:
        return 'K';
    case HSVNLockStatusStolen:
        return 'T';
    case HSVNLockStatusBroken:
    case HSVNLockStatusLockedLocally:
        return 'B';
    case HSVNLockStatusNone:
        break;
    }
    return ' ';
}

/// Adds a revision and what takes its place where there is none, with a space behind it. Every item has such columns:
/// a format read anew for each would take longer than the rest of its line.
void addRevision(std::string& line, HSVNRevisionNumber revision, std::string_view none)
{
    constexpr std::size_t width = 8;
    const std::string number = revision == HSVNInvalidRevision ? std::string{none} : std::to_string(revision);
    line.append(width - std::min(number.size(), width), ' ').append(number) += ' ';
}

/// Adds an author with a space behind it; as in Subversion's columns, bytes count.
void addAuthor(std::string& line, std::string_view author)
{
    constexpr std::size_t width = 12;
    line.append(author).append(width - std::min(author.size(), width) + 1, ' ');
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
    std::string relative = relativePath(absolute, _absoluteTarget);
    return localStyle(relative.starts_with("../") ? std::move(relative) : joined(_target, relative));
}

std::string StatusPrinter::detailedColumns(const HSVNNode& node) const
{
    const Options& options = _session.options;
    const HSVNStatus& status = *node.status();
    const char locks = options.showUpdates ? lockLetter(node) : node.lock() ? 'K' : ' ';
    const char tree = status.treeConflicted() ? 'C' : ' ';
    const char outOfDate = status.repositoryNodeStatus() != HSVNStatusKindNone ? '*' : ' ';
    std::string columns{locks, tree, ' ', outOfDate, ' '};
    addRevision(columns, status.versioned() ? status.revision() : HSVNInvalidRevision, status.versioned() ? "-" : "");
    if (!options.verbose) {
        return columns + "  ";
    }
    const std::string_view unknown = status.versioned() ? " ? " : "";
    addRevision(columns, node.revision(), unknown);
    const auto author = node.author();
    addAuthor(columns, author ? std::string_view{*author} : unknown);
    return columns;
}

std::string StatusPrinter::moveLines(const HSVNStatus& status) const
{
    const auto from = status.movedFrom();
    const auto to = status.movedTo();
    if (from && from == to) {
        return fmt::format("\n        > swapped places with {}", shown(*from));
    }
    const std::string lines = to ? fmt::format("\n        > moved to {}", shown(*to)) : "";
    return from ? lines + fmt::format("\n        > moved from {}", shown(*from)) : lines;
}

std::string StatusPrinter::treeConflictLine(const HSVNNode& node)
{
    const HSVNStatus& status = *node.status();
    std::string line;
    const auto describe = [&](const HSVNItemInfo& info) {
        for (const auto& conflict : info.workingCopy ? info.workingCopy->conflicts : std::vector<HSVNConflictRecord>{})
        {
            if (conflict.kind == HSVNConflictKind::Tree) {
                line = "\n      >   " + descriptionOfTreeConflict(conflict);
            }
        }
    };
    if (status.treeConflicted()) {
        _session.context()->info(HSVNTarget::verbatim(node.path()->string()), HSVNRevisionSpec::UNSPECIFIED(), {},
                                 describe);
    }
    return line;
}

void StatusPrinter::countConflicts(const HSVNStatus& status)
{
    const auto count = [this](ConflictKind kind) { ++_conflicts.at(static_cast<std::size_t>(kind)).remaining; };
    // Each item counts once, as the first of these.
    if (status.treeConflicted()) {
        count(ConflictKind::Tree);
    } else if (status.textConflicted()) {
        count(ConflictKind::Text);
    } else if (status.propertiesConflicted()) {
        count(ConflictKind::Property);
    }
}

void StatusPrinter::printLine(const HSVNNode& node)
{
    const HSVNStatus& status = *node.status();
    countConflicts(status);
    const bool detailed = _session.options.verbose || _session.options.showUpdates;
    std::string line{letterOf(shownStatus(node)), propertyLetter(status), status.locked() ? 'L' : ' ',
                     status.copied() ? '+' : ' ', switchLetter(status)};
    line += detailed ? detailedColumns(node)
                     : std::string{node.lock() ? 'K' : ' ', status.treeConflicted() ? 'C' : ' ', ' '};
    line.append(Display::inLine(shown(node))).append(moveLines(status)).append(treeConflictLine(node)) += '\n';
    Display::writeLine(line);
}

void StatusPrinter::printXML(const HSVNNode& node)
{
    const HSVNStatus& status = *node.status();
    XML::Attributes attributes{{"item", wordOf(shownStatus(node))}, {"props", wordOf(status.propertyStatus())}};
    const auto flag = [&](bool holds, const char* name) {
        if (holds) {
            attributes.emplace_back(name, "true");
        }
    };
    flag(status.locked(), "wc-locked");
    flag(status.copied(), "copied");
    flag(status.switched(), "switched");
    flag(status.fileExternal(), "file-external");
    if (status.versioned() && !status.copied()) {
        attributes.emplace_back("revision", std::to_string(status.revision()));
    }
    flag(status.treeConflicted(), "tree-conflicted");
    if (const auto from = status.movedFrom()) {
        attributes.emplace_back("moved-from", shown(*from));
    }
    if (const auto to = status.movedTo()) {
        attributes.emplace_back("moved-to", shown(*to));
    }
    XML xml;
    xml.open("entry", {{"path", shown(node)}}).open("wc-status", attributes);
    if (node.revision() != HSVNInvalidRevision) {
        addCommit(xml, node.revision(), node.author(), node.exactDate().value_or(HSVNDate{}));
    }
    if (node.lock()) {
        addLock(xml, *node.lock());
    }
    xml.close("wc-status");
    if (status.repositoryNodeStatus() != HSVNStatusKindNone || status.repositoryLock()) {
        xml.open("repos-status", {{"props", repositoryWord(status.repositoryPropertyStatus())},
                                  {"item", repositoryWord(status.repositoryTextStatus())}});
        if (status.repositoryLock()) {
            addLock(xml, *status.repositoryLock());
        }
        xml.close("repos-status");
    }
    xml.close("entry").write();
}

nlohmann::ordered_json StatusPrinter::record(const HSVNNode& node) const
{
    const HSVNStatus& status = *node.status();
    nlohmann::ordered_json record{
        {"path", shown(node)}, {"item", wordOf(shownStatus(node))}, {"properties", wordOf(status.propertyStatus())}};
    const auto flag = [&](bool holds, const char* name) {
        if (holds) {
            record[name] = true;
        }
    };
    flag(status.locked(), "locked");
    flag(status.copied(), "copied");
    flag(status.switched(), "switched");
    flag(status.fileExternal(), "fileExternal");
    flag(status.treeConflicted(), "treeConflicted");
    if (status.versioned() && status.revision() != HSVNInvalidRevision) {
        record["revision"] = status.revision();
    }
    if (node.revision() != HSVNInvalidRevision) {
        auto& commit = record["commit"] = {{"revision", node.revision()}};
        if (const auto author = node.author()) {
            commit["author"] = *author;
        }
        if (const auto date = node.exactDate()) {
            commit["date"] = exactDate(*date);
        }
    }
    if (node.lock()) {
        record["lock"] = lockRecord(*node.lock());
    }
    if (const auto changelist = status.changelist()) {
        record["changelist"] = *changelist;
    }
    if (const auto from = status.movedFrom()) {
        record["movedFrom"] = shown(*from);
    }
    if (const auto to = status.movedTo()) {
        record["movedTo"] = shown(*to);
    }
    if (status.repositoryNodeStatus() != HSVNStatusKindNone || status.repositoryLock()) {
        auto& repository = record["repository"] = {{"item", repositoryWord(status.repositoryTextStatus())},
                                                   {"properties", repositoryWord(status.repositoryPropertyStatus())}};
        if (status.repositoryLock()) {
            repository["lock"] = lockRecord(*status.repositoryLock());
        }
    }
    return record;
}

void StatusPrinter::printConflictSummary() const { Output::write(conflictSummary(_conflicts)); }
