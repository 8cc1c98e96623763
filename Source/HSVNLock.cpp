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

/// A date that archives have only when it says more than the one in whole seconds.
std::optional<HSVNDate> decodeExactDate(HSVNCoder& decoder, std::string_view key, const std::optional<HSVNDate>& date)
{
    return decoder.containsValueForKey(key) ? decoder.decodeDate(key) : date;
}

} // namespace

HSVNLock::HSVNLock(const svn_lock_t* lock) : HSVNLock(required(lock), HSVNPath::pathWithString(required(lock).path)) {}

HSVNLock::HSVNLock(const svn_lock_t& lock, HSVNPathRef path)
    : _path{std::move(path)}, _token{HSVNTextOrNil(lock.token).value_or("")}, _owner{HSVNTextOrNil(lock.owner)},
      _comment{HSVNTextOrNil(lock.comment)}, _creationDate{HSVNDate::dateWithAPRTime(lock.creation_date)},
      _expirationDate{HSVNDate::dateWithAPRTime(lock.expiration_date)},
      _exactCreationDate{HSVNDateOrNil(lock.creation_date)}, _exactExpirationDate{HSVNDateOrNil(lock.expiration_date)}
{
}

HSVNLockRef HSVNLock::lockWithSVNLock(const svn_lock_t* lock, const std::string& path)
{
    if (!lock) {
        return nullptr;
    }
    // Over HTTP, that of an item asked for twice is empty.
    auto place = HSVNPath::pathWithString(lock->path && *lock->path != '\0' ? lock->path : path);
    return HSVNLockRef{new HSVNLock{*lock, std::move(place)}}; // make_shared cannot reach the constructor
}

HSVNLock::HSVNLock(HSVNPathRef thePath, std::optional<std::string> theToken, std::optional<std::string> theOwner,
                   std::optional<std::string> theComment, std::optional<HSVNDate> theCreationDate,
                   std::optional<HSVNDate> theExpirationDate)
    : _path{std::move(thePath)}, _owner{std::move(theOwner)}, _comment{std::move(theComment)},
      _creationDate{theCreationDate}, _expirationDate{theExpirationDate}, _exactCreationDate{theCreationDate},
      _exactExpirationDate{theExpirationDate}
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
      _expirationDate{decoder->decodeDate("expirationDate")}, _exactCreationDate{decodeExactDate(
                                                                  *decoder, "exactCreationDate", _creationDate)},
      _exactExpirationDate{decodeExactDate(*decoder, "exactExpirationDate", _expirationDate)}
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
    if (_exactCreationDate != _creationDate) {
        encoder->encodeDate(_exactCreationDate, "exactCreationDate");
    }
    if (_exactExpirationDate != _expirationDate) {
        encoder->encodeDate(_exactExpirationDate, "exactExpirationDate");
    }
}
