#include "Internal/Operation.h"

#include "HSVNException.h"
#include "Internal/CString.h"
#include "Internal/CommittedRevision.h"
#include "Internal/KeptException.h"
#include "Internal/ReservedName.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <limits>
#include <optional>
#include <utility>

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

/// The context, when no argument is a nil object.
const HSVNContextRef& withObjects(const HSVNContextRef& context, const std::vector<HSVNArgument>& arguments)
{
    for (const auto& argument : arguments) {
        if (argument.isNil) {
            HSVNFailParameter(fmt::format("{} != nil", argument.name));
        }
    }
    return context;
}

/// The context as operations hold it: one that nobody shares, such as one on the stack, outlives its verbs.
HSVNContextRef sharedContext(HSVNContext& context)
{
    auto shared = context.weak_from_this().lock();
    return shared ? shared : HSVNContextRef{HSVNContextRef{}, &context};
}

bool isOfDatabase(const svn_error_t* error)
{
    const auto isMeant = [](apr_status_t code) {
        return (code >= SVN_ERR_SQLITE_ERROR && code <= SVN_ERR_SQLITE_CONSTRAINT) ||
               code == SVN_ERR_SQLITE_ROLLBACK_FAILED;
    };
    while (error && !isMeant(error->apr_err)) {
        error = error->child;
    }
    return error != nullptr;
}

/// Closes what the context keeps open: Subversion may leave a database amid the transaction that failed, which would
/// lock everyone out of the working copy.
void closeDatabases(const HSVNOperation& operation)
{
    const auto& context = operation.context();
    if (const auto close =
            HSVNExtensionOrNull(context->bundle()->extensions(), &HSVNDatabaseFunctions::close_working_copies))
    {
        operation->error_clear(close(operation.ctx(), context->pool(), operation.pool()));
    }
}

} // namespace

void HSVNArgument::addLocalPaths(const std::string& target)
{
    constexpr std::array<std::string_view, 13> names{"target", "targets", "path",       "folder", "directory",
                                                     "root",   "from",    "to",         "first",  "second",
                                                     "source", "sources", "destination"};
    const bool isItem = std::find(names.begin(), names.end(), name) != names.end();
    if (isItem && !target.empty() && target.find("://") == std::string::npos) {
        localPaths.push_back(target);
    }
}

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

HSVNVersion HSVNDecidingVersion(const HSVNContext& context)
{
    if (const auto kept = context.bundleVersion()) {
        return *kept;
    }
    const auto bundle = context.bundle();
    if (!bundle) {
        return {0, 0};
    }
    if (const auto reported = bundle->reportedVersion()) {
        return *reported;
    }
    return bundle->entryPoints()->client_update2 ? HSVNVersion{0, 0} : HSVNVersion::version1_5();
}

HSVNOperation::HSVNOperation(const HSVNContextRef& context, std::string_view className, std::string_view operation,
                             const std::vector<HSVNArgument>& arguments)
    : HSVNOperation{withObjects(context, arguments), className, operation, arguments, false}
{
}

HSVNOperation::HSVNOperation(HSVNContext& context, std::string_view verb, const std::vector<HSVNArgument>& arguments)
    : HSVNOperation{sharedContext(context), "HSVNContext", verb, arguments, true}
{
}

HSVNOperation::HSVNOperation(const HSVNContextRef& context, std::string_view className, std::string_view operation,
                             const std::vector<HSVNArgument>& arguments, bool isVerb)
    : _context{logged(context, className, operation, arguments)}, _use{*_context},
      _name{fmt::format("[{} {}]", className, operation)}, _isVerb{isVerb}, _bundle{context->bundle()},
      _version{HSVNDecidingVersion(*context)}, _entryPoints{&HSVNCurrentEntryPoints()}, _pool{context->pool()},
      _targets{targetsOf(arguments)}, _outerException{HSVNKeptException::take(*context)}
{
    if (_use.isOutermost()) {
        _context->beginOperation();
        refreshWorkingCopies();
    } else {
        check(useOwnDatabases(false));
        noteWorkingCopies();
    }
    _outerOperation = std::exchange(_context->_operation, this); // last: the destructor takes it back
}

HSVNOperation::~HSVNOperation()
{
    _context->_operation = _outerOperation;
    noteWorkingCopies();
    _context->_keptException = std::move(_outerException);
}

apr_array_header_t* HSVNOperation::targetsOf(const std::vector<HSVNArgument>& arguments) const
{
    auto* const targets = _entryPoints->apr_array_make(_pool, 1, sizeof(const char*));
    for (const auto& argument : arguments) {
        for (const auto& path : argument.localPaths) {
            *static_cast<const char**>(_entryPoints->apr_array_push(targets)) = cString(path);
        }
    }
    return targets;
}

