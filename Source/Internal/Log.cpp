#include "Internal/Log.h"

#include "HSVNException.h"
#include "HSVNRevision.h"
#include "Internal/Browsing.h"
#include "Internal/ExtensionCall.h"
#include "Internal/LogChanges.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

#include <algorithm>
#include <map>

namespace {

constexpr const char* authorName = "svn:author";
constexpr const char* dateName = "svn:date";
constexpr const char* messageName = "svn:log";

// MARK: Items

/// Null leaves the item without a date.
svn_error_t* setDate(HSVNLogItem& item, const char* text, apr_pool_t* pool)
{
    if (!text) {
        return nullptr;
    }
    apr_time_t time = 0;
    svn_error_t* const error = HSVNCurrentEntryPoints().time_from_cstring(&time, text, pool);
    item.setExactDate(error ? std::nullopt : HSVNDateOrNil(time));
    return error;
}

std::optional<bool> certainty(svn_tristate_t value)
{
    return value == svn_tristate_unknown ? std::nullopt : std::optional{value == svn_tristate_true};
}

/// Adds the changes of a hash of records by path; null is one that was not asked for. Allocates nothing in the pool but
/// the iterator.
///
/// @param complete  called with each change and its record
template <class Record, class Complete>
void addChanges(HSVNLogItem& item, apr_hash_t* changedPaths, apr_pool_t* pool, Complete complete)
{
    item.setTellsChangedPaths(changedPaths != nullptr);
    const auto& entryPoints = HSVNCurrentEntryPoints();
    auto* index = changedPaths ? entryPoints.apr_hash_first(pool, changedPaths) : nullptr;
    std::vector<HSVNLogChanges::Record> changes;
    for (; index; index = entryPoints.apr_hash_next(index)) {
        const void* path = nullptr;
        void* value = nullptr;
        entryPoints.apr_hash_this(index, &path, nullptr, &value);
        const auto& record = *static_cast<const Record*>(value);
        auto& change = changes.emplace_back();
        change.path = static_cast<const char*>(path);
        change.action = HSVNLogActionFromChar(record.action);
        if (record.copyfrom_path) {
            change.copyPath = record.copyfrom_path;
        }
        change.copyRevision = HSVNRevisionNumberFromSubversion(record.copyfrom_rev);
        complete(change, record);
    }
    if (!changes.empty()) {
        item.setReadChanges(std::make_shared<HSVNLogChanges>(std::move(changes)));
    }
}

void addPlainChanges(HSVNLogItem& item, apr_hash_t* changedPaths, apr_pool_t* pool)
{
    addChanges<svn_log_changed_path_t>(item, changedPaths, pool, [](const auto&...) {});
}

/// What a verb tells of a revision; a date that cannot be read is there as it stands in the properties alone.
HSVNLogItemRef itemOf(std::map<std::string, std::string> properties, svn_revnum_t revision, apr_pool_t* pool)
{
    const auto valueOf = [&](const char* name) {
        const auto found = properties.find(name);
        return found == properties.end() ? std::nullopt : std::optional{found->second};
    };
    auto item = std::make_shared<HSVNLogItem>(valueOf(messageName), HSVNRevisionNumberFromSubversion(revision),
                                              std::nullopt, valueOf(authorName));
    if (const auto date = valueOf(dateName)) {
        HSVNCurrentEntryPoints().error_clear(setDate(*item, date->c_str(), pool));
    }
    item->setProperties(std::move(properties));
    return item;
}

// MARK: Receivers

struct LogCall : HSVNItemsCall<const HSVNLogItemRef&>
{
    const HSVNLogChoices& choices;
    /// How many items may still come of lines that take one range alone.
    std::int32_t remaining = choices.limit;
    bool isOver = false;

    bool wants(const char* name) const
    {
        const auto& names = choices.properties;
        return !names || std::find(names->begin(), names->end(), name) != names->end();
    }
};

svn_error_t* receiveEntry(void* baton, svn_log_entry_t* record, apr_pool_t* pool)
{
    auto& call = *static_cast<LogCall*>(baton);
    return call.handOver([&] { return HSVNLogItemOfEntry(call.operation, *record, pool); });
}

svn_error_t* receiveMessage(void* baton, apr_hash_t* changedPaths, svn_revnum_t revision, const char* author,
                            const char* date, const char* message, apr_pool_t* pool)
{
    auto& call = *static_cast<LogCall*>(baton);
    svn_error_t* const error = call.handOver([&] {
        std::map<std::string, std::string> properties;
        for (const auto& [name, value] :
             {std::pair{authorName, author}, std::pair{dateName, date}, std::pair{messageName, message}})
        {
            if (value && call.wants(name)) {
                properties.emplace(name, value);
            }
        }
        const auto item = itemOf(std::move(properties), revision, pool);
        addPlainChanges(*item, changedPaths, pool);
        return item;
    });
    call.isOver = error || --call.remaining == 0;
    return error;
}

/// Whether properties are named that place 49 does not tell.
bool namesOthers(const HSVNLogChoices& choices)
{
    const auto isOther = [](const std::string& name) {
        return name != authorName && name != dateName && name != messageName;
    };
    return choices.properties && std::any_of(choices.properties->begin(), choices.properties->end(), isOther);
}

svn_opt_revision_t pegOf(const HSVNLogChoices& choices)
{
    return (choices.pegRevision ? choices.pegRevision : HSVNRevision::UNSPECIFIED())->SVNRevision();
}

std::vector<std::pair<HSVNRevisionRef, HSVNRevisionRef>> rangesOf(const HSVNLogChoices& choices)
{
    if (choices.ranges.empty()) {
        const auto& peg = choices.pegRevision;
        const bool isGiven = peg && !HSVNIsUnspecified(peg);
        return {{isGiven ? peg : HSVNRevision::HEAD(), HSVNRevision::revisionWithNumber(0)}};
    }
    return choices.ranges;
}

/// Lines before 1.6 leave it to their clients to complete a range: it begins at the peg revision, else at HEAD of a URL
/// and at BASE of a local item, and ends where it begins, or at 0 when nothing is said of it.
HSVNLogChoices completed(HSVNLogChoices choices, const char* target)
{
    for (auto& [start, end] : choices.ranges) {
        HSVNAssertParameter(start != nullptr && end != nullptr, "revision != nil");
        if (HSVNIsUnspecified(end)) {
            end = HSVNIsUnspecified(start) ? HSVNRevision::revisionWithNumber(0) : start;
        }
        if (HSVNIsUnspecified(start)) {
            const bool isPegGiven = choices.pegRevision && !HSVNIsUnspecified(choices.pegRevision);
            start = isPegGiven                             ? choices.pegRevision
                    : HSVNTarget::verbatim(target).isURL() ? HSVNRevision::HEAD()
                                                           : HSVNRevision::BASE();
        }
    }
    return choices;
}

} // namespace

