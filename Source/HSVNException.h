#pragma once

#include "HSVNExport.h"
#include "HSVNPlatformException.h"

#include <cstdint>
#include <memory>
#include <string>

struct svn_error_t;

/// The status that stands for none in particular (APR_EGENERAL).
inline constexpr std::int32_t HSVNExceptionGeneralStatus = 20014;

class HSVNExceptionClass;

/// A failure of an operation. The concrete class tells its kind, the reason is Subversion's best message, and the user
/// information keeps the whole chain of errors as nested dictionaries, the outermost first.
class HSVN_EXPORT HSVNException : public HSVNPlatformException
{
  public:
    static constexpr const char* staticClassName = "HSVNException";

    /// User information: "status" = 20014.
    explicit HSVNException(std::string reason);
    /// With that user information; `status` is 20014 when it has no "status".
    HSVNException(std::string reason, HSVNUserInfo userInfo);
    /// User information: `dictionaryForError`; the reason is its message. Not null ("error != NULL").
    explicit HSVNException(const svn_error_t* error);

    /// The exception for a Subversion error chain: the first error in the chain whose code the library knows decides
    /// the class, the outermost error the reason. Needs a current bundle.
    ///
    /// @param error  the chain; not null ("error != NULL")
    /// @param clear  whether the chain is released (svn_error_clear) once the exception is built
    static std::shared_ptr<const HSVNException> exceptionWithError(svn_error_t* error, bool clear);
    /// The same with the chain released.
    static std::shared_ptr<const HSVNException> exceptionWithError(svn_error_t* error);
    /// An exception of the receiver's class; `status` is 20014.
    static std::shared_ptr<const HSVNException> exceptionWithReason(const std::string& reason);
    /// An exception of the class that the status maps to, or `HSVNException`; user information: "message" and "status".
    static std::shared_ptr<const HSVNException> exceptionWithReason(const std::string& reason, std::int32_t status);
    /// The user information of an error and, nested under "cause", of its children; not null ("error != nil").
    ///
    /// Stands for svn_err_best_message.
    static HSVNUserInfo dictionaryForError(const svn_error_t* error);
    /// The class of a status: that of the status map, or null when no row matches; a subclass answers itself.
    static const HSVNExceptionClass* classForAPRStatus(std::int32_t status);
    /// The class of the first row of the status map with that code, or null.
    static const HSVNExceptionClass* mapClassToAPRStatus(std::int32_t status);
    /// `HSVNAuthorizationException` when the error's message says that access was refused, else
    /// `HSVNCommunicationException`.
    static const HSVNExceptionClass* classForCommunicationError(const svn_error_t* error);

    /// The number under "status"; 20014 when there is none.
    std::int32_t status() const;

    std::string className() const override { return staticClassName; }
    [[noreturn]] void raise() const override { throw *this; }
    HSVNPlatformExceptionRef copy() const override { return std::make_shared<HSVNException>(*this); }

  protected:
    HSVNException(std::string className, std::string reason, HSVNUserInfo userInfo);
    /// What the class operation of that name answers when it is sent to `receiver`.
    static std::shared_ptr<const HSVNException> exceptionWithError(svn_error_t* error, bool clear,
                                                                   const HSVNExceptionClass& receiver);
};

using HSVNExceptionRef = std::shared_ptr<const HSVNException>;

/// A class of `HSVNException` as a value: its name and how an object of it is made. One object per class, for ever.
class HSVN_EXPORT HSVNExceptionClass
{
  public:
    /// Makes an object of the class, held by a reference; called with the reason and the user information.
    using Maker = HSVNExceptionRef (*)(std::string reason, HSVNUserInfo userInfo);
    /// @param className  the class's name; kept, not copied
    /// @param maker      not null
    constexpr HSVNExceptionClass(const char* className, Maker maker) : _name{className}, _maker{maker} {}

