#include "CommandLine/Dates.h"
#include "CommandLine/Targets.h"
#include "Output/InfoFields.h"
#include "Output/InfoPrinter.h"
#include "Output/Words.h"
#include "Output/XML.h"

namespace {

void addVersion(XML& xml, const char* side, const std::optional<HSVNConflictVersion>& version)
{
    if (version) {
        xml.empty("version", {{"side", side},
                              {"kind", wordOf(version->kind)},
                              {"path-in-repos", version->pathInRepository.value_or("")},
                              {"repos-url", version->repositoryURL.value_or("")},
                              {"revision", std::to_string(version->pegRevision)}});
    }
}

void addConflict(XML& xml, const HSVNConflictRecord& conflict)
{
    const bool isText = conflict.kind == HSVNConflictKind::Text;
    xml.open("conflict",
             {{"operation", HSVNTextOfConflictOperation(conflict.operation)}, {"type", isText ? "text" : "property"}});
    addVersion(xml, "source-left", conflict.sourceLeft);
    addVersion(xml, "source-right", conflict.sourceRight);
    if (isText) {
        xml.element("prev-base-file", conflict.basePath).element("prev-wc-file", conflict.myPath);
        xml.element("cur-base-file", conflict.theirPath);
    } else {
        xml.element("prop-file", conflict.propertyRejectPath);
    }
    xml.close("conflict");
}

void addTreeConflict(XML& xml, const HSVNConflictRecord& conflict, const std::string& victim)
{
    xml.open("tree-conflict", {{"victim", victim},
                               {"kind", wordOf(conflict.nodeKind)},
                               {"operation", HSVNTextOfConflictOperation(conflict.operation)},
                               {"action", HSVNTextOfConflictAction(conflict.action)},
                               {"reason", wordOf(conflict.reason)}});
    addVersion(xml, "source-left", conflict.sourceLeft);
    addVersion(xml, "source-right", conflict.sourceRight);
    xml.close("tree-conflict");
}

/// Property conflicts share one element.
void addConflicts(XML& xml, const std::vector<HSVNConflictRecord>& conflicts, const std::string& victim)
{
    bool toldProperties = false;
    for (const auto& conflict : conflicts) {
        if (conflict.kind == HSVNConflictKind::Tree) {
            addTreeConflict(xml, conflict, victim);
        } else if (conflict.kind == HSVNConflictKind::Text || !toldProperties) {
            addConflict(xml, conflict);
            toldProperties = toldProperties || conflict.kind == HSVNConflictKind::Property;
        }
    }
}

/// Another item of the working copy, by its path below the root.
std::optional<std::string> pathInWorkingCopy(const HSVNWorkingCopyInfo& copy,
                                             const std::optional<std::string>& absolute)
{
    const std::string above = copy.rootPath.value_or("") + "/";
    return absolute && absolute->starts_with(above) ? absolute->substr(above.size()) : absolute;
}

void addWorkingCopy(XML& xml, const HSVNWorkingCopyInfo& copy, HSVNNodeKind kind)
{
    xml.open("wc-info").element("wcroot-abspath", copy.rootPath);
    xml.element("schedule", std::string_view{HSVNTextOfSchedule(copy.schedule)});
    // A file has no depth of its own and is told to be whole, unless it is left out.
    const bool isWhole = kind == HSVNNodeKindFile && copy.depth != HSVNDepthExclude;
    xml.element("depth", std::string_view{HSVNTextOfDepth(isWhole ? HSVNDepthInfinity : copy.depth)});
    xml.element("copy-from-url", copy.copyFromURL).element("copy-from-rev", textOf(copy.copyFromRevision));
    if (copy.textTime) {
        xml.element("text-updated", std::string_view{exactDate(*copy.textTime)});
    }
    xml.element("checksum", copy.checksum).element("changelist", copy.changelist);
    xml.element("moved-from", pathInWorkingCopy(copy, copy.movedFrom));
    xml.element("moved-to", pathInWorkingCopy(copy, copy.movedTo));
    xml.close("wc-info");
}

} // namespace

void printInfoXML(const HSVNItemInfo& info)
{
    XML xml;
    XML::Attributes attributes{{"kind", info.kind == HSVNNodeKindUnknown ? "" : wordOf(info.kind)},
                               {"path", shownTarget(info)},
                               {"revision", textOf(info.revision).value_or("Resource is not under version control.")}};
    if (info.kind == HSVNNodeKindFile && info.size >= 0) {
        attributes.emplace_back("size", std::to_string(info.size));
    }
    xml.open("entry", attributes);
    xml.element("url", info.url).element("relative-url", relativeURL(info));
    if (info.repositoryRootURL || info.uuid) {
        xml.open("repository").element("root", info.repositoryRootURL).element("uuid", info.uuid).close("repository");
    }
    if (info.workingCopy) {
        addWorkingCopy(xml, *info.workingCopy, info.kind);
    }
    if (info.lastChangedRevision != HSVNInvalidRevision) {
        addCommit(xml, info.lastChangedRevision, info.lastChangedAuthor, info.lastChangedDate.value_or(HSVNDate{}));
    }
    if (info.lock) {
        addLock(xml, *info.lock);
    }
    if (info.workingCopy) {
        addConflicts(xml, info.workingCopy->conflicts, baseName(info.target));
    }
    xml.close("entry").write();
}
