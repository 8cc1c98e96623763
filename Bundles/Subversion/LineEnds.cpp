#include "LineEnds.h"

#include <cstring>

#include <svn_props.h>
#include <svn_subst.h>

namespace HSVNAdapter {

svn_error_t* endLines(const svn_string_t** value, const char* propertyName, apr_pool_t* pool)
{
    // A value with a zero byte is no text: it stays whole.
    if (*value == nullptr || !svn_prop_needs_translation(propertyName) || std::strlen((*value)->data) != (*value)->len)
    {
        return SVN_NO_ERROR;
    }
    const char* text = nullptr;
    SVN_ERR(svn_subst_translate_cstring2((*value)->data, &text, "\n", FALSE, nullptr, FALSE, pool));
    *value = svn_string_create(text, pool);
    return SVN_NO_ERROR;
}

LogMessageTap::LogMessageTap(svn_client_ctx_t* ctx)
    : _ctx{ctx}, _function{ctx->log_msg_func2}, _baton{ctx->log_msg_baton2}
{
    if (_function != nullptr) {
        ctx->log_msg_func2 = ask;
        ctx->log_msg_baton2 = this;
    }
}

LogMessageTap::~LogMessageTap()
{
    _ctx->log_msg_func2 = _function;
    _ctx->log_msg_baton2 = _baton;
}

svn_error_t* LogMessageTap::ask(const char** message, const char** temporaryFile, const apr_array_header_t* items,
                                void* baton, apr_pool_t* pool)
{
    const auto& tap = *static_cast<const LogMessageTap*>(baton);
    SVN_ERR(tap._function(message, temporaryFile, items, tap._baton, pool));
    return *message == nullptr ? SVN_NO_ERROR
                               : svn_subst_translate_cstring2(*message, message, "\n", TRUE, nullptr, FALSE, pool);
}

} // namespace HSVNAdapter