HSVNLogItemRef HSVNLogItemOfEntry(const HSVNOperation& operation, const svn_log_entry_t& record, apr_pool_t* pool)
{
    // Lines before 1.7 end both records earlier.
    const bool isWhole = operation.isAtLeast(HSVNVersion{1, 7});
    std::map<std::string, std::string> properties;
    HSVNForEach<svn_string_t>(operation, record.revprops, [&](std::string name, const svn_string_t* value) {
        properties.emplace(std::move(name), std::string{value->data, value->len});
    });
    auto item = itemOf(std::move(properties), record.revision, pool);
    item->setHasChildren(record.has_children != 0);
    item->setSubtractiveMerge(isWhole && record.subtractive_merge);
    item->setPartlyMerged(isWhole && record.non_inheritable);
    item->setEndOfChildren(record.revision == SVN_INVALID_REVNUM);
    addChanges<svn_log_changed_path2_t>(*item, record.changed_paths2, pool,
                                        [&](HSVNLogChanges::Record& change, const auto& path) {
                                            change.kind = static_cast<HSVNNodeKind>(path.node_kind);
                                            if (isWhole) {
                                                change.textModified = certainty(path.text_modified);
                                                change.propertiesModified = certainty(path.props_modified);
                                            }
                                        });
    return item;
}

void HSVNLog(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNLogChoices& choices,
             const HSVNReceiver<const HSVNLogItemRef&>& receiver)
{
    LogCall call{{operation, receiver}, choices};
    if (const auto log = operation.newest(&HSVNReadingFunctions::client_log)) {
        const auto peg = pegOf(choices);
        operation.check(log(targets, &peg, HSVNRangeArray(operation, rangesOf(choices)), choices.limit,
                            choices.changedPaths, choices.stopOnCopy, choices.mergedRevisions,
                            choices.properties ? HSVNTextArray(operation, *choices.properties) : nullptr, receiveEntry,
                            &call, operation.ctx(), operation.pool()));
        return;
    }
    operation.refuse(choices.mergedRevisions, "mergedRevisions");
    operation.refuse(namesOthers(choices), "properties");
    auto each = completed(choices, APR_ARRAY_IDX(targets, 0, const char*));
    for (const auto& range : rangesOf(each)) {
        if (!call.isOver) {
            each.ranges = {range};
            each.limit = std::max(0, call.remaining);
            HSVNLogMessages(operation, targets, each, receiveMessage, &call);
        }
    }
}

void HSVNLogMessages(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNLogChoices& choices,
                     svn_log_message_receiver_t receiver, void* baton)
{
    const auto peg = pegOf(choices);
    const auto range = rangesOf(choices).front();
    const auto from = range.first->SVNRevision();
    const auto to = range.second->SVNRevision();
    operation.check(operation->client_log3(targets, &peg, &from, &to, choices.limit, choices.changedPaths,
                                           choices.stopOnCopy, receiver, baton, operation.ctx(), operation.pool()));
}

HSVNLogItemRef HSVNCreateLogItem(apr_hash_t* changedPaths, svn_revnum_t revision, const char* author, const char* date,
                                 const char* message, apr_pool_t* pool)
{
    auto item = std::make_shared<HSVNLogItem>(HSVNTextOrNil(message), HSVNRevisionNumberFromSubversion(revision),
                                              std::nullopt, HSVNTextOrNil(author));
    if (svn_error_t* const error = setDate(*item, date, pool)) {
        HSVNException::exceptionWithError(error)->raise();
    }
    addPlainChanges(*item, changedPaths, pool);
    return item;
}

svn_error_t* HSVNLogReceiver::receive(void* baton, apr_hash_t* changedPaths, svn_revnum_t revision, const char* author,
                                      const char* date, const char* message, apr_pool_t* pool)
{
    auto& receiver = *static_cast<HSVNLogReceiver*>(baton);
    return HSVNGuardCallback(receiver.context, [&]() -> svn_error_t* {
        auto item = HSVNCreateLogItem(changedPaths, revision, author, date, message, pool);
        if (receiver.delegate && !receiver.delegate->logItemReceived(item)) {
            return HSVN_SUBVERSION_ERROR(SVN_ERR_CANCELLED, "Operation was cancelled");
        }
        receiver.items.push_back(std::move(item));
        return SVN_NO_ERROR;
    });
}
