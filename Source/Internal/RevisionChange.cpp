#include "Internal/RevisionChange.h"

#include "Internal/CString.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

#include <utility>

HSVNRevisionChange::HSVNRevisionChange(HSVNContext& context, std::string_view verb,
                                       const std::vector<HSVNArgument>& arguments,
                                       const std::optional<std::string>& message,
                                       const std::map<std::string, std::string>& revisionProperties,
                                       const HSVNReceiver<const HSVNCommitResult&>& receiver)
    : _operation{context, verb, arguments}, _properties{revisionProperties}, _receiver{receiver}, _message{message},
      _outerAsk{std::exchange(_operation.ctx()->log_msg_func2, answerLogMessage)},
      _outerBaton{std::exchange(_operation.ctx()->log_msg_baton2, this)}
{
}

HSVNRevisionChange::~HSVNRevisionChange()
{
    _operation.ctx()->log_msg_func2 = _outerAsk;
    _operation.ctx()->log_msg_baton2 = _outerBaton;
}

svn_error_t* HSVNRevisionChange::answerLogMessage(const char** message, const char** temporaryFile,
                                                  const apr_array_header_t* items, void* baton,
                                                  apr_pool_t* pool) noexcept
{
    auto& change = *static_cast<HSVNRevisionChange*>(baton);
    *temporaryFile = nullptr;
    if (!change._message && change._outerAsk) {
        svn_error_t* const error = change._outerAsk(message, temporaryFile, items, change._outerBaton, pool);
        change._result.messageRefused = !error && !*message && !*temporaryFile;
        return error;
    }
    return HSVNGuardCallback(*change._operation.context(), [&]() -> svn_error_t* {
        *message = change._operation->apr_pstrdup(pool, HSVNCString(change._message.value_or("")));
        return nullptr;
    });
}

apr_hash_t* HSVNRevisionChange::properties() const
{
    if (_properties.empty()) {
        return nullptr;
    }
    auto* const hash = _operation->apr_hash_make(_operation.pool());
    for (const auto& [name, value] : _properties) {
        auto* const record =
            static_cast<svn_string_t*>(_operation->apr_palloc(_operation.pool(), sizeof(svn_string_t)));
        record->data = value.data(); // the properties outlive the call
        record->len = value.size();
        _operation->apr_hash_set(hash, _operation.cString(name), APR_HASH_KEY_STRING, record);
    }
    return hash;
}

svn_error_t* HSVNRevisionChange::received(const svn_commit_info_t* info, void* baton, apr_pool_t* /*pool*/)
{
    return static_cast<HSVNRevisionChange*>(baton)->receive(*info);
}

svn_error_t* HSVNRevisionChange::receive(const svn_commit_info_t& info)
{
    return HSVNGuardCallback(*_operation.context(), [&]() -> svn_error_t* {
        _result = {.revision = HSVNRevisionNumberFromSubversion(info.revision),
                   .date = HSVNTextOrNil(info.date),
                   .author = HSVNTextOrNil(info.author),
                   .postCommitError = HSVNTextOrNil(info.post_commit_err)};
        return _receiver ? HSVNHandOver(_operation, _receiver, _result) : nullptr;
    });
}

void HSVNRevisionChange::take(const svn_commit_info_t* info)
{
    if (info && info->revision >= 0) {
        _operation.check(receive(*info), info);
    }
}

HSVNCommitResult HSVNRevisionChange::finish(svn_error_t* error)
{
    _operation.check(error, _result.revision);
    return _result;
}
