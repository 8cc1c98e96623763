#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <algorithm>
#include <svn_cache_config.h>
#include <unistd.h>

// The user's configuration says how large the cache of what repositories hold is: some terabytes ended the process, a
// size that is beyond what the cache counts with. More than the machine's memory helps nobody.

HSVN_STAND_IN(void, svn_cache_config_set)(const svn_cache_config_t* settings)
{
    static const auto memory = static_cast<apr_uint64_t>(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGESIZE);
    svn_cache_config_t limited = *settings;
    limited.cache_size = std::min(limited.cache_size, memory);
    HSVN_BEHIND(svn_cache_config_set)(&limited);
}

#endif
