#pragma once

#include "HSVNCoder.h"
#include "HSVNDate.h"
#include "HSVNExport.h"
#include "HSVNForward.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

struct svn_lock_t;

/// The record of one repository lock: who holds it, with which token, since when, until when and why. Immutable; may be
/// shared between threads.
class HSVN_EXPORT HSVNLock : public HSVNArchivable
{
  public:
    /// Copies Subversion's record, which must not be null ("lock != NULL"); absent texts and times of 0 become nil.
    explicit HSVNLock(const svn_lock_t* lock);
    /// Path, token and creation date must not be nil ("thePath != nil", "theToken != nil", "theCreationDate != nil").
    ///
    /// @param thePath            the locked path as Subversion reports it, such as /trunk/file.c
    /// @param theExpirationDate  nil for a lock that never expires
    HSVNLock(HSVNPathRef thePath, std::optional<std::string> theToken, std::optional<std::string> theOwner,
             std::optional<std::string> theComment, std::optional<HSVNDate> theCreationDate,
             std::optional<HSVNDate> theExpirationDate);
    /// @throws HSVNInvalidArgumentException for a path, token or creation date that is missing
    explicit HSVNLock(HSVNCoder* decoder);
    /// The lock of Subversion's record; nil for null.
    ///
    /// @param path  stands in where the record tells none, as that of a lock which a working copy holds
    static HSVNLockRef lockWithSVNLock(const svn_lock_t* lock, const std::string& path);

    /// The locked path as Subversion reports it, such as /trunk/file.c; never nil.
    const HSVNPathRef& path() const { return _path; }
    /// The text by which the repository knows the lock.
    const std::string& token() const { return _token; }
    /// Who locked the item; nil when not known.
    const std::optional<std::string>& owner() const { return _owner; }
    /// Why; nil without a comment.
    const std::optional<std::string>& comment() const { return _comment; }
    /// Since when; nil for a lock record of Subversion without a time.
    const std::optional<HSVNDate>& creationDate() const { return _creationDate; }
    /// Until when; nil for a lock that never expires.
    const std::optional<HSVNDate>& expirationDate() const { return _expirationDate; }
    /// Since when, to the microsecond, where `creationDate` is cut to whole seconds.
    const std::optional<HSVNDate>& exactCreationDate() const { return _exactCreationDate; }
    /// Until when, in the same way.
    const std::optional<HSVNDate>& exactExpirationDate() const { return _exactExpirationDate; }

    /// A new lock that shares the six values.
    HSVNLockRef copy() const;
    /// Equality of the tokens alone; nil gives false.
    bool isEqualToLock(const HSVNLockRef& other) const { return other && *this == *other; }
    /// The same.
    bool isEqual(const HSVNLockRef& other) const { return isEqualToLock(other); }
    /// Identity on purpose: two equal locks may hash differently.
    std::size_t hash() const;

    std::string className() const override { return "HSVNLock"; }
    /// All fields, the comment cut to 20 characters.
    std::string description() const override;
    /// Keys: "comment", "creationDate", "expirationDate", "owner", "path", "token"; "exactCreationDate" and
    /// "exactExpirationDate" only where they say more.
    void encodeWithCoder(HSVNCoder* encoder) const override;

    /// Equality of the tokens alone.
    friend bool operator==(const HSVNLock& a, const HSVNLock& b) { return a._token == b._token; }

  private:
    HSVNLock(const svn_lock_t& lock, HSVNPathRef path);

    HSVNPathRef _path;
    std::string _token;
    std::optional<std::string> _owner;
    std::optional<std::string> _comment;
    std::optional<HSVNDate> _creationDate;
    std::optional<HSVNDate> _expirationDate;
    std::optional<HSVNDate> _exactCreationDate;
    std::optional<HSVNDate> _exactExpirationDate;
};
