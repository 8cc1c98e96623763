#include "LibraryClient.h"

#include <cstdint>
#include <map>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

class CountingStream : public HSVNOutputStream
{
  public:
    std::int64_t write(const char*, std::size_t maxLength) override
    {
        count += maxLength;
        return static_cast<std::int64_t>(maxLength);
    }

    std::size_t count = 0;
};

template <class Object>
LibraryOutcome outcomeOf(std::vector<std::shared_ptr<Object>> objects)
{
    auto kept = std::make_shared<const std::vector<std::shared_ptr<Object>>>(std::move(objects));
    const std::size_t items = kept->size();
    return {items, std::move(kept)};
}

LibraryOutcome status(const HSVNPathRef& path, const HSVNStatusOptionsRef& options, const HSVNContextRef& context)
{
    return outcomeOf(HSVNDirectory::statusForNodesInDirectoryAtPath(path, options, context));
}

LibraryOutcome statusAll(const HSVNPathRef& path, const HSVNContextRef& context)
{
    const auto options = HSVNStatusOptions::defaults();
    options->setIncludeNormalFiles(true);
    return status(path, options, context);
}

LibraryOutcome statusChanged(const HSVNPathRef& path, const HSVNContextRef& context)
{
    return status(path, HSVNStatusOptions::defaults(), context);
}

LibraryOutcome statusAggregated(const HSVNPathRef& path, const HSVNContextRef& context)
{
    const auto options = HSVNStatusOptions::defaults();
    options->setIncludeNormalFiles(true);
    options->setPropagateStatusToAncestor(true);
    return status(path, options, context);
}

LibraryOutcome statusFolderAggregated(const HSVNPathRef& path, const HSVNContextRef& context)
{
    const auto options = HSVNStatusOptions::defaults();
    options->setIncludeNormalFiles(true);
    options->setPropagateStatusToAncestor(true);
    options->setRecursive(false);
    return status(path, options, context);
}

/// By the verb, which may use several threads; nothing is kept.
LibraryOutcome statusByVerb(const HSVNPathRef& path, const HSVNContextRef& context, bool getAll)
{
    std::size_t items = 0;
    context->status(path, {.getAll = getAll}, [&](const HSVNNodeRef&) { ++items; });
    return {items, nullptr};
}

LibraryOutcome statusByVerbAll(const HSVNPathRef& path, const HSVNContextRef& context)
{
    return statusByVerb(path, context, true);
}

LibraryOutcome statusByVerbChanged(const HSVNPathRef& path, const HSVNContextRef& context)
{
    return statusByVerb(path, context, false);
}

LibraryOutcome readLog(const HSVNPathRef& path, const HSVNContextRef& context)
{
    const auto options = HSVNLogOptions::defaults();
    options->setToRevision(HSVNRevision::revisionWithNumber(1));
    return outcomeOf(HSVNNode::readLogForNodeAtPath(path, nullptr, options, context));
}

LibraryOutcome list(const HSVNPathRef& path, const HSVNContextRef& context)
{
    std::vector<HSVNNodeRef> children;
    HSVNDirectory::directoryAtPath(path, HSVNRevisionSpec::HEAD(), &children, context);
    return outcomeOf(std::move(children));
}

LibraryOutcome cat(const HSVNPathRef& path, const HSVNContextRef& context)
{
    const auto stream = std::make_shared<CountingStream>();
    HSVNFile::catRevision(HSVNRevisionSpec::HEAD(), path, stream, context);
    return {stream->count, stream};
}

LibraryOutcome compare(const HSVNPathRef& path, const HSVNContextRef& context)
{
    const auto diff = std::make_shared<const HSVNDiff>(
        HSVNDiff::ofFiles(path->string() + "/before.txt", path->string() + "/after.txt", context));
    std::size_t lines = 0;
    for (const auto& section : diff->sections()) {
        lines += static_cast<std::size_t>(section.original.count);
    }
    return {lines, diff};
}

LibraryOutcome start(const HSVNPathRef&, const HSVNContextRef& context) { return {1, context}; }

HSVNPathRef pathOf(const std::string& target)
{
    if (target.find("://") != std::string::npos) {
        return HSVNURL::URLWithString(target);
    }
    return HSVNLocalPath::pathWithString(target);
}

} // namespace

LibraryClient::LibraryClient()
{
    HSVNInitialize();
    _context = HSVNClient::clientWithDelegate(nullptr);
}

LibraryOutcome LibraryClient::run(const std::string& operation, const std::string& target) const
{
    using Operation = LibraryOutcome (*)(const HSVNPathRef&, const HSVNContextRef&);
    static const std::map<std::string, Operation> operations{{"status-all", statusAll},
                                                             {"status-changed", statusChanged},
                                                             {"status-aggregated", statusAggregated},
                                                             {"status-folder-aggregated", statusFolderAggregated},
                                                             {"status-verb-all", statusByVerbAll},
                                                             {"status-verb-changed", statusByVerbChanged},
                                                             {"log", readLog},
                                                             {"list", list},
                                                             {"cat", cat},
                                                             {"compare", compare},
                                                             {"start", start}};
    const auto found = operations.find(operation);
    if (found == operations.end()) {
        throw std::invalid_argument("there is no operation '" + operation + "'");
    }
    return found->second(pathOf(target), _context);
}
