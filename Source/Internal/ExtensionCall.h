#pragma once

#include "HSVNRevision.h"
#include "Internal/BundleExtensions.h"
#include "Internal/Operation.h"
#include "Internal/PathText.h"
#include "Internal/ReservedName.h"

#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// What the operations over the second table share.

/// The texts as an array in the operation's pool.
inline apr_array_header_t* HSVNTextArray(const HSVNOperation& operation, const std::vector<std::string>& texts)
{
    auto* const array =
        operation->apr_array_make(operation.pool(), static_cast<int>(texts.size()), sizeof(const char*));
    for (const auto& text : texts) {
        *static_cast<const char**>(operation->apr_array_push(array)) = operation.cString(text);
    }
    return array;
}

/// The same as `HSVNTextArray` of targets that are to be changed; see `HSVNOperation::changed`.
inline apr_array_header_t* HSVNChangedArray(const HSVNOperation& operation, const std::vector<std::string>& targets)
{
    auto* const array = HSVNTextArray(operation, targets);
    for (const auto& target : targets) {
        HSVNRequireUnreserved(target);
    }
    return array;
}

/// The same as `HSVNTextArray`, but null for none, which stands for every item where Subversion filters by a list.
inline apr_array_header_t* HSVNFilterArray(const HSVNOperation& operation, const std::vector<std::string>& texts)
{
    return texts.empty() ? nullptr : HSVNTextArray(operation, texts);
}

/// Calls `body(text)` for every C string of an array, in order.
template <class Body>
void HSVNForEachText(const apr_array_header_t* array, Body body)
{
    for (int index = 0; index < array->nelts; ++index) {
        body(APR_ARRAY_IDX(array, index, const char*));
    }
}

/// The pairs of revisions as an array of `HSVNReadingFunctions::RevisionRange` values.
inline apr_array_header_t* HSVNRangeArray(const HSVNOperation& operation,
                                          const std::vector<std::pair<HSVNRevisionRef, HSVNRevisionRef>>& ranges)
{
    using Range = HSVNReadingFunctions::RevisionRange;
    auto* const array = operation->apr_array_make(operation.pool(), static_cast<int>(ranges.size()), sizeof(Range));
    for (const auto& [start, end] : ranges) {
        *static_cast<Range*>(operation->apr_array_push(array)) = {start->SVNRevision(), end->SVNRevision()};
    }
    return array;
}

/// Calls `body(text, value)` for every pair of a hash with text keys, in no particular order.
template <class Value, class Body>
void HSVNForEach(const HSVNOperation& operation, apr_hash_t* hash, Body body)
{
    auto* index = hash ? operation->apr_hash_first(operation.pool(), hash) : nullptr;
    for (; index; index = operation->apr_hash_next(index)) {
        const void* key = nullptr;
        void* value = nullptr;
        operation->apr_hash_this(index, &key, nullptr, &value);
        body(std::string{static_cast<const char*>(key)}, static_cast<const Value*>(value));
    }
}
