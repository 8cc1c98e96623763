#include "HSVNConflictedItem.h"

#include "HSVNStatusCodes.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Text.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

constexpr const char* conflictedItemName = "HSVNConflictedItem";

static_assert(static_cast<int>(HSVNResolutionChoice::Unspecified) == svn_client_conflict_option_unspecified);
static_assert(static_cast<int>(HSVNResolutionChoice::IncomingDeleteAccept) ==
              svn_client_conflict_option_incoming_delete_accept);
static_assert(static_cast<int>(HSVNResolutionChoice::BothMovedFolderMoveMerge) ==
              svn_client_conflict_option_both_moved_dir_move_merge);

HSVNContextRef checked(HSVNContextRef context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    return context;
}

std::optional<std::string> textOrNil(const svn_string_t* value)
{
    return value ? std::optional{std::string{value->data, value->len}} : std::nullopt;
}

/// A value that lives in the pool.
const svn_string_t* valueIn(const HSVNOperation& operation, const std::string& bytes, apr_pool_t* pool)
{
    auto* const data = static_cast<char*>(operation->apr_palloc(pool, bytes.size() + 1));
    std::copy_n(bytes.c_str(), bytes.size() + 1, data);
    auto* const value = static_cast<svn_string_t*>(operation->apr_palloc(pool, sizeof(svn_string_t)));
    *value = {data, bytes.size()};
    return value;
}

} // namespace

struct HSVNConflictedItem::Conflict
{
    Conflict(const std::string& thePath, HSVNContextRef theContext) : path{thePath}, context{std::move(theContext)}
    {
        HSVNOperation operation{
            context, conflictedItemName, "initWithPath:context:", {{"path", path}, {"context", context}}};
        // The conflict outlives the operation, and may end while another thread uses the context.
        pool = std::make_unique<HSVNPool>();
        operation.call(&HSVNConflictFunctions::conflict_get, &record, operation.cString(path), operation.ctx(), *pool);
        HSVNConflictFunctions::ConflictState state{};
        operation.call(&HSVNConflictFunctions::conflict_state, &state, record, *pool);
        hasText = state.text;
        hasTree = state.tree;
        mimeType = HSVNTextOrNil(state.mimeType);
        metBy = static_cast<HSVNConflictOperation>(state.operation);
        for (int index = 0; state.properties && index < state.properties->nelts; ++index) {
            properties.emplace_back(APR_ARRAY_IDX(state.properties, index, const char*));
        }
    }

    std::string path;
    HSVNContextRef context;
    /// What Subversion finds out on the way to an answer stays in its record, in the pool of the question. So every
    /// question is asked in this one.
    std::unique_ptr<HSVNPool> pool;
    svn_client_conflict_t* record = nullptr;
    bool hasText = false;
    bool hasTree = false;
    std::vector<std::string> properties;
    std::optional<std::string> mimeType;
    HSVNConflictOperation metBy = HSVNConflictOperation::NoOperation;
};

HSVNConflictedItem::HSVNConflictedItem(const HSVNTarget& target, HSVNContextRef context)
    : _conflict{std::make_unique<Conflict>(target.text(), checked(std::move(context)))}
{
}

HSVNConflictedItem::~HSVNConflictedItem() = default;

bool HSVNConflictedItem::hasTextConflict() const { return _conflict->hasText; }

bool HSVNConflictedItem::hasTreeConflict() const { return _conflict->hasTree; }

const std::vector<std::string>& HSVNConflictedItem::conflictedProperties() const { return _conflict->properties; }

const std::optional<std::string>& HSVNConflictedItem::mimeType() const { return _conflict->mimeType; }

HSVNConflictOperation HSVNConflictedItem::operation() const { return _conflict->metBy; }

void HSVNConflictedItem::searchDetails()
{
    HSVNOperation operation{_conflict->context, conflictedItemName, "searchDetails", {{"path", _conflict->path}}};
    operation.call(&HSVNConflictFunctions::conflict_details, _conflict->record, operation.ctx(), *_conflict->pool);
}

HSVNResolutionChoice HSVNConflictedItem::recommendedChoice()
{
    HSVNOperation operation{_conflict->context, conflictedItemName, "recommendedChoice", {{"path", _conflict->path}}};
    HSVNConflictFunctions::ConflictState state{};
    operation.call(&HSVNConflictFunctions::conflict_state, &state, _conflict->record, *_conflict->pool);
    return static_cast<HSVNResolutionChoice>(state.recommended);
}

std::vector<HSVNConflictOption> HSVNConflictedItem::options(HSVNConflictKind kind)
{
    HSVNOperation operation{
        _conflict->context, conflictedItemName, "optionsOfKind:", {{"path", _conflict->path}, {"kind", kind}}};
    apr_array_header_t* found = nullptr;
    operation.call(&HSVNConflictFunctions::conflict_options, &found, _conflict->record, static_cast<int>(kind),
                   operation.ctx(), *_conflict->pool);
    std::vector<HSVNConflictOption> options;
    for (int index = 0; index < found->nelts; ++index) {
        const auto& option = APR_ARRAY_IDX(found, index, HSVNConflictFunctions::ConflictOption);
        options.push_back({static_cast<HSVNResolutionChoice>(option.id), option.label, option.description});
    }
    return options;
}

