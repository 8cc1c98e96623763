#include "Output/Viewspec.h"

#include "CommandLine/Errors.h"
#include "CommandLine/Targets.h"
#include "Output/Output.h"

#include <fmt/format.h>

namespace {

/// The mark of a depth in the classic form.
const char* markOf(HSVNDepth depth)
{
    switch (depth) {
    case HSVNDepthInfinity:
        return "/**";
    case HSVNDepthImmediates:
        return "/*";
    case HSVNDepthFiles:
        return "/~";
    case HSVNDepthExclude:
        return "!";
    default:
        return "";
    }
}

/// The target itself, and where its repository is.
struct Root
{
    std::string target;
    std::string url;
    std::string repository;

    /// "^/PATH" of a URL.
    std::string placeOf(const std::string& itsURL) const
    {
        const auto path = [](const std::string& text) {
            return HSVNURL::URLWithString(text)->denormalizedRelativePath();
        };
        return fmt::format("^/{}", pathBelow(path(itsURL), path(repository)).value_or(""));
    }
};

std::string classicHead(const Root& root, const HSVNLayoutItem& item)
{
    const std::string head = fmt::format("Format: 2\nUrl: {}\nRevision: {}\n\n", root.url, item.revision);
    const std::string mark = markOf(item.depth);
    if (item.depth == HSVNDepthEmpty) {
        return head;
    }
    return fmt::format("{}{} \n", head, mark.starts_with('/') ? mark.substr(1) : mark);
}

std::string classicLine(const Root& root, const HSVNLayoutItem& item)
{
    if (item.path.empty()) {
        return classicHead(root, item);
    }
    if (!item.isPresent) {
        return fmt::format("{} @0\n", item.path);
    }
    if (!item.url && !item.hasOwnRevision && !item.hasOwnDepth) {
        return "";
    }
    return fmt::format("{}{} {}{}\n", item.path, item.hasOwnDepth ? markOf(item.depth) : "",
                       item.url ? root.placeOf(*item.url) : "",
                       item.hasOwnRevision ? fmt::format("@{}", item.revision) : "");
}

std::string command(const std::string& name, const std::string& depth, const std::string& revision,
                    const std::string& path)
{
    return fmt::format("{} {}{:<23}{:<10} {}\n", programName(), name, depth, revision, localStyle(path));
}

/// The command that makes the item what it is, after those for what lies above.
std::string commandFor(const Root& root, const HSVNLayoutItem& item)
{
    const std::string path = joined(root.target, item.path);
    const std::string depth = item.hasOwnDepth ? fmt::format(" --set-depth={}", HSVNTextOfDepth(item.depth)) : "";
    if (item.path.empty()) {
        return command("checkout",
                       item.depth == HSVNDepthInfinity ? "" : fmt::format(" --depth={}", HSVNTextOfDepth(item.depth)),
                       fmt::format(" {}@{}", root.url, item.revision), path);
    }
    if (!item.isPresent) {
        return command("update", "", " -r0", path);
    }
    if (item.url) {
        return command("switch", depth, fmt::format(" {}@{}", root.placeOf(*item.url), item.revision), path);
    }
    if (item.hasOwnRevision) {
        return command("update", depth, fmt::format(" -r{}", item.revision), path);
    }
    return item.hasOwnDepth ? command("update", depth, "", path) : "";
}

} // namespace

void printViewspec(Session& session, const std::vector<std::string>& targets)
{
    if (targets.size() > 1) {
        fail(ArgumentParsing, "Error parsing arguments");
    }
    Root root{targets.empty() ? "" : targets.front(), "", ""};
    requireLocal({root.target});
    const auto target = HSVNTarget::verbatim(root.target);
    const bool isClassic = session.options.viewspec == Viewspec::Classic;
    session.client()->layout(target, [&](const HSVNLayoutItem& item) {
        if (item.path.empty()) {
            const auto info = session.client()->info(target).front();
            root.url = info.url.value_or("");
            root.repository = info.repositoryRootURL.value_or("");
        }
        Output::write(isClassic ? classicLine(root, item) : commandFor(root, item));
    });
}
