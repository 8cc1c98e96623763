#pragma once

#include "HSVNItemInfo.h"
#include "HSVNReadingChoices.h"
#include "HSVNReceiver.h"
#include "HSVNRevisionSpec.h"
#include "Internal/Operation.h"

#include <string>

/// Tells what is known of items.
///
/// @param operation  of `HSVNContext::info`
/// @param target     a path or a URL
void HSVNInfo(HSVNOperation& operation, const std::string& target, const HSVNRevisionSpec& revision,
              const HSVNInfoChoices& choices, const HSVNReceiver<const HSVNItemInfo&>& receiver);
