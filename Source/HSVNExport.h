#pragma once

/// Marks what the shared library exports; everything else stays hidden. The same in programs that are themselves built
/// with hidden symbols, so that an exception thrown by the library is caught there by its class.
#define HSVN_EXPORT __attribute__((visibility("default")))
