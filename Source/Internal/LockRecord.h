#pragma once

#include "HSVNLockRecord.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Text.h"

/// The record of a lock; nil for null. A lock read from a working copy may lack all but the token.
inline std::optional<HSVNLockRecord> HSVNLockRecordOf(const svn_lock_t* lock)
{
    if (!lock) {
        return std::nullopt;
    }
    return HSVNLockRecord{HSVNTextOrNil(lock->token).value_or(""), HSVNTextOrNil(lock->owner),
                          HSVNTextOrNil(lock->comment), HSVNDateOrNil(lock->creation_date),
                          HSVNDateOrNil(lock->expiration_date)};
}
