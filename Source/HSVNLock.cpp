#include "HSVNLock.h"

#include "HSVNDebug.h"
#include "HSVNPath.h"
#include "Internal/Subversion.h"
#include "Internal/Text.h"

#include <fmt/format.h>

#include <utility>

namespace {

const svn_lock_t& required(const svn_lock_t* lock)
{
    HSVNAssertParameter(lock != nullptr, "lock != NULL");
    HSVNAssertParameter(lock->path && lock->token, "lock->path != NULL && lock->token != NULL");
    return *lock;
}

} // namespace

HSVNLock::HSVNLock(const svn_lock_t* lock)
    : _path{HSVNPath::pathWithString(required(lock).path)}, _token{lock->token}, _owner{HSVNTextOrNil(lock->owner)},
      _comment{HSVNTextOrNil(lock->comment)}, _creationDate{HSVNDate::dateWithAPRTime(lock->creation_date)},
      _expirationDate{HSVNDate::dateWithAPRTime(lock->expiration_date)}
{
}

HSVNLock::HSVNLock(HSVNPathRef thePath, std::optional<std::string> theToken, std::optional<std::string> theOwner,
                   std::optional<std::string> theComment, std::optional<HSVNDate> theCreationDate,
                   std::optional<HSVNDate> theExpirationDate)
    : _path{std::move(thePath)}, _owner{std::move(theOwner)}, _comment{std::move(theComment)},
      _creationDate{theCreationDate}, _expirationDate{theExpirationDate}
{
    HSVNAssertParameter(_path != nullptr, "thePath != nil");
    HSVNAssertParameter(theToken.has_value(), "theToken != nil");
    HSVNAssertParameter(_creationDate.has_value(), "theCreationDate != nil");
    _token = *std::move(theToken);
}

HSVNLock::HSVNLock(HSVNCoder* decoder)
    : _path{HSVNRequireKeyedUnarchiver(decoder)->decodeRequiredObject<const HSVNPath>("path")},
      _token{decoder->decodeRequiredString("token")}, _owner{decoder->decodeString("owner")},
      _comment{decoder->decodeString("comment")}, _creationDate{decoder->decodeDate("creationDate")},
      _expirationDate{decoder->decodeDate("expirationDate")}
{
}

HSVNLockRef HSVNLock::copy() const { return std::make_shared<HSVNLock>(*this); }

std::size_t HSVNLock::hash() const { return std::hash<const HSVNLock*>{}(this); }

std::string HSVNLock::description() const
{
    constexpr std::size_t describedCommentLength = 20;
    return fmt::format("{{ {} path: {}, token: {}, owner: {}, creationDate: {}, expirationDate: {}, comment: {} }}",
                       objectDescription(), HSVNDescription(_path.get()), _token, HSVNDescription(_owner),
                       HSVNDescription(_creationDate), HSVNDescription(_expirationDate),
                       HSVNDescription(HSVNDebugSubstring(_comment, describedCommentLength)));
}

void HSVNLock::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNRequireKeyedArchiver(encoder);
    encoder->encodeString(_comment, "comment");
    encoder->encodeDate(_creationDate, "creationDate");
    encoder->encodeDate(_expirationDate, "expirationDate");
    encoder->encodeString(_owner, "owner");
    encoder->encodeObject(_path, "path");
    encoder->encodeString(_token, "token");
}
