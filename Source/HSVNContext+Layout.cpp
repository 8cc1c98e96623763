#include "HSVNContext.h"
#include "HSVNLayoutItem.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

#include <string_view>

namespace {

struct LayoutCall : HSVNItemsCall<const HSVNLayoutItem&>
{
    std::vector<HSVNLayoutItem> above = {}; ///< the item told last and the directories that it lies in
};

bool isBelow(std::string_view path, std::string_view directory)
{
    return directory.empty() || path == directory ||
           (path.starts_with(directory) && path.substr(directory.size()).starts_with('/'));
}

/// Fills in what the directory above says otherwise.
void compareWithDirectory(HSVNLayoutItem& item, std::vector<HSVNLayoutItem>& above)
{
    while (!above.empty() && !isBelow(item.path, above.back().path)) {
        above.pop_back();
    }
    if (!above.empty() && item.isPresent) {
        const auto& directory = above.back();
        item.hasOwnRevision = item.revision != directory.revision;
        item.hasOwnDepth = item.depth != (directory.depth == HSVNDepthInfinity ? HSVNDepthInfinity : HSVNDepthEmpty);
    }
    if (item.isPresent) {
        above.push_back(item);
    }
}

svn_error_t* receiveItem(void* baton, const HSVNStatusFunctions::LayoutItem* record, apr_pool_t* /*pool*/)
{
    auto& call = *static_cast<LayoutCall*>(baton);
    return call.handOver([&] {
        HSVNLayoutItem item{.path = record->path,
                            .url = HSVNTextOrNil(record->url),
                            .revision = HSVNRevisionNumberFromSubversion(record->revision),
                            .depth = static_cast<HSVNDepth>(record->depth),
                            .isPresent = record->isPresent != 0};
        compareWithDirectory(item, call.above);
        return item;
    });
}

} // namespace

void HSVNContext::layout(const HSVNTarget& directory, const HSVNReceiver<const HSVNLayoutItem&>& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "layout", {{"target", directory.text()}}};
    LayoutCall call{{operation, receiver}};
    operation.call(&HSVNStatusFunctions::wc_layout, operation.cString(directory.text()), receiveItem, &call,
                   operation.ctx(), operation.pool());
}

std::vector<HSVNLayoutItem> HSVNContext::layout(const HSVNTarget& directory)
{
    return HSVNCollected<HSVNLayoutItem>([&](const auto& receiver) { layout(directory, receiver); });
}
