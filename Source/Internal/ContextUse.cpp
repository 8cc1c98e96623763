#include "Internal/ContextUse.h"

#include "HSVNContext.h"
#include "HSVNPlatformException.h"

#include <fmt/format.h>
#include <sstream>
#include <string>

namespace {

std::string textOf(std::thread::id thread)
{
    std::ostringstream text;
    text << thread;
    return text.str();
}

} // namespace

HSVNContextUse::HSVNContextUse(const HSVNContext& context) : _context{context}
{
    const std::thread::id mine = std::this_thread::get_id();
    std::thread::id user;
    _isOutermost = _context._user.compare_exchange_strong(user, mine, std::memory_order_acquire);
    if (!_isOutermost && user != mine) {
        throw HSVNGenericException(fmt::format("A context serves one thread at a time: thread {} cannot use it during "
                                               "a call of thread {}",
                                               textOf(mine), textOf(user)));
    }
}

HSVNContextUse::~HSVNContextUse()
{
    if (_isOutermost) {
        _context._user.store({}, std::memory_order_release);
    }
}

void HSVNContextUse::requireOutermost(std::string_view subject) const
{
    if (!_isOutermost) {
        throw HSVNGenericException(
            fmt::format("The {} of a context cannot change while a call on it is under way", subject));
    }
}
