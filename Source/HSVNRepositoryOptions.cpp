#include "HSVNRepositoryOptions.h"

#include "Internal/Pool.h"

#include <fmt/format.h>

namespace {

void setEntry(apr_hash_t* configuration, const char* key, const char* value)
{
    HSVNCurrentEntryPoints().apr_hash_set(configuration, key, APR_HASH_KEY_STRING, value);
}

} // namespace

void HSVNRepositoryOptions::addHSVNOptionsTo(apr_hash_t* configuration) const
{
    switch (_compatibility) {
    case 1:
        return setEntry(configuration, "pre-1.6-compatible", "1");
    case 2:
        return setEntry(configuration, "pre-1.5-compatible", "1");
    case 3:
        return setEntry(configuration, "pre-1.4-compatible", "1");
    default:
        return;
    }
}

std::string HSVNRepositoryOptions::description() const
{
    return fmt::format("{{ {} compatibility: {:d} }}", HSVNOptions::description(), _compatibility);
}

void HSVNBerkeleyDBOptions::addHSVNOptionsTo(apr_hash_t* configuration) const
{
    HSVNRepositoryOptions::addHSVNOptionsTo(configuration);
    setEntry(configuration, "bdb-txn-nosync", _syncAtTransactionCommit ? "0" : "1");
    setEntry(configuration, "bdb-log-autoremove", _automaticLogFileRemoval ? "1" : "0");
}

std::string HSVNBerkeleyDBOptions::description() const
{
    return fmt::format("{{ {}, syncAtTransactionCommit: {:d}, automaticLogFileRemoval: {:d} }}",
                       HSVNRepositoryOptions::description(), _syncAtTransactionCommit, _automaticLogFileRemoval);
}