    /// The class's name, such as "HSVNLockException".
    const char* name() const { return _name; }
    /// A new exception of the class.
    HSVNExceptionRef make(std::string reason, HSVNUserInfo userInfo) const
    {
        return _maker(std::move(reason), std::move(userInfo));
    }
    /// The library's class of that name, `HSVNException` included, or null.
    static const HSVNExceptionClass* named(std::string_view name);

  private:
    const char* _name;
    Maker _maker;
};

/// Gives a subclass of `HSVNException` its constructors and the class operations that answer the receiver's own class.
///
/// An application's classes may derive from it too. `Concrete` is the new class, which declares its name as
/// `staticClassName`; `Base` is `HSVNException` or a class below it.
template <class Concrete, class Base>
class HSVN_EXPORT HSVNExceptionOf : public Base
{
  public:
    /// User information: "status" = 20014.
    explicit HSVNExceptionOf(std::string reason) : HSVNExceptionOf(std::move(reason), generalStatus()) {}
    /// With that user information; `status` is 20014 when it has no "status".
    HSVNExceptionOf(std::string reason, HSVNUserInfo userInfo)
        : Base(Concrete::staticClassName, std::move(reason), std::move(userInfo))
    {
    }
    /// The reason and the user information of an error; not null ("error != NULL"). Needs a current bundle.
    explicit HSVNExceptionOf(const svn_error_t* error) : HSVNExceptionOf(HSVNException{error}) {}

    /// An exception of this class for an error chain, whatever its codes; a communication failure is refined as there.
    static HSVNExceptionRef exceptionWithError(svn_error_t* error, bool clear)
    {
        return HSVNException::exceptionWithError(error, clear, *classForAPRStatus(HSVNExceptionGeneralStatus));
    }
    /// What `HSVNException` answers: the chain's codes, not this class, decide. The chain is released.
    static HSVNExceptionRef exceptionWithError(svn_error_t* error) { return HSVNException::exceptionWithError(error); }
    /// An exception of this class; `status` is 20014.
    static HSVNExceptionRef exceptionWithReason(const std::string& reason)
    {
        return std::make_shared<Concrete>(reason);
    }
    /// An exception of this class with that status; user information: "message" and "status".
    static HSVNExceptionRef exceptionWithReason(const std::string& reason, std::int32_t status)
    {
        return std::make_shared<Concrete>(
            reason, HSVNUserInfo{{HSVNExceptionMessageKey, reason}, {HSVNExceptionStatusKey, std::int64_t{status}}});
    }
    /// This class, whatever the status.
    static const HSVNExceptionClass* classForAPRStatus(std::int32_t)
    {
        static_assert(std::string_view{Concrete::staticClassName} != std::string_view{Base::staticClassName},
                      "a class has a name of its own");
        static constexpr HSVNExceptionClass ofApplication{Concrete::staticClassName, make};
        const auto* const ofLibrary = HSVNExceptionClass::named(Concrete::staticClassName);
        return ofLibrary ? ofLibrary : &ofApplication;
    }

    std::string className() const override { return Concrete::staticClassName; }
    [[noreturn]] void raise() const override { throw static_cast<const Concrete&>(*this); }
    HSVNPlatformExceptionRef copy() const override
    {
        return std::make_shared<Concrete>(static_cast<const Concrete&>(*this));
    }

  protected:
    HSVNExceptionOf(std::string className, std::string reason, HSVNUserInfo userInfo)
        : Base(std::move(className), std::move(reason), std::move(userInfo))
    {
    }

  private:
    explicit HSVNExceptionOf(const HSVNException& general) : HSVNExceptionOf(general.reason(), general.userInfo()) {}
    static HSVNExceptionRef make(std::string reason, HSVNUserInfo userInfo)
    {
        return std::make_shared<Concrete>(std::move(reason), std::move(userInfo));
    }
    static HSVNUserInfo generalStatus() { return {{HSVNExceptionStatusKey, std::int64_t{HSVNExceptionGeneralStatus}}}; }
};

