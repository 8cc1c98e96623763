#pragma once

#include "HSVNContext.h"
#include "HSVNDebug.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNPath.h"
#include "HSVNPlatformException.h"
#include "HSVNReceiver.h"
#include "HSVNTypes.h"
#include "Internal/BrokenPipes.h"
#include "Internal/BundleExtensions.h"
#include "Internal/ContextUse.h"
#include "Internal/Pool.h"

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// One named argument of an operation's debug line; the value's text is made only when the line is written.
struct HSVNArgument
{
    std::string_view name;
    std::function<std::string()> text;
    bool isNil = false; ///< of an object
    /// The local paths among the items that the operation works on.
    std::vector<std::string> localPaths{};

    /// The value outlives the argument; it is shown as "%@" shows it.
    template <class Value>
    HSVNArgument(std::string_view argumentName, const Value& value)
        : name{argumentName}, text{[&value] { return HSVNDebugArgument(value).text(); }}, isNil{isNilObject(value)}
    {
        addLocalPaths(value);
    }

  private:
    template <class Value>
    static bool isNilObject(const Value& /*value*/)
    {
        return false;
    }
    template <class Class>
    static bool isNilObject(const std::shared_ptr<Class>& object)
    {
        return object == nullptr;
    }
    template <class Value>
    void addLocalPaths(const Value& /*value*/)
    {
    }
    /// A text is an item when the argument's name is one that the operations give their items.
    void addLocalPaths(const std::string& target);
    template <class Class>
    void addLocalPaths(const std::shared_ptr<Class>& object)
    {
        if constexpr (std::is_base_of_v<HSVNPath, Class>) {
            if (const auto* const path = dynamic_cast<const HSVNLocalPath*>(object.get())) {
                localPaths.push_back(path->string());
            }
        }
    }
    template <class First, class Second>
    void addLocalPaths(const std::pair<First, Second>& pair)
    {
        addLocalPaths(pair.first);
    }
    template <class Element>
    void addLocalPaths(const std::vector<Element>& elements)
    {
        for (const auto& element : elements) {
            addLocalPaths(element);
        }
    }
};

/// Writes the verbose debug line "[class operation] (name: value, ...)".
void HSVNLogCall(std::string_view className, std::string_view operation, const std::vector<HSVNArgument>& arguments);

/// The version that decides which of Subversion's functions serve a context: its `bundleVersion`, or what the bundle
/// itself reports where that is nil, as for a bundle that another loader loaded. A bundle that reports none is of the
/// oldest line unless its table lacks that line's functions.
HSVNVersion HSVNDecidingVersion(const HSVNContext& context);

/// The frame that every operation on a context runs in.
///
/// The constructor writes the debug line, refuses a context that another thread uses, pushes the context's bundle,
/// makes a sub-pool of the context's pool and sees to it that working copies which the context keeps open are still
/// those on the disk, or, within a callback of another operation, opens them for itself; the destructor destroys the
/// sub-pool and pops the bundle, in that order. Before all that the frame of a class operation refuses arguments that
/// are nil objects, in their order ("path != nil"); other preconditions are tested before it is made. Exceptions that
/// callbacks kept in the context while the operation ran are thrown by `check`.
class HSVNOperation
{
  public:
    /// @throws an assertion "Invalid parameter not satisfying: NAME != nil" for an argument that is a nil object
    HSVNOperation(const HSVNContextRef& context, std::string_view className, std::string_view operation,
                  const std::vector<HSVNArgument>& arguments);
    /// The frame of one of the context's verbs.
    HSVNOperation(HSVNContext& context, std::string_view verb, const std::vector<HSVNArgument>& arguments);
    ~HSVNOperation();
    HSVNOperation(const HSVNOperation&) = delete;
    HSVNOperation& operator=(const HSVNOperation&) = delete;

    /// The context's entry-point table.
    const HSVNBundleEntryPoints* operator->() const { return _entryPoints; }
    apr_pool_t* pool() const { return _pool; }
    svn_client_ctx_t* ctx() const { return _context->ctx(); }
    const HSVNContextRef& context() const { return _context; }
    /// The version that decides between Subversion's functions (`HSVNDecidingVersion`).
    const HSVNVersion& version() const { return _version; }
    /// The bundle of a context with a call under way: nobody can change it, so that no lock is needed.
    static const HSVNBundleRef& bundleUnderWay(const HSVNContext& context);
    /// Whether the bundle's line is the given one or newer.
    bool isAtLeast(const HSVNVersion& version) const { return !_version.isLessThan(version); }

    /// Throws `HSVNGenericException` when a call around this one is under way, for what would take the ground from
    /// under it (`HSVNContextUse`).
    void requireOutermost(std::string_view subject) const { _use.requireOutermost(subject); }

    /// A function of the bundle's second table.
    ///
    /// @param place  the member of its family
    /// @throws HSVNUnsupportedFeatureException naming the operation and the line when the bundle does not offer it
    template <class Family, class Function>
    Function extension(Function Family::*place) const
    {
        const auto function = HSVNExtensionOrNull(_context->bundle()->extensions(), place);
        if (!function) {
            failUnsupported();
        }
        return function;
    }

    /// Calls a function of the bundle's second table and checks what it answers.
    ///
    /// @throws as `extension` and `check`
    template <class Family, class... Parameters, class... Arguments>
    void call(svn_error_t* (*Family::*place)(Parameters...), Arguments&&... arguments)
    {
        check(extension(place)(std::forward<Arguments>(arguments)...));
    }

