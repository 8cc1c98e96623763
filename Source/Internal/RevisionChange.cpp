#include "Internal/RevisionChange.h"

#include "Internal/CString.h"
#include "Internal/Properties.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

#include <utility>

namespace {

const std::optional<std::string>* checked(const std::optional<std::string>& message)
{
    if (message) {
        HSVNCString(*message);
    }
    return &message;
}

} // namespace

HSVNRevisionChange::HSVNRevisionChange(HSVNContext& context, std::string_view verb,
                                       const std::vector<HSVNArgument>& arguments,
                                       const std::optional<std::string>& message,
                                       const std::map<std::string, std::string>& revisionProperties,
                                       const HSVNReceiver<const HSVNCommitResult&>& receiver)
    : _operation{context, verb, arguments}, _message{checked(message)},
      _properties{&revisionProperties}, _receiver{&receiver}, _outer{exchangeSource({answerLogMessage, this})}
{
}

HSVNRevisionChange::HSVNRevisionChange(const HSVNContextRef& context, std::string_view className,
                                       std::string_view operation, const std::vector<HSVNArgument>& arguments)
    : _operation{context, className, operation, arguments}
{
}

HSVNRevisionChange::~HSVNRevisionChange()
{
    if (_outer) {
        exchangeSource(*_outer);
    }
}

HSVNRevisionChange::MessageSource HSVNRevisionChange::exchangeSource(const MessageSource& source)
{
    auto& ctx = *_operation.ctx();
    return {std::exchange(ctx.log_msg_func2, source.ask), std::exchange(ctx.log_msg_baton2, source.baton)};
}

svn_error_t* HSVNRevisionChange::answerLogMessage(const char** message, const char** temporaryFile,
                                                  const apr_array_header_t* items, void* baton,
                                                  apr_pool_t* pool) noexcept
{
    auto& change = *static_cast<HSVNRevisionChange*>(baton);
    return HSVNGuardCallback(*change._operation.context(),
                             [&] { return change.ask(message, temporaryFile, items, pool); });
}

svn_error_t* HSVNRevisionChange::ask(const char** message, const char** temporaryFile, const apr_array_header_t* items,
                                     apr_pool_t* pool)
{
    *temporaryFile = nullptr;
    const bool isOwn = _operation.isInnermost();
    if (isOwn && *_message) {
        *message = _operation->apr_pstrdup(pool, (*_message)->c_str());
        return nullptr;
    }
    if (!_outer->ask) {
        *message = ""; // as Subversion itself has it
        return nullptr;
    }
    svn_error_t* const error = _outer->ask(message, temporaryFile, items, _outer->baton, pool);
    if (isOwn && !error && !*message && !*temporaryFile) {
        _isRefused = true;
    }
    return error;
}

apr_hash_t* HSVNRevisionChange::properties() const
{
    if (!_properties || _properties->empty()) {
        return nullptr;
    }
    auto* const hash = _operation->apr_hash_make(_operation.pool());
    for (const auto& [name, value] : *_properties) {
        const char* const checkedName = HSVNCheckedPropertyName(_operation, name);
        auto* const record =
            static_cast<svn_string_t*>(_operation->apr_palloc(_operation.pool(), sizeof(svn_string_t)));
        record->data = value.data(); // the properties outlive the call
        record->len = value.size();
        _operation->apr_hash_set(hash, checkedName, APR_HASH_KEY_STRING, record);
    }
    return hash;
}

void HSVNRevisionChange::refuseProperties() const
{
    _operation.refuse(_properties && !_properties->empty(), "revisionProperties");
}

svn_error_t* HSVNRevisionChange::received(const svn_commit_info_t* info, void* baton, apr_pool_t* /*pool*/)
{
    auto& change = *static_cast<HSVNRevisionChange*>(baton);
    return HSVNGuardCallback(*change._operation.context(), [&] {
        change.note(*info);
        return change.handOver(true);
    });
}

svn_error_t* HSVNRevisionChange::noted(const svn_commit_info_t* info, void* baton, apr_pool_t* /*pool*/)
{
    auto& change = *static_cast<HSVNRevisionChange*>(baton);
    return HSVNGuardCallback(*change._operation.context(), [&]() -> svn_error_t* {
        change.note(*info);
        return nullptr;
    });
}

void HSVNRevisionChange::note(const svn_commit_info_t& info)
{
    _result = {.revision = HSVNRevisionNumberFromSubversion(info.revision),
               .date = HSVNTextOrNil(info.date),
               .author = HSVNTextOrNil(info.author),
               .postCommitError = HSVNTextOrNil(info.post_commit_err)};
    _isNoted = true;
}

svn_error_t* HSVNRevisionChange::handOver(bool mayStop)
{
    _isNoted = false;
    const bool goesOn = !_receiver || !*_receiver || (*_receiver)(_result);
    return goesOn || !mayStop ? nullptr : _operation.stop();
}

HSVNCommitResult HSVNRevisionChange::finish(svn_error_t* error, const svn_commit_info_t* info)
{
    if (info && info->revision >= 0) {
        const auto failure = HSVNGuardCallback(*_operation.context(), [&]() -> svn_error_t* {
            note(*info);
            return nullptr;
        });
        _operation->error_clear(failure); // what it means is kept
    }
    if (_isNoted) {
        _operation->error_clear(HSVNGuardCallback(*_operation.context(), [&] { return handOver(false); }));
    }
    _operation.check(error, _result.revision);
    _result.messageRefused = _isRefused;
    return _result;
}
