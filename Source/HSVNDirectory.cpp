#include "HSVNDirectory.h"

#include <fmt/format.h>

#include <limits>

namespace {

HSVNStatusKinds decodeKinds(HSVNCoder& decoder, std::string_view key)
{
    const std::uint64_t value = decoder.decodeUnsigned(key);
    if (value > std::numeric_limits<HSVNStatusKinds>::max()) {
        throw HSVNInvalidArgumentException(fmt::format("Value of \"{}\" is not a set of status kinds: {}", key, value));
    }
    return static_cast<HSVNStatusKinds>(value);
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
}

HSVNDirectory::HSVNDirectory(HSVNCoder* decoder)
    : HSVNNode{decoder}, _aggregateChildStatus{decodeKinds(*decoder, "aggregateChildStatus")},
      _aggregateReposChildStatus{decodeKinds(*decoder, "aggregateReposChildStatus")}
{
}
