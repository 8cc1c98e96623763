#include "HSVNClient.h"
#include "HSVNCommitItem.h"
#include "HSVNLocalPath.h"
#include "HSVNNode.h"
#include "HSVNURL.h"

namespace {

HSVNCommitItemRef commitItem(const HSVNPathRef& path, HSVNCommitAction action)
{
    auto item = std::make_shared<HSVNCommitItem>();
    item->setURL(std::dynamic_pointer_cast<const HSVNURL>(path));
    item->setPath(std::dynamic_pointer_cast<const HSVNLocalPath>(path));
    item->setActions(action);
    return item;
}

} // namespace

bool HSVNNode::promptForLogMessage(std::string& message, const std::vector<HSVNCommitItemRef>& commitItems,
                                   const HSVNPathRef&, const HSVNContextRef& context)
{
    const auto* client = dynamic_cast<const HSVNClient*>(context.get());
    const auto delegate = client ? client->delegate() : nullptr;
    if (!delegate || !delegate->respondsTo(HSVNClientDelegateMessage::promptForLogMessage)) {
        return true;
    }
    return delegate->promptForLogMessage(*context, message, commitItems);
}

std::vector<HSVNCommitItemRef> HSVNNode::commitItemsForMoveOfNodes(const std::vector<HSVNPathRef>& sourcePaths,
                                                                   const std::vector<HSVNPathRef>& destPaths, bool copy)
{
    HSVNAssertParameter(sourcePaths.size() == destPaths.size(), "[sourcePaths count] == [destPaths count]");
    std::vector<HSVNCommitItemRef> items;
    items.reserve(sourcePaths.size() * (copy ? 1 : 2));
    for (std::size_t index = 0; index < sourcePaths.size(); ++index) {
        items.push_back(commitItem(destPaths[index], HSVNCommitActionAdd));
        if (!copy) {
            items.push_back(commitItem(sourcePaths[index], HSVNCommitActionDelete));
        }
    }
    return items;
}
