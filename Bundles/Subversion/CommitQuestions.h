#pragma once

#include "SubversionLine.h"

#include <chrono>
#include <optional>

namespace HSVNAdapter {

/// Stands in the context's place for what Subversion asks while it commits, as long as it lives.
///
/// Lines of log messages end in "\n", in whatever way they were given. Once the answer to whether to go on was no, it
/// is not asked for some seconds: Subversion asks amid its request to a web server to forget the transaction, too,
/// which would stay there for ever.
class CommitQuestions
{
  public:
    explicit CommitQuestions(svn_client_ctx_t* ctx);
    ~CommitQuestions();
    CommitQuestions(const CommitQuestions&) = delete;
    CommitQuestions& operator=(const CommitQuestions&) = delete;

  private:
    using Clock = std::chrono::steady_clock;

    static svn_error_t* askForMessage(const char** message, const char** temporaryFile, const apr_array_header_t* items,
                                      void* baton, apr_pool_t* pool);
    static svn_error_t* askWhetherToGoOn(void* baton);
    svn_error_t* whetherToGoOn();

    svn_client_ctx_t* _ctx;
    svn_client_get_commit_log2_t _messageFunction;
    void* _messageBaton;
    svn_cancel_func_t _cancelFunction;
    void* _cancelBaton;
    std::optional<Clock::time_point> _stopped; // when the first no was answered
};

} // namespace HSVNAdapter
