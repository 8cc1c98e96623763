#include "CommitQuestions.h"

#include <svn_subst.h>
#include <utility>

namespace HSVNAdapter {
namespace {

thread_local CommitQuestions* innermost = nullptr; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

} // namespace

CommitQuestions::CommitQuestions(svn_client_ctx_t* ctx)
    : NotificationTap{ctx}, _outer{std::exchange(innermost, this)}, _ctx{ctx}, _messageFunction{ctx->log_msg_func2},
      _messageBaton{ctx->log_msg_baton2}, _cancelFunction{ctx->cancel_func}, _cancelBaton{ctx->cancel_baton}
{
    if (_messageFunction != nullptr) {
        ctx->log_msg_func2 = askForMessage;
        ctx->log_msg_baton2 = this;
    }
    if (_cancelFunction != nullptr) {
        ctx->cancel_func = askWhetherToGoOn;
        ctx->cancel_baton = this;
    }
}

CommitQuestions::~CommitQuestions()
{
    setStarted(nullptr);
    innermost = _outer;
    _ctx->log_msg_func2 = _messageFunction;
    _ctx->log_msg_baton2 = _messageBaton;
    _ctx->cancel_func = _cancelFunction;
    _ctx->cancel_baton = _cancelBaton;
}

CommitQuestions* CommitQuestions::current() { return innermost; }

void CommitQuestions::setStarted(StartedCommit* commit)
{
    if (StartedCommit* const former = std::exchange(_started, commit)) {
        former->giveUp();
    }
}

svn_error_t* CommitQuestions::deferred()
{
    _defers = false;
    return std::exchange(_deferred, nullptr);
}

void CommitQuestions::beginRevision()
{
    _awaitsRevision = true;
    _stopped.reset();
}

void CommitQuestions::beginForgetting()
{
    _isFinalizing = false;
    _stopped = Clock::now();
}

svn_error_t* CommitQuestions::askForMessage(const char** message, const char** temporaryFile,
                                            const apr_array_header_t* items, void* baton, apr_pool_t* pool)
{
    const auto& questions = *static_cast<const CommitQuestions*>(baton);
    SVN_ERR(questions._messageFunction(message, temporaryFile, items, questions._messageBaton, pool));
    return *message == nullptr ? SVN_NO_ERROR
                               : svn_subst_translate_cstring2(*message, message, "\n", TRUE, nullptr, FALSE, pool);
}

svn_error_t* CommitQuestions::askWhetherToGoOn(void* baton)
{
    return static_cast<CommitQuestions*>(baton)->whetherToGoOn();
}

const svn_wc_notify_t* CommitQuestions::heard(const svn_wc_notify_t* notification, apr_pool_t* /*pool*/)
{
#if HSVN_LINE_MINOR >= 10
    _isFinalizing = notification->action == svn_wc_notify_commit_finalizing;
#endif
    return notification;
}

svn_error_t* CommitQuestions::whetherToGoOn()
{
    const auto now = Clock::now();
    const bool isPatient = !_stopped || now - *_stopped < _patience;
    if (_stopped && isPatient && !_isFinalizing) {
        return SVN_NO_ERROR;
    }
    svn_error_t* const answer = _cancelFunction(_cancelBaton);
    if (answer == nullptr) {
        return SVN_NO_ERROR;
    }
    const bool isFirst = !_stopped;
    _stopped = _stopped.value_or(now);
    if (_awaitsRevision ? isPatient : _isFinalizing) {
        svn_error_clear(answer);
        return SVN_NO_ERROR;
    }
    if (isFirst && _defers) {
        _deferred = answer;
        return SVN_NO_ERROR;
    }
    return answer;
}

} // namespace HSVNAdapter
