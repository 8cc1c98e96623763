#include "CommitQuestions.h"
#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <algorithm>
#include <new>
#include <string_view>
#include <svn_config.h>
#include <svn_delta.h>
#include <svn_ra.h>

// Every commit comes through here, whichever verb makes it. Some, as a copy of a working copy to a URL, are left as
// they are when they fail: their transactions would stay in the repository. And whoever stops a commit amid the request
// for a transaction, or for the revision, is not told of what is made of it.

namespace {

using HSVNAdapter::CommitQuestions;

/// How long whoever stops a commit waits for the server: the number of seconds in the configuration, if there is one.
svn_error_t* readPatience(CommitQuestions& questions)
{
    auto* const configuration = questions.context()->config;
    auto* const servers = configuration == nullptr
                              ? nullptr
                              : apr_hash_get(configuration, SVN_CONFIG_CATEGORY_SERVERS, APR_HASH_KEY_STRING);
    apr_int64_t seconds = 5;
    SVN_ERR(svn_config_get_int64(static_cast<svn_config_t*>(servers), &seconds, SVN_CONFIG_SECTION_GLOBAL,
                                 "stopped-commit-timeout", seconds));
    constexpr apr_int64_t day = 86400; // what is beyond has no end for those who wait
    questions.setPatience(std::chrono::seconds{std::clamp<apr_int64_t>(seconds, 0, day)});
    return SVN_NO_ERROR;
}

class Commit final : public HSVNAdapter::StartedCommit
{
  public:
    Commit(CommitQuestions& questions, svn_commit_callback2_t receiver, void* receiverBaton)
        : _questions{questions}, _receiver{receiver}, _receiverBaton{receiverBaton}
    {
    }

    /// Puts an editor in front of the one that makes the commit.
    void watch(const svn_delta_editor_t** editor, void** baton, const char* url, apr_pool_t* pool)
    {
        _url = url;
        _editor = *editor;
        _baton = *baton;
        _pool = pool;
        auto* const watched = static_cast<svn_delta_editor_t*>(apr_pmemdup(pool, *editor, sizeof(**editor)));
        watched->set_target_revision = setTargetRevision;
        watched->open_root = openRoot;
        watched->close_edit = closeEdit;
        watched->abort_edit = abortEdit;
        if (std::string_view{url}.starts_with("http")) {
            watched->delete_entry = Whole<&svn_delta_editor_t::delete_entry>::call;
            watched->add_directory = Whole<&svn_delta_editor_t::add_directory>::call;
            watched->close_directory = Whole<&svn_delta_editor_t::close_directory>::call;
            watched->add_file = Whole<&svn_delta_editor_t::add_file>::call;
            watched->apply_textdelta = Whole<&svn_delta_editor_t::apply_textdelta>::call;
            watched->apply_textdelta_stream = Whole<&svn_delta_editor_t::apply_textdelta_stream>::call;
            watched->close_file = Whole<&svn_delta_editor_t::close_file>::call;
        }
        *editor = watched;
        *baton = this;
        _questions.setStarted(this);
        apr_pool_pre_cleanup_register(pool, this, forget);
    }

    void giveUp() override
    {
        apr_pool_cleanup_kill(_pool, this, forget);
        if (!_isMade) {
            svn_error_clear(forgetTransaction(_pool));
        }
    }

    static svn_error_t* receive(const svn_commit_info_t* info, void* baton, apr_pool_t* pool)
    {
        auto& commit = *static_cast<Commit*>(baton);
        commit._isMade = true;
        return commit._receiver == nullptr ? SVN_NO_ERROR : commit._receiver(info, commit._receiverBaton, pool);
    }

