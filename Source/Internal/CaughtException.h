#pragma once

#include "HSVNPlatformException.h"

/// The exception that is being handled, as an exception of the platform: itself when it is one, else a generic
/// exception whose reason tells what is known of it. Called only while an exception is handled.
HSVNPlatformExceptionRef HSVNCaughtException();
