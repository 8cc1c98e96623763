#include "HSVNDirectory.h"

#include <fmt/format.h>

#include <limits>
#include <type_traits>

namespace {

static_assert(std::is_same_v<HSVNStatusKinds, std::uint32_t>);
constexpr const char* treeConflictKey = "treeConflictCount";

std::uint32_t decodeBits(HSVNCoder& decoder, std::string_view key, const char* meaning)
{
    const std::uint64_t value = decoder.decodeUnsigned(key);
    if (value > std::numeric_limits<std::uint32_t>::max()) {
        throw HSVNInvalidArgumentException(fmt::format("Value of \"{}\" is not {}: {}", key, meaning, value));
    }
    return static_cast<std::uint32_t>(value);
}

HSVNStatusKinds decodeKinds(HSVNCoder& decoder, std::string_view key)
{
    return decodeBits(decoder, key, "a set of status kinds");
}

} // namespace

HSVNNodeRef HSVNDirectory::copy() const
{
    auto directory = std::make_shared<HSVNDirectory>(*this);
    directory->unshareStatus();
    return directory;
}

void HSVNDirectory::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNNode::encodeWithCoder(encoder);
    encoder->encodeInteger(_aggregateChildStatus, "aggregateChildStatus");
    encoder->encodeInteger(_aggregateReposChildStatus, "aggregateReposChildStatus");
    if (_childTreeConflictCount > 0) {
        encoder->encodeInteger(_childTreeConflictCount, treeConflictKey);
    }
}

HSVNDirectory::HSVNDirectory(HSVNCoder* decoder)
    : HSVNNode{decoder}, _aggregateChildStatus{decodeKinds(*decoder, "aggregateChildStatus")},
      _aggregateReposChildStatus{decodeKinds(*decoder, "aggregateReposChildStatus")},
      _childTreeConflictCount{decodeBits(*decoder, treeConflictKey, "a number of items")}
{
}