void HSVNOperation::refreshWorkingCopies()
{
    if (const auto refresh =
            HSVNExtensionOrNull(_context->bundle()->extensions(), &HSVNDatabaseFunctions::refresh_working_copies))
    {
        check(refresh(_targets, ctx(), _context->pool(), _pool));
    }
}

svn_error_t* HSVNOperation::useOwnDatabases(bool anew) const
{
    // Null within what is no operation, which has Subversion at no database.
    const HSVNOperation* const around = _context->_operation == this ? _outerOperation : _context->_operation;
    const auto use = HSVNExtensionOrNull(_context->bundle()->extensions(), &HSVNDatabaseFunctions::use_own_databases);
    return use && around ? use(ctx(), around->pool(), anew, _pool) : nullptr;
}

void HSVNOperation::noteWorkingCopies() const
{
    if (const auto note =
            HSVNExtensionOrNull(_context->bundle()->extensions(), &HSVNDatabaseFunctions::note_working_copies))
    {
        note(_targets, ctx(), _context->pool(), _pool);
    }
}

void HSVNOperation::failUnsupported() const
{
    throw HSVNUnsupportedFeatureException(
        fmt::format("{} is not offered by the bundle of Subversion {}.{}", _name, _version.major(), _version.minor()));
}

void HSVNOperation::refuse(bool isChosen, std::string_view choice) const
{
    if (isChosen) {
        throw HSVNUnsupportedFeatureException(fmt::format("{}: '{}' is not offered by the bundle of Subversion {}.{}",
                                                          _name, choice, _version.major(), _version.minor()));
    }
}

svn_error_t* HSVNOperation::stop()
{
    _isStopped = true;
    return HSVN_SUBVERSION_ERROR(SVN_ERR_CEASE_INVOCATION, nullptr);
}

void HSVNOperation::check(svn_error_t* error)
{
    if (isOfDatabase(error)) {
        if (_use.isOutermost()) {
            closeDatabases(*this);
        } else {
            _entryPoints->error_clear(useOwnDatabases(true));
        }
    }
    if (const std::exception_ptr kept = HSVNKeptException::take(*_context)) {
        _entryPoints->error_clear(error);
        std::rethrow_exception(kept);
    }
    if (_isStopped) {
        _entryPoints->error_clear(error);
    } else if (error) {
        HSVNExceptionOfError(*_context, error, true)->raise();
    }
}

void HSVNOperation::check(svn_error_t* error, HSVNRevisionNumber committed)
{
    try {
        check(error);
    } catch (...) {
        HSVNCommittedRevision::tell(committed);
        throw;
    }
}

void HSVNOperation::check(svn_error_t* error, const svn_commit_info_t* info)
{
    // Above the range of the library's numbers only on a failure that says so itself.
    const bool isTold = info && info->revision <= std::numeric_limits<HSVNRevisionNumber>::max();
    check(error, isTold ? static_cast<HSVNRevisionNumber>(info->revision) : HSVNInvalidRevision);
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
    const auto meaning = HSVNExtensionOrNull(context.bundle()->extensions(), &HSVNLineFunctions::error_meaning);
    const auto code = meaning ? meaning(error) : 0;
    const HSVNExceptionClass* const known = code ? HSVNException::mapClassToAPRStatus(code) : nullptr;
    const HSVNExceptionRef exception = HSVNException::exceptionWithError(error, clear);
    return known ? known->make(exception->reason(), exception->userInfo()) : exception;
}

const HSVNBundleRef& HSVNOperation::bundleUnderWay(const HSVNContext& context) { return context._bundle; }

namespace {

/// The context's bundle is current for the scope; most callbacks find it so, and they are many.
class CallbackScope
{
  public:
    explicit CallbackScope(const HSVNContext& context)
    {
        if (const auto& bundle = HSVNOperation::bundleUnderWay(context); !HSVNBundleIsCurrent(bundle)) {
            _pushed.emplace(bundle);
        }
    }

  private:
    std::optional<HSVNBundleScope> _pushed;
};

} // namespace

svn_error_t* HSVNGuardCallback(HSVNContext& context, const std::function<svn_error_t*()>& body) noexcept
{
    const CallbackScope scope{context};
    try {
        return body();
    } catch (...) {
        HSVNKeptException::keep(context, std::current_exception());
        return HSVN_SUBVERSION_ERROR(SVN_ERR_CANCELLED, nullptr);
    }
}

void HSVNGuardVoidCallback(HSVNContext& context, const std::function<void()>& body) noexcept
{
    const CallbackScope scope{context};
    try {
        body();
    } catch (...) {
        HSVNKeptException::keep(context, std::current_exception());
    }
}