// A subclass of its own name.
#define HSVN_EXCEPTION(Name, Base)                                                                                     \
    class HSVN_EXPORT Name : public HSVNExceptionOf<Name, Base>                                                        \
    {                                                                                                                  \
      public:                                                                                                          \
        static constexpr const char* staticClassName = #Name;                                                          \
        using HSVNExceptionOf<Name, Base>::HSVNExceptionOf;                                                            \
    }

/// The path is not a working copy.
HSVN_EXCEPTION(HSVNNotWorkingCopyException, HSVNException);

/// An item is out of date.
HSVN_EXCEPTION(HSVNTransactionOutOfDateException, HSVNException);

/// The operation was cancelled.
HSVN_EXCEPTION(HSVNOperationCancelledException, HSVNException);

/// The item exists already.
HSVN_EXCEPTION(HSVNEntryExistsException, HSVNException);

/// Access was refused.
HSVN_EXCEPTION(HSVNAuthorizationException, HSVNException);

/// There is no such item.
HSVN_EXCEPTION(HSVNNoSuchEntryException, HSVNException);

/// The item has local changes or is unversioned.
HSVN_EXCEPTION(HSVNItemModifiedException, HSVNException);

/// The item is not under version control.
HSVN_EXCEPTION(HSVNUnversionedResourceException, HSVNException);

/// The server has no such repository.
HSVN_EXCEPTION(HSVNRepositoryNotFoundException, HSVNException);

/// No repository at that place.
HSVN_EXCEPTION(HSVNNotRepositoryException, HSVNException);

/// The Subversion line in use lacks the feature.
HSVN_EXCEPTION(HSVNUnsupportedFeatureException, HSVNException);

/// The working copy's format is not of the line in use.
HSVN_EXCEPTION(HSVNUnsupportedWorkingCopyFormatException, HSVNException);

/// The repository's format is not of the line in use.
HSVN_EXCEPTION(HSVNUnsupportedRepositoryFormatException, HSVNException);

/// The working copy is locked; a clean-up releases it.
HSVN_EXCEPTION(HSVNWorkingCopyLockedException, HSVNException);

/// A conflict in the repository.
HSVN_EXCEPTION(HSVNVersionConflictException, HSVNException);

/// An item remains in conflict.
HSVN_EXCEPTION(HSVNMergeConflictException, HSVNException);

/// The working copy is not locked.
HSVN_EXCEPTION(HSVNWorkingCopyNotLockedException, HSVNException);

/// The item's schedule forbids the operation.
HSVN_EXCEPTION(HSVNInvalidScheduleException, HSVNException);

/// Berkeley DB failed.
HSVN_EXCEPTION(HSVNBerkeleyDBException, HSVNException);

/// An externals definition cannot be parsed.
HSVN_EXCEPTION(HSVNInvalidExternalsDescriptionException, HSVNException);

/// The server could not be talked to.
HSVN_EXCEPTION(HSVNCommunicationException, HSVNException);

/// The server closed the connection.
HSVN_EXCEPTION(HSVNConnectionClosedException, HSVNCommunicationException);

/// No route to the server.
HSVN_EXCEPTION(HSVNHostUnreachableException, HSVNCommunicationException);

/// The server did not answer in time.
HSVN_EXCEPTION(HSVNCommunicationTimeOutException, HSVNCommunicationException);

/// The server refused the connection.
HSVN_EXCEPTION(HSVNConnectionRefusedException, HSVNCommunicationException);

/// A lock is in the way.
HSVN_EXCEPTION(HSVNLockException, HSVNException);

/// The item is locked by another.
HSVN_EXCEPTION(HSVNEntryLockedException, HSVNLockException);

/// The lock has expired.
HSVN_EXCEPTION(HSVNLockExpiredException, HSVNLockException);

#undef HSVN_EXCEPTION
