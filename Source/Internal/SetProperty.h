#pragma once

#include "HSVNWorkingCopyChoices.h"
#include "Internal/Operation.h"

#include <optional>
#include <string>

/// Sets a property of items, or deletes it.
///
/// @param operation  of `HSVNContext::setProperty` or of the class operation
/// @param targets    local paths, checked (`HSVNOperation::pathArray`, `HSVNChangedArray`)
/// @param value      nil deletes the property
void HSVNSetProperty(HSVNOperation& operation, const apr_array_header_t* targets, const std::string& name,
                     const std::optional<std::string>& value, const HSVNSetPropertyChoices& choices);
