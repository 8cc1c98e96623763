#include "HSVNBundleEntryPointsPrivate.h"
