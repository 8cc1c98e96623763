#include "HSVNCommitItem.h"

#include "HSVNLocalPath.h"
#include "HSVNNode.h"
#include "HSVNPathWithRevision.h"
#include "HSVNPlatformException.h"
#include "HSVNRevision.h"
#include "HSVNStatus.h"
#include "HSVNURL.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Subversion.h"
#include "Internal/SubversionURL.h"

namespace {

HSVNCommitActions actionsOfStateFlags(unsigned stateFlags)
{
    static constexpr std::pair<unsigned, HSVNCommitAction> translation[] = {
        {SVN_CLIENT_COMMIT_ITEM_ADD, HSVNCommitActionAdd},
        {SVN_CLIENT_COMMIT_ITEM_DELETE, HSVNCommitActionDelete},
        {SVN_CLIENT_COMMIT_ITEM_IS_COPY, HSVNCommitActionCopy},
        {SVN_CLIENT_COMMIT_ITEM_TEXT_MODS, HSVNCommitActionTextModified},
        {SVN_CLIENT_COMMIT_ITEM_PROP_MODS, HSVNCommitActionPropertiesModified},
    };
    HSVNCommitActions actions = 0;
    for (const auto& [flag, action] : translation) {
        actions |= (stateFlags & flag) != 0 ? action : 0U;
    }
    return actions;
}

HSVNCommitActions actionsOfAddition(const HSVNStatus& status)
{
    const HSVNCommitActions content = status.copyFromURL() ? HSVNCommitActionCopy : HSVNCommitActionTextModified;
    const HSVNCommitActions properties = status.hasProperties() ? HSVNCommitActionPropertiesModified : 0U;
    return HSVNCommitActionAdd | content | properties;
}

HSVNCommitActions actionsOfTextStatus(const HSVNStatus& status)
{
    switch (status.textStatus()) {
    case HSVNStatusKindReplaced:
        return HSVNCommitActionAdd | HSVNCommitActionDelete | HSVNCommitActionTextModified;
    case HSVNStatusKindModified:
    case HSVNStatusKindMerged:
        return HSVNCommitActionTextModified;
    case HSVNStatusKindAdded:
        return actionsOfAddition(status);
    case HSVNStatusKindDeleted:
        return HSVNCommitActionDelete;
    default:
        return 0;
    }
}

HSVNCommitActions actionsOfPropertyStatus(HSVNStatusKind propertyStatus)
{
    constexpr HSVNStatusKinds changed = HSVNStatusKindAdded | HSVNStatusKindDeleted | HSVNStatusKindReplaced |
                                        HSVNStatusKindModified | HSVNStatusKindMerged;
    return (propertyStatus & changed) != 0 ? HSVNCommitActionPropertiesModified : 0U;
}

} // namespace

HSVNCommitItemRef HSVNCommitItem::commitItemForSVNCommitItem(const svn_client_commit_item2_t* record)
{
    HSVNAssertParameter(record != nullptr, "item != NULL");
    auto item = std::make_shared<HSVNCommitItem>();
    if (record->path) {
        item->_path = HSVNLocalPath::pathWithString(record->path);
    }
    if (record->url) {
        item->_url = HSVNURLWithSubversionText(record->url);
    }
    item->_revision = HSVNRevisionNumberFromSubversion(record->revision);
    if (record->copyfrom_url) {
        item->_copySource = HSVNPathWithRevision::path(
            HSVNURLWithSubversionText(record->copyfrom_url),
            HSVNRevision::revisionWithNumber(HSVNRevisionNumberFromSubversion(record->copyfrom_rev)));
    }
    item->_nodeKind = static_cast<HSVNNodeKind>(record->kind);
    item->_actions = actionsOfStateFlags(record->state_flags);
    item->_locked = (record->state_flags & SVN_CLIENT_COMMIT_ITEM_LOCK_TOKEN) != 0;
    return item;
}

HSVNCommitItemRef HSVNCommitItem::commitItemForStatus(const HSVNStatusRef& status)
{
    HSVNAssertParameter(status != nullptr, "status != nil");
    const HSVNCommitActions actions = actionsOfTextStatus(*status) | actionsOfPropertyStatus(status->propertyStatus());
    if (actions == 0) {
        return nullptr;
    }
    auto item = std::make_shared<HSVNCommitItem>();
    item->_actions = actions;
    if (const auto source = status->copyFromURL()) {
        item->_copySource =
            HSVNPathWithRevision::path(source, HSVNRevision::revisionWithNumber(status->copyFromRevision()));
    }
    return item;
}

HSVNCommitItemRef HSVNCommitItem::commitItemForNode(const HSVNNodeRef& node)
{
    HSVNAssertParameter(node != nullptr, "node != nil");
    auto item = commitItemForStatus(node->status());
    if (item) {
        item->_nodeKind = node->isDirectory() ? HSVNNodeKindDirectory : HSVNNodeKindFile;
        item->_locked = node->lock() != nullptr;
        item->_path = std::dynamic_pointer_cast<const HSVNLocalPath>(node->path());
        item->_revision = node->revision();
        item->_url = node->URL();
    }
    return item;
}