    /// The function of the bundle's second table that serves a verb. Null for a class operation, which keeps to the
    /// places of the first table, and where the bundle does not offer it: the place of the first table serves then.
    template <class Family, class Function>
    Function newest(Function Family::*place) const
    {
        return _isVerb ? HSVNExtensionOrNull(_context->bundle()->extensions(), place) : nullptr;
    }
    /// Whether this is one of the context's verbs.
    bool isVerb() const { return _isVerb; }
    /// Whether no other operation runs within this one: what Subversion asks then is asked for this one.
    bool isInnermost() const { return _context->_operation == this; }
    /// Refuses a choice that the place of the first table which serves instead has no room for.
    ///
    /// @param isChosen  whether the caller chose what that place does not do
    /// @throws HSVNUnsupportedFeatureException naming verb, choice and line
    void refuse(bool isChosen, std::string_view choice) const;

    /// What a callback answers to end Subversion's call early and well: `check` then returns as after a success.
    svn_error_t* stop();

    /// Throws the exception that a callback kept, else the exception of the error (which is consumed), else returns.
    void check(svn_error_t* error);
    /// The same for a call that may have committed: what is thrown tells the revision, which is in the repository all
    /// the same.
    void check(svn_error_t* error, HSVNRevisionNumber committed);
    /// @param info  what Subversion told of the commit; null for none
    void check(svn_error_t* error, const svn_commit_info_t* info);

    /// The C strings of paths that are to be changed, as `changed` makes them, in order; none is nil ("path != nil").
    template <class Path>
    apr_array_header_t* pathArray(const std::vector<std::shared_ptr<Path>>& paths)
    {
        auto* array = _entryPoints->apr_array_make(_pool, static_cast<int>(paths.size()), sizeof(const char*));
        for (const auto& path : paths) {
            HSVNAssertParameter(path != nullptr, "path != nil");
            *static_cast<const char**>(_entryPoints->apr_array_push(array)) = changed(path->string());
        }
        return array;
    }
    /// One path that is to be changed as an array.
    apr_array_header_t* pathArray(const HSVNPath& path);
    /// A copy of the text in the pool.
    ///
    /// @throws HSVNInvalidArgumentException for a text with a NUL in it, which would be cut there
    const char* cString(const std::string& text) const;
    /// The same of a path or URL that is to be changed.
    ///
    /// @throws HSVNException for a path with a reserved name; see `HSVNRequireUnreserved`
    const char* changed(const std::string& target) const;

  private:
    HSVNOperation(const HSVNContextRef& context, std::string_view className, std::string_view operation,
                  const std::vector<HSVNArgument>& arguments, bool isVerb);
    [[noreturn]] void failUnsupported() const;
    apr_array_header_t* targetsOf(const std::vector<HSVNArgument>& arguments) const;
    void refreshWorkingCopies();
    svn_error_t* useOwnDatabases(bool anew) const;
    void noteWorkingCopies() const;

    HSVNContextRef _context;
    HSVNContextUse _use;
    std::string _name; // "[class operation]"
    bool _isVerb;
    bool _isStopped = false;
    HSVNBrokenPipes _brokenPipes; // before the pool, with which connections end
    HSVNBundleScope _bundle;
    HSVNVersion _version;
    const HSVNBundleEntryPoints* _entryPoints;
    HSVNPool _pool;
    apr_array_header_t* _targets; // local paths
    // Of an operation that a callback of this context interrupts.
    std::exception_ptr _outerException;
    const HSVNOperation* _outerOperation = nullptr;
};

/// The exception of an error, whose class the first of its levels that means anything to the library decides, also
/// where a newer line or a web server has a code of its own for it. The error stays as it is.
///
/// @param context  whose bundle, which is current, the error comes from
HSVNExceptionRef HSVNExceptionOfError(const HSVNContext& context, svn_error_t* error, bool clear);

/// Runs the body of a callback that Subversion calls: no exception leaves it.
///
/// An exception is kept in the context and comes back as a cancellation error, which stops Subversion; the operation's
/// `check` then throws the kept one.
svn_error_t* HSVNGuardCallback(HSVNContext& context, const std::function<svn_error_t*()>& body) noexcept;
/// The same for callbacks that cannot answer an error; Subversion stops at its next cancellation check.
void HSVNGuardVoidCallback(HSVNContext& context, const std::function<void()>& body) noexcept;

/// What a callback answers once it has handed an item over to a receiver, which may stop the operation.
template <class Item, class Value>
svn_error_t* HSVNHandOver(HSVNOperation& operation, const HSVNReceiver<Item>& receiver, Value&& item)
{
    return receiver(std::forward<Value>(item)) ? nullptr : operation.stop();
}

/// Whom an operation's items go to: the baton of Subversion's callback.
template <class Item>
struct HSVNItemsCall
{
    HSVNOperation& operation;
    const HSVNReceiver<Item>& receiver;

    /// What the callback answers: `make` makes the item of Subversion's record.
    template <class Make>
    svn_error_t* handOver(Make make) const
    {
        return HSVNGuardCallback(*operation.context(), [&] { return HSVNHandOver(operation, receiver, make()); });
    }
};

/// All items of an operation.
///
/// @param operate  is given the receiver
template <class Item, class Operate>
std::vector<Item> HSVNCollected(Operate operate)
{
    std::vector<Item> items;
    operate([&items](const Item& item) { items.push_back(item); });
    return items;
}
