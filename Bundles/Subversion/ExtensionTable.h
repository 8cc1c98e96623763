#pragma once

#include "HSVNBundleExtensionsPrivate.h"

// Places of the second table that have sources of their own.

namespace HSVNAdapter {

void fillWorkingCopyExtensions(HSVNBundleExtensions& table);

} // namespace HSVNAdapter