  private:
    /// A place of the editor's whose requests change the transaction. A web server goes on with one that was stopped
    /// while it removes the transaction, and may so leave a part of it.
    template <auto Place>
    struct Whole;
    template <typename... Arguments, svn_error_t* (*svn_delta_editor_t::*Place)(Arguments...)>
    struct Whole<Place>
    {
        static svn_error_t* call(Arguments... arguments)
        {
            auto& questions = *CommitQuestions::current();
            const auto& commit = *static_cast<const Commit*>(questions.started());
            questions.defer();
            svn_error_t* const error = (commit._editor->*Place)(arguments...);
            return svn_error_compose_create(error, questions.deferred());
        }
    };

    static svn_error_t* setTargetRevision(void* baton, svn_revnum_t revision, apr_pool_t* pool)
    {
        const auto& commit = *static_cast<Commit*>(baton);
        return commit._editor->set_target_revision(commit._baton, revision, pool);
    }

    static svn_error_t* openRoot(void* baton, svn_revnum_t revision, apr_pool_t* pool, void** root)
    {
        const auto& commit = *static_cast<Commit*>(baton);
        commit._questions.defer();
        svn_error_t* const error = commit._editor->open_root(commit._baton, revision, pool, root);
        return svn_error_compose_create(error, commit._questions.deferred());
    }

    static svn_error_t* closeEdit(void* baton, apr_pool_t* pool)
    {
        auto& commit = *static_cast<Commit*>(baton);
        commit._questions.beginRevision();
        svn_error_t* const error = commit._editor->close_edit(commit._baton, pool);
        commit._questions.endRevision();
        commit._isMade = commit._isMade || error == nullptr;
        if (commit._isMade || svn_error_find_cause(error, SVN_ERR_CANCELLED) == nullptr) {
            return error;
        }
        return svn_error_createf(SVN_ERR_CANCELLED, error,
                                 "The commit was stopped before the server answered whether it made the revision, "
                                 "which may be there, or appear later: read the newest log of '%s' before you commit "
                                 "the same again",
                                 commit._url);
    }

    static svn_error_t* abortEdit(void* baton, apr_pool_t* pool)
    {
        auto& commit = *static_cast<Commit*>(baton);
        commit._isMade = true;
        return commit.forgetTransaction(pool);
    }

    svn_error_t* forgetTransaction(apr_pool_t* pool)
    {
        _questions.beginForgetting();
        return _editor->abort_edit(_baton, pool);
    }

    static apr_status_t forget(void* baton)
    {
        auto& commit = *static_cast<Commit*>(baton);
        if (commit._questions.started() == &commit) {
            commit._questions.setStarted(nullptr);
        }
        return APR_SUCCESS;
    }

    CommitQuestions& _questions;
    svn_commit_callback2_t _receiver;
    void* _receiverBaton;
    const char* _url = nullptr;
    const svn_delta_editor_t* _editor = nullptr;
    void* _baton = nullptr;
    apr_pool_t* _pool = nullptr;
    bool _isMade = false; ///< or given up
};

} // namespace

HSVN_STAND_IN(svn_error_t*, svn_ra_get_commit_editor3)
(svn_ra_session_t* session, const svn_delta_editor_t** editor, void** baton, apr_hash_t* revisionProperties,
 svn_commit_callback2_t receiver, void* receiverBaton, apr_hash_t* lockTokens, svn_boolean_t keepLocks,
 apr_pool_t* pool)
{
    auto* const questions = CommitQuestions::current();
    if (questions == nullptr) {
        return HSVN_BEHIND(svn_ra_get_commit_editor3)(session, editor, baton, revisionProperties, receiver,
                                                      receiverBaton, lockTokens, keepLocks, pool);
    }
    SVN_ERR(readPatience(*questions));
    auto* const commit = new (apr_palloc(pool, sizeof(Commit))) Commit{*questions, receiver, receiverBaton};
    SVN_ERR(HSVN_BEHIND(svn_ra_get_commit_editor3)(session, editor, baton, revisionProperties, Commit::receive, commit,
                                                   lockTokens, keepLocks, pool));
    const char* url = nullptr;
    SVN_ERR(svn_ra_get_session_url(session, &url, pool));
    commit->watch(editor, baton, url, pool);
    return SVN_NO_ERROR;
}

#endif
