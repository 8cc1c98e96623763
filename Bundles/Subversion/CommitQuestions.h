#pragma once

#include "Notifications.h"

#include <chrono>
#include <optional>

namespace HSVNAdapter {

/// A commit that has neither been made nor been given up.
class StartedCommit
{
  public:
    /// Has its transaction removed; nobody is told of an error.
    virtual void giveUp() = 0;

  protected:
    ~StartedCommit() = default;
};

/// Stands in the context's place for what Subversion asks and tells while it commits, as long as it lives.
///
/// Lines of log messages end in "\n", in whatever way they were given. Once the answer to whether to go on was no, it
/// is not asked for some seconds. For as long the requests go on that make the transaction and the revision, of which
/// nobody would know, and those by which a web server changes the transaction; and so does the one to forget the
/// transaction, which would stay there for ever. Once the revision is there, what follows goes on to its end, which
/// writes it into the working copy. A transaction that Subversion leaves behind where it fails is given up in the end.
/// Only where the adapter can stand in front of Subversion's functions does it know of requests and transactions.
class CommitQuestions : private NotificationTap
{
  public:
    explicit CommitQuestions(svn_client_ctx_t* ctx);
    ~CommitQuestions() override;
    CommitQuestions(const CommitQuestions&) = delete;
    CommitQuestions& operator=(const CommitQuestions&) = delete;

    /// Those of the calling thread's innermost call that commits; null when there are none.
    static CommitQuestions* current();

    /// What is given up when the object goes; null: nothing any more. An earlier one is given up now.
    void setStarted(StartedCommit* commit);
    StartedCommit* started() const { return _started; }

    /// A request begins that is not to be stopped.
    void defer() { _defers = true; }
    /// It has ended. Answers the no that came amid it, if any, which the caller owns.
    svn_error_t* deferred();

    /// The request for the revision begins.
    void beginRevision();
    /// It has ended.
    void endRevision() { _awaitsRevision = false; }

    /// The request begins to forget the transaction: nobody is asked for some seconds, whatever was before.
    void beginForgetting();

    /// How long a server is waited for once the answer was no; five seconds where nothing is said.
    void setPatience(std::chrono::seconds patience) { _patience = patience; }

    svn_client_ctx_t* context() const { return _ctx; }

  private:
    using Clock = std::chrono::steady_clock;

    static svn_error_t* askForMessage(const char** message, const char** temporaryFile, const apr_array_header_t* items,
                                      void* baton, apr_pool_t* pool);
    const svn_wc_notify_t* heard(const svn_wc_notify_t* notification, apr_pool_t* pool) override;
    static svn_error_t* askWhetherToGoOn(void* baton);
    svn_error_t* whetherToGoOn();

    CommitQuestions* _outer;
    svn_client_ctx_t* _ctx;
    svn_client_get_commit_log2_t _messageFunction;
    void* _messageBaton;
    svn_cancel_func_t _cancelFunction;
    void* _cancelBaton;
    std::chrono::seconds _patience{5};
    std::optional<Clock::time_point> _stopped; // when the first no was answered
    bool _isFinalizing = false;                // since Subversion has told of it
    bool _awaitsRevision = false;
    bool _defers = false;
    svn_error_t* _deferred = nullptr;
    StartedCommit* _started = nullptr;
};

} // namespace HSVNAdapter
