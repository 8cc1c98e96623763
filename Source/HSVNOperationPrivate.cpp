#include "HSVNOperationPrivate.h"

#include "HSVNCStringPrivate.h"
#include "HSVNException.h"
#include "HSVNReservedNamePrivate.h"

#include <fmt/format.h>

namespace {

/// The context, once the call is logged: the debug line comes before anything else that an operation does. Operations
/// that leave the context untested fail for nil as making its bundle current would.
const HSVNContextRef& logged(const HSVNContextRef& context, std::string_view className, std::string_view operation,
                             const std::vector<HSVNArgument>& arguments)
{
    HSVNLogCall(className, operation, arguments);
    if (!context) {
        HSVNBundlePush(nullptr);
    }
    return context;
}

} // namespace

void HSVNLogCall(std::string_view className, std::string_view operation, const std::vector<HSVNArgument>& arguments)
{
    if (HSVNDebug::level() < HSVNDebugLevelVerbose) {
        return;
    }
    std::string list;
    for (const auto& argument : arguments) {
        list += list.empty() ? "" : ", ";
        list.append(argument.name).append(": ").append(argument.text());
    }
    HSVNDebug::logAtLevel(HSVNDebugLevelVerbose, "[%@ %@] (%@)", className, operation, list);
}

HSVNOperation::HSVNOperation(const HSVNContextRef& context, std::string_view className, std::string_view operation,
                             const std::vector<HSVNArgument>& arguments)
    : _context{logged(context, className, operation, arguments)}, _name{fmt::format("[{} {}]", className, operation)},
      _version{context->bundleVersion().value_or(HSVNVersion{0, 0})}, _bundle{context->bundle()},
      _entryPoints{&HSVNCurrentEntryPoints()}, _pool{context->pool()}, _outerException{context->takeKeptException()}
{
}

HSVNOperation::~HSVNOperation()
{
    _context->takeKeptException();
    _context->keepException(std::move(_outerException));
}

void HSVNOperation::failUnsupported() const
{
    throw HSVNUnsupportedFeatureException(
        fmt::format("{} is not offered by the bundle of Subversion {}.{}", _name, _version.major(), _version.minor()));
}

void HSVNOperation::check(svn_error_t* error)
{
    if (const std::exception_ptr kept = _context->takeKeptException()) {
        _entryPoints->error_clear(error);
        std::rethrow_exception(kept);
    }
    if (error) {
        HSVNExceptionOfError(*_context, error, true)->raise();
    }
}

apr_array_header_t* HSVNOperation::pathArray(const HSVNPath& path)
{
    auto* const array = _entryPoints->apr_array_make(_pool, 1, sizeof(const char*));
    *static_cast<const char**>(_entryPoints->apr_array_push(array)) = changed(path.string());
    return array;
}

const char* HSVNOperation::cString(const std::string& text) const
{
    return _entryPoints->apr_pstrdup(_pool, HSVNCString(text));
}

const char* HSVNOperation::changed(const std::string& target) const
{
    const char* const text = cString(target);
    HSVNRequireUnreserved(target);
    return text;
}

HSVNExceptionRef HSVNExceptionOfError(const HSVNContext& context, svn_error_t* error, bool clear)
{
    const auto meaning = HSVNExtensionOrNull(context.bundle()->extensions(), &HSVNBundleExtensions::error_meaning);
    const auto code = meaning ? meaning(error) : 0;
    const HSVNExceptionClass* const known = code ? HSVNException::mapClassToAPRStatus(code) : nullptr;
    const HSVNExceptionRef exception = HSVNException::exceptionWithError(error, clear);
    return known ? known->make(exception->reason(), exception->userInfo()) : exception;
}

svn_error_t* HSVNGuardCallback(HSVNContext& context, const std::function<svn_error_t*()>& body) noexcept
{
    const HSVNBundleScope scope{context.bundle()};
    try {
        return body();
    } catch (...) {
        context.keepException(std::current_exception());
        return HSVN_SUBVERSION_ERROR(SVN_ERR_CANCELLED, nullptr);
    }
}

void HSVNGuardVoidCallback(HSVNContext& context, const std::function<void()>& body) noexcept
{
    const HSVNBundleScope scope{context.bundle()};
    try {
        body();
    } catch (...) {
        context.keepException(std::current_exception());
    }
}
