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

/// The path is not a working copy.
class HSVN_EXPORT HSVNNotWorkingCopyException : public HSVNExceptionOf<HSVNNotWorkingCopyException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNNotWorkingCopyException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// An item is out of date.
class HSVN_EXPORT HSVNTransactionOutOfDateException
    : public HSVNExceptionOf<HSVNTransactionOutOfDateException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNTransactionOutOfDateException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The operation was cancelled.
class HSVN_EXPORT HSVNOperationCancelledException
    : public HSVNExceptionOf<HSVNOperationCancelledException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNOperationCancelledException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The item exists already.
class HSVN_EXPORT HSVNEntryExistsException : public HSVNExceptionOf<HSVNEntryExistsException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNEntryExistsException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// Access was refused.
class HSVN_EXPORT HSVNAuthorizationException : public HSVNExceptionOf<HSVNAuthorizationException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNAuthorizationException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// There is no such item.
class HSVN_EXPORT HSVNNoSuchEntryException : public HSVNExceptionOf<HSVNNoSuchEntryException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNNoSuchEntryException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The item has local changes or is unversioned.
class HSVN_EXPORT HSVNItemModifiedException : public HSVNExceptionOf<HSVNItemModifiedException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNItemModifiedException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The item is not under version control.
class HSVN_EXPORT HSVNUnversionedResourceException
    : public HSVNExceptionOf<HSVNUnversionedResourceException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNUnversionedResourceException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The server has no such repository.
class HSVN_EXPORT HSVNRepositoryNotFoundException
    : public HSVNExceptionOf<HSVNRepositoryNotFoundException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNRepositoryNotFoundException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// No repository at that place.
class HSVN_EXPORT HSVNNotRepositoryException : public HSVNExceptionOf<HSVNNotRepositoryException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNNotRepositoryException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The Subversion line in use lacks the feature.
class HSVN_EXPORT HSVNUnsupportedFeatureException
    : public HSVNExceptionOf<HSVNUnsupportedFeatureException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNUnsupportedFeatureException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The working copy's format is not of the line in use.
class HSVN_EXPORT HSVNUnsupportedWorkingCopyFormatException
    : public HSVNExceptionOf<HSVNUnsupportedWorkingCopyFormatException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNUnsupportedWorkingCopyFormatException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The repository's format is not of the line in use.
class HSVN_EXPORT HSVNUnsupportedRepositoryFormatException
    : public HSVNExceptionOf<HSVNUnsupportedRepositoryFormatException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNUnsupportedRepositoryFormatException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The working copy is locked; a clean-up releases it.
class HSVN_EXPORT HSVNWorkingCopyLockedException : public HSVNExceptionOf<HSVNWorkingCopyLockedException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNWorkingCopyLockedException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// A conflict in the repository.
class HSVN_EXPORT HSVNVersionConflictException : public HSVNExceptionOf<HSVNVersionConflictException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNVersionConflictException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// An item remains in conflict.
class HSVN_EXPORT HSVNMergeConflictException : public HSVNExceptionOf<HSVNMergeConflictException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNMergeConflictException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The working copy is not locked.
class HSVN_EXPORT HSVNWorkingCopyNotLockedException
    : public HSVNExceptionOf<HSVNWorkingCopyNotLockedException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNWorkingCopyNotLockedException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The item's schedule forbids the operation.
class HSVN_EXPORT HSVNInvalidScheduleException : public HSVNExceptionOf<HSVNInvalidScheduleException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNInvalidScheduleException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// Berkeley DB failed.
class HSVN_EXPORT HSVNBerkeleyDBException : public HSVNExceptionOf<HSVNBerkeleyDBException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNBerkeleyDBException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// An externals definition cannot be parsed.
class HSVN_EXPORT HSVNInvalidExternalsDescriptionException
    : public HSVNExceptionOf<HSVNInvalidExternalsDescriptionException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNInvalidExternalsDescriptionException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The server could not be talked to.
class HSVN_EXPORT HSVNCommunicationException : public HSVNExceptionOf<HSVNCommunicationException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNCommunicationException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The server closed the connection.
class HSVN_EXPORT HSVNConnectionClosedException
    : public HSVNExceptionOf<HSVNConnectionClosedException, HSVNCommunicationException>
{
  public:
    static constexpr const char* staticClassName = "HSVNConnectionClosedException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// No route to the server.
class HSVN_EXPORT HSVNHostUnreachableException
    : public HSVNExceptionOf<HSVNHostUnreachableException, HSVNCommunicationException>
{
  public:
    static constexpr const char* staticClassName = "HSVNHostUnreachableException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The server did not answer in time.
class HSVN_EXPORT HSVNCommunicationTimeOutException
    : public HSVNExceptionOf<HSVNCommunicationTimeOutException, HSVNCommunicationException>
{
  public:
    static constexpr const char* staticClassName = "HSVNCommunicationTimeOutException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The server refused the connection.
class HSVN_EXPORT HSVNConnectionRefusedException
    : public HSVNExceptionOf<HSVNConnectionRefusedException, HSVNCommunicationException>
{
  public:
    static constexpr const char* staticClassName = "HSVNConnectionRefusedException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// A lock is in the way.
class HSVN_EXPORT HSVNLockException : public HSVNExceptionOf<HSVNLockException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "HSVNLockException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The item is locked by another.
class HSVN_EXPORT HSVNEntryLockedException : public HSVNExceptionOf<HSVNEntryLockedException, HSVNLockException>
{
  public:
    static constexpr const char* staticClassName = "HSVNEntryLockedException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

/// The lock has expired.
class HSVN_EXPORT HSVNLockExpiredException : public HSVNExceptionOf<HSVNLockExpiredException, HSVNLockException>
{
  public:
    static constexpr const char* staticClassName = "HSVNLockExpiredException";
    using HSVNExceptionOf::HSVNExceptionOf;
};
