#pragma once

#include "HSVNExport.h"
#include "HSVNLogItem.h"

/// Hears of each revision while a log is read, on the thread that reads it. Not owned by the library.
class HSVN_EXPORT HSVNLogDelegate
{
  public:
    virtual ~HSVNLogDelegate() = default;

    /// One revision has arrived; the item may be kept. A delegate that leaves this out takes every item.
    ///
    /// @return true to go on, false to stop the log: the operation then throws `HSVNOperationCancelledException`
    virtual bool logItemReceived(const HSVNLogItemRef& item)
    {
        static_cast<void>(item);
        return true;
    }
};
