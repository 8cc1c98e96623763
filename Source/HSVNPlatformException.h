#pragma once

#include "HSVNExport.h"
#include "HSVNUserInfo.h"

#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Root of everything that the library throws: a name, a reason and a dictionary of user information.
///
/// Immutable. `what()` is the reason. Exceptions made from a Subversion error are thrown as their concrete class, and
/// can be kept in a `HSVNPlatformExceptionRef` and thrown again as that class with `raise()`.
class HSVN_EXPORT HSVNPlatformException : public std::exception
{
  public:
    /// @param name      the exception's name, which need not be that of a class
    /// @param reason    a text for people, UTF-8
    /// @param userInfo  texts, numbers and dictionaries by key
    HSVNPlatformException(std::string name, std::string reason, HSVNUserInfo userInfo = {});

    /// The exception's name, such as "HSVNNotWorkingCopyException" or "NSInvalidArgumentException".
    const std::string& name() const noexcept { return _name; }
    /// The outermost message, UTF-8; `fullMessage` says why, too.
    const std::string& reason() const noexcept { return _reason; }
    /// What else is known of the failure; empty when there is nothing.
    const HSVNUserInfo& userInfo() const noexcept { return _userInfo; }
    /// All that there is to say: the reason, then what the causes in the user information add to it, the outermost
    /// first. A text that stands above already is left out.
    std::vector<std::string> messages() const;
    /// The messages as one text for people, a line each, without a line end behind the last.
    std::string fullMessage() const;
    const char* what() const noexcept override { return _reason.c_str(); }

    /// Name of the concrete C++ class, which an archive stores.
    virtual std::string className() const { return "HSVNPlatformException"; }
    /// Throws a copy of this exception as its concrete class. A subclass overrides this and `copy`; `HSVNExceptionOf`
    /// does so for it.
    [[noreturn]] virtual void raise() const { throw *this; }
    /// A copy of the concrete class.
    virtual std::shared_ptr<const HSVNPlatformException> copy() const
    {
        return std::make_shared<HSVNPlatformException>(*this);
    }
    /// The reason.
    std::string description() const { return _reason; }

  private:
    friend struct HSVNCommittedRevision;

    std::string _name;
    std::string _reason;
    HSVNUserInfo _userInfo;
};

using HSVNPlatformExceptionRef = std::shared_ptr<const HSVNPlatformException>;

/// A violated precondition or internal assertion; name "NSInternalInconsistencyException".
class HSVN_EXPORT HSVNAssertionException : public HSVNPlatformException
{
  public:
    /// The class's fixed name, that reason and no user information.
    explicit HSVNAssertionException(std::string reason);
    std::string className() const override { return "HSVNAssertionException"; }
    [[noreturn]] void raise() const override { throw *this; }
    HSVNPlatformExceptionRef copy() const override { return std::make_shared<HSVNAssertionException>(*this); }
};

/// An argument that the receiver cannot accept; name "NSInvalidArgumentException".
class HSVN_EXPORT HSVNInvalidArgumentException : public HSVNPlatformException
{
  public:
    /// The class's fixed name, that reason and no user information.
    explicit HSVNInvalidArgumentException(std::string reason);
    std::string className() const override { return "HSVNInvalidArgumentException"; }
    [[noreturn]] void raise() const override { throw *this; }
    HSVNPlatformExceptionRef copy() const override { return std::make_shared<HSVNInvalidArgumentException>(*this); }
};

/// Misuse that has no class of its own; name "NSGenericException".
class HSVN_EXPORT HSVNGenericException : public HSVNPlatformException
{
  public:
    /// The class's fixed name, that reason and no user information.
    explicit HSVNGenericException(std::string reason);
    std::string className() const override { return "HSVNGenericException"; }
    [[noreturn]] void raise() const override { throw *this; }
    HSVNPlatformExceptionRef copy() const override { return std::make_shared<HSVNGenericException>(*this); }
};

/// A state that should be impossible; name "NSInternalInconsistencyException".
class HSVN_EXPORT HSVNInternalInconsistencyException : public HSVNPlatformException
{
  public:
    /// The class's fixed name, that reason and no user information.
    explicit HSVNInternalInconsistencyException(std::string reason);
    std::string className() const override { return "HSVNInternalInconsistencyException"; }
    [[noreturn]] void raise() const override { throw *this; }
    HSVNPlatformExceptionRef copy() const override
    {
        return std::make_shared<HSVNInternalInconsistencyException>(*this);
    }
};

/// Throws `HSVNAssertionException` "Invalid parameter not satisfying: <condition>" unless `holds`.
///
/// @param condition  the condition's text as messages quote it, such as "path != nil"
inline void HSVNAssertParameter(bool holds, std::string_view condition);

/// Throws the exception of `HSVNAssertParameter`.
[[noreturn]] HSVN_EXPORT void HSVNFailParameter(std::string_view condition);

inline void HSVNAssertParameter(bool holds, std::string_view condition)
{
    if (!holds) [[unlikely]] {
        HSVNFailParameter(condition);
    }
}
