#pragma once

#include "CommandLine/Cancellation.h"
#include "Output/Progress.h"

#include <HSVN/HSVN.h>

/// What every delegate of the client does while an operation works: it shows the progress and answers whether to go on.
struct OperationListener
{
    static bool queryContinue(HSVNContext& /*context*/)
    {
        Progress::goOn();
        return !Cancellation::isAsked();
    }
};
