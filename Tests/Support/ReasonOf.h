#pragma once

#include "HSVNPlatformException.h"

#include <string>
#include <typeinfo>

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

/// The class and the reason of the exception that the call throws; empty when it throws none.
template <class Call>
std::string failureOf(Call&& call)
{
    try {
        call();
    } catch (const HSVNPlatformException& exception) {
        return std::string{typeid(exception).name()} + ": " + exception.reason();
    }
    return "";
}
