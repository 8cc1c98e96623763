#pragma once

#include "HSVNItemProperties.h"
#include "HSVNReadingChoices.h"
#include "HSVNRevisionSpec.h"
#include "Internal/Operation.h"

#include <string>

/// A property's name for Subversion, which looks at it in its command line alone: the library finds nothing by one that
/// is none, and a commit takes any.
///
/// @throws HSVNException of status `HSVNStatusCode::PropertyName`
const char* HSVNCheckedPropertyName(const HSVNOperation& operation, const std::string& name);

/// The values of a hash of counted strings by name; none of a null one.
HSVNPropertyMap HSVNPropertiesOfHash(const HSVNOperation& operation, apr_hash_t* hash);

/// Reads all properties of items, none of those that have none.
///
/// @param operation  of `HSVNContext::properties` or of the class operation
void HSVNReadProperties(HSVNOperation& operation, const std::string& target, const HSVNRevisionSpec& revision,
                        const HSVNPropertiesChoices& choices, const HSVNReceiver<const HSVNItemProperties&>& receiver);

/// Reads one property of the items that have it.
///
/// @param operation  of `HSVNContext::property` or of the class operation
HSVNPropertyValues HSVNReadProperty(HSVNOperation& operation, const std::string& target, const std::string& name,
                                    const HSVNRevisionSpec& revision, const HSVNPropertiesChoices& choices);
