#pragma once

#include "SubversionLine.h"

// Functions of Subversion's and APR's that stand in front of those they are called like. The loader searches what a
// bundle needs for each symbol of the libraries loaded with it, and the bundle itself first of all: so libsvn_client's
// question to libsvn_ra comes through here and is handed on. What a server answers is thereby checked where every
// operation takes it from, whichever function of libsvn_client asks and however deep.
//
// In a program that has loaded the same libraries before the bundle they call one another as they always do.
//
// In a bundle of static libraries the linker leads calls from one object to another the same way, by other names; a
// call within one object stays there.

#if defined(HSVN_GUARDS_DATABASES) || defined(HSVN_GUARDS_ENTRIES)

#ifdef HSVN_LINKED_STATICALLY

/// The head of a function that the libraries find in place of their own.
#define HSVN_STAND_IN(result, function) extern "C" result __wrap_##function

/// The function behind the stand-in of its name.
#define HSVN_BEHIND(function)                                                                                          \
    ([] {                                                                                                              \
        extern decltype(function) HSVNBehind_##function asm("__real_" #function);                                      \
        return &HSVNBehind_##function;                                                                                 \
    }())

#else

#include <dlfcn.h>

/// The head of a function that the libraries find in place of their own.
#define HSVN_STAND_IN(result, function) extern "C" __attribute__((visibility("default"))) result function

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
#endif
