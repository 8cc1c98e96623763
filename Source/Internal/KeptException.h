#pragma once

#include "HSVNContext.h"

#include <exception>
#include <utility>

/// The exception that a callback of a context must not throw through Subversion; the first one kept stays.
struct HSVNKeptException
{
    static void keep(HSVNContext& context, std::exception_ptr exception) noexcept
    {
        if (!context._keptException) {
            context._keptException = std::move(exception);
        }
    }
    /// Takes it away; null when there is none.
    static std::exception_ptr take(HSVNContext& context) noexcept
    {
        return std::exchange(context._keptException, nullptr);
    }
    /// Whether there is one, so that the running operation is to be stopped.
    static bool isIn(const HSVNContext& context) noexcept { return context._keptException != nullptr; }
};
