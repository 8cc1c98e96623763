#pragma once

#include "HSVNPlatformException.h"

#include <string>

/// The reason of the `Exception` that the call throws; "(nothing was thrown)" when it throws none.
template <class Exception = HSVNPlatformException, class Call>
std::string reasonOf(Call&& call)
{
    try {
        call();
    } catch (const Exception& exception) {
        return exception.reason();
    }
    return "(nothing was thrown)";
}
