#pragma once

// A program that lacks any of these fails here instead of amid a header, or when it runs.
#if __cplusplus < 201709L
#error "HSVN needs C++20: compile with -std=c++20"
#elif !defined(__cpp_exceptions)
#error "HSVN throws exceptions: compile without -fno-exceptions"
#elif !defined(__cpp_rtti)
#error "HSVN asks for the classes of objects: compile without -fno-rtti"
#endif

// In some curses libraries a macro beside the function: all that is called `move` in C++ fails to compile then.
#undef move

/// Marks what the shared library exports; everything else stays hidden. The same in programs that are themselves built
/// with hidden symbols, so that an exception thrown by the library is caught there by its class.
#define HSVN_EXPORT __attribute__((visibility("default")))
