#pragma once

#include "Internal/Subversion.h"

/// The minor number of the Subversion line that the adapter is compiled for: that of the headers. It decides which of
/// Subversion's functions are called. The tests compile the adapter for older lines against the installed headers,
/// which still declare what those lines had.
#ifndef HSVN_LINE_MINOR
#define HSVN_LINE_MINOR SVN_VER_MINOR
#endif