std::string HSVNConflictedItem::descriptionOfPropertyConflict()
{
    HSVNOperation operation{
        _conflict->context, conflictedItemName, "descriptionOfPropertyConflict", {{"path", _conflict->path}}};
    const char* description = nullptr;
    operation.call(&HSVNConflictFunctions::conflict_description, &description, nullptr, _conflict->record,
                   operation.ctx(), *_conflict->pool);
    return description;
}

std::pair<std::string, std::string> HSVNConflictedItem::descriptionOfTreeConflict()
{
    HSVNOperation operation{
        _conflict->context, conflictedItemName, "descriptionOfTreeConflict", {{"path", _conflict->path}}};
    const char* incoming = nullptr;
    const char* local = nullptr;
    operation.call(&HSVNConflictFunctions::conflict_description, &incoming, &local, _conflict->record, operation.ctx(),
                   *_conflict->pool);
    return {incoming, local};
}

HSVNConflictSides HSVNConflictedItem::files()
{
    HSVNOperation operation{_conflict->context, conflictedItemName, "files", {{"path", _conflict->path}}};
    HSVNConflictFunctions::ConflictSides<const char*> files{};
    operation.call(&HSVNConflictFunctions::conflict_files, &files, _conflict->record, *_conflict->pool);
    return {HSVNTextOrNil(files.base), HSVNTextOrNil(files.mine), HSVNTextOrNil(files.theirOld),
            HSVNTextOrNil(files.theirNew)};
}

HSVNConflictSides HSVNConflictedItem::propertyValues(const std::string& property)
{
    HSVNOperation operation{
        _conflict->context, conflictedItemName, "propertyValues:", {{"path", _conflict->path}, {"property", property}}};
    HSVNConflictFunctions::ConflictSides<const svn_string_t*> values{};
    operation.call(&HSVNConflictFunctions::conflict_values, &values, _conflict->record, operation.cString(property),
                   *_conflict->pool);
    return {textOrNil(values.base), textOrNil(values.mine), textOrNil(values.theirOld), textOrNil(values.theirNew)};
}

HSVNThreeWayDiff HSVNConflictedItem::textComparison(const HSVNDiffOptionsRef& options)
{
    const auto compared = files();
    const auto targetOf = [](const std::optional<std::string>& file) {
        return file ? std::optional{HSVNTarget::verbatim(*file)} : std::nullopt;
    };
    if (!compared.mine || !compared.theirNew) {
        HSVNException::exceptionWithReason(
            fmt::format("The conflict of '{}' left no files to compare, as one of a binary type does", _conflict->path),
            HSVNStatusCode::ClientIsBinaryFile)
            ->raise();
    }
    return HSVNThreeWayDiff::ofFiles(targetOf(compared.base ? compared.base : compared.theirOld),
                                     *targetOf(compared.mine), *targetOf(compared.theirNew), _conflict->context,
                                     options);
}

HSVNThreeWayDiff HSVNConflictedItem::propertyComparison(const std::string& property, const HSVNDiffOptionsRef& options)
{
    const auto values = propertyValues(property);
    return HSVNThreeWayDiff::ofTexts(values.theirOld.value_or(""), values.mine.value_or(""),
                                     values.theirNew.value_or(""), _conflict->context, options);
}

std::vector<std::string> HSVNConflictedItem::moveTargets(HSVNResolutionChoice choice, HSVNMovePlace place)
{
    HSVNOperation operation{_conflict->context,
                            conflictedItemName,
                            "moveTargetsOfChoice:place:",
                            {{"path", _conflict->path}, {"choice", choice}}};
    apr_array_header_t* found = nullptr;
    operation.call(&HSVNConflictFunctions::conflict_move_targets, &found, _conflict->record, static_cast<int>(choice),
                   place == HSVNMovePlace::Repository, operation.ctx(), *_conflict->pool);
    std::vector<std::string> targets;
    for (int index = 0; found && index < found->nelts; ++index) {
        targets.emplace_back(APR_ARRAY_IDX(found, index, const char*));
    }
    return targets;
}

void HSVNConflictedItem::chooseMoveTarget(HSVNResolutionChoice choice, HSVNMovePlace place, std::size_t index)
{
    HSVNOperation operation{_conflict->context,
                            conflictedItemName,
                            "chooseMoveTarget:place:index:",
                            {{"path", _conflict->path}, {"choice", choice}, {"index", index}}};
    operation.call(&HSVNConflictFunctions::conflict_choose_move_target, _conflict->record, static_cast<int>(choice),
                   place == HSVNMovePlace::Repository, static_cast<int>(index), operation.ctx(), *_conflict->pool);
}

void HSVNConflictedItem::resolve(HSVNConflictKind kind, HSVNResolutionChoice choice, const std::string& property,
                                 const std::optional<std::string>& merged)
{
    HSVNOperation operation{_conflict->context,
                            conflictedItemName,
                            "resolve:choice:property:value:",
                            {{"path", _conflict->path}, {"choice", choice}, {"property", property}}};
    // The conflict remembers the value for as long as it lives.
    const svn_string_t* const value = merged ? valueIn(operation, *merged, *_conflict->pool) : nullptr;
    operation.call(&HSVNConflictFunctions::conflict_resolve, _conflict->record, static_cast<int>(kind),
                   operation.cString(property), static_cast<int>(choice), value, operation.ctx(), *_conflict->pool);
}
