#pragma once

#include "Internal/BundleEntryPoints.h"

namespace HSVNTestBundle {

/// The adapter's table with every client, working-copy and repository function recording its calls before it is made.
HSVNBundleEntryPoints recordingTable();

} // namespace HSVNTestBundle
