#pragma once

#include "SubversionLine.h"

// Functions of Subversion's and APR's that stand in front of those they are called like. The loader searches what a
// bundle needs for each symbol of the libraries loaded with it, and the bundle itself first of all: so libsvn_client's
// question to libsvn_ra comes through here and is handed on. What a server answers is thereby checked where every
// operation takes it from, whichever function of libsvn_client asks and however deep.
//
// In a program that has loaded the same libraries before the bundle they call one another as they always do.

#if defined(HSVN_GUARDS_DATABASES) || defined(HSVN_GUARDS_ENTRIES)

#include <dlfcn.h>

/// Marks a function that the libraries find.
#define HSVN_STAND_IN extern "C" __attribute__((visibility("default")))

namespace HSVNAdapter {

/// The function that another of its name stands in front of.
template <typename Function>
Function* behind(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace HSVNAdapter

/// The function behind the stand-in of its name.
#define HSVN_BEHIND(function)                                                                                          \
    ([] {                                                                                                              \
        static auto* const found = HSVNAdapter::behind<decltype(function)>(#function);                                 \
        return found;                                                                                                  \
    }())

#endif
