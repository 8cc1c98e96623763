#include "Internal/LogChanges.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

namespace {

/// What stands before a change's texts in the block.
struct Fields
{
    std::uint32_t pathLength;
    std::uint32_t copyPathLength; ///< `noText` for no copy
    HSVNRevisionNumber copyRevision;
    HSVNLogAction action;
    HSVNNodeKind kind;
    std::optional<bool> textModified;
    std::optional<bool> propertiesModified;
};

constexpr auto noText = std::numeric_limits<std::uint32_t>::max();

void append(std::string& block, const HSVNLogChanges::Record& record)
{
    const auto lengthOf = [](std::string_view text) { return static_cast<std::uint32_t>(text.size()); };
    const Fields fields{.pathLength = lengthOf(record.path),
                        .copyPathLength = record.copyPath ? lengthOf(*record.copyPath) : noText,
                        .copyRevision = record.copyRevision,
                        .action = record.action,
                        .kind = record.kind,
                        .textModified = record.textModified,
                        .propertiesModified = record.propertiesModified};
    block.append(reinterpret_cast<const char*>(&fields), sizeof fields);
    block.append(record.path).append(record.copyPath.value_or(std::string_view{}));
}

/// Takes the next change from the rest of a block.
HSVNLogPathChangeRef takeChange(std::string_view& rest)
{
    const auto take = [&](std::size_t length) {
        const auto text = rest.substr(0, length);
        rest.remove_prefix(length);
        return text;
    };
    Fields fields{};
    std::memcpy(static_cast<void*>(&fields), take(sizeof fields).data(), sizeof fields);
    auto path = std::make_shared<const std::string>(take(fields.pathLength));
    auto copyPath =
        fields.copyPathLength == noText ? nullptr : std::make_shared<const std::string>(take(fields.copyPathLength));
    auto change =
        std::make_shared<HSVNLogPathChange>(std::move(path), fields.action, std::move(copyPath), fields.copyRevision);
    change->setKind(fields.kind);
    change->setTextModified(fields.textModified);
    change->setPropertiesModified(fields.propertiesModified);
    return change;
}

} // namespace

HSVNLogChanges::HSVNLogChanges(Map changes) : _objects{std::make_unique<Map>(std::move(changes))} {}

HSVNLogChanges::HSVNLogChanges(std::vector<Record> records)
{
    std::sort(records.begin(), records.end(), [](const Record& a, const Record& b) { return a.path < b.path; });
    std::size_t length = 0;
    for (const auto& record : records) {
        length += sizeof(Fields) + record.path.size() + record.copyPath.value_or(std::string_view{}).size();
    }
    _block.reserve(length);
    for (const auto& record : records) {
        append(_block, record);
    }
}

const HSVNLogChanges::Map& HSVNLogChanges::objects() const
{
    std::call_once(_isMade, [this] { makeObjects(); });
    return *_objects;
}

HSVNLogChanges::Map& HSVNLogChanges::objects()
{
    static_cast<void>(std::as_const(*this).objects());
    return *_objects;
}

void HSVNLogChanges::makeObjects() const
{
    if (_objects) {
        return;
    }
    auto objects = std::make_unique<Map>();
    for (std::string_view rest{_block}; !rest.empty();) {
        auto change = takeChange(rest);
        objects->emplace_hint(objects->end(), change->_path, change);
    }
    _objects = std::move(objects);
    std::string{}.swap(_block);
}
