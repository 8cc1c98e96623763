#pragma once

#include "HSVNCommitResult.h"
#include "Internal/Operation.h"
#include "Internal/Subversion.h"

#include <map>
#include <optional>
#include <string>

/// The frame of an operation that may commit: gives Subversion the log message and the revision properties that the
/// caller of a verb chose, and takes what it tells of each commit.
///
/// An operation that a callback runs within this one has its own message, or asks the delegate.
class HSVNRevisionChange
{
  public:
    /// The frame of one of the context's verbs. All that is given outlives it.
    ///
    /// @param message  nil asks the delegate
    /// @throws HSVNInvalidArgumentException for a message with a NUL in it
    HSVNRevisionChange(HSVNContext& context, std::string_view verb, const std::vector<HSVNArgument>& arguments,
                       const std::optional<std::string>& message,
                       const std::map<std::string, std::string>& revisionProperties,
                       const HSVNReceiver<const HSVNCommitResult&>& receiver);
    /// The frame of a class operation, which leaves the message to the context's delegate.
    HSVNRevisionChange(const HSVNContextRef& context, std::string_view className, std::string_view operation,
                       const std::vector<HSVNArgument>& arguments);
    ~HSVNRevisionChange();
    HSVNRevisionChange(const HSVNRevisionChange&) = delete;
    HSVNRevisionChange& operator=(const HSVNRevisionChange&) = delete;

    HSVNOperation& operation() { return _operation; }
    /// The revision properties; null for none.
    apr_hash_t* properties() const;
    /// The same for a place of the first table, which has no room for any.
    void refuseProperties() const;

    /// Takes what Subversion tells of a commit; the baton is the frame. The caller's receiver hears of it at once, and
    /// may keep a function that commits several times from going on.
    static svn_error_t* received(const svn_commit_info_t* info, void* baton, apr_pool_t* pool);
    /// The same for a function that commits once: the caller's receiver hears of it in `finish`, for what it throws
    /// would keep Subversion from writing the revision into the working copy.
    static svn_error_t* noted(const svn_commit_info_t* info, void* baton, apr_pool_t* pool);

    /// Tells the receiver of the commit that was noted; then throws what a callback kept or the error means, which
    /// tells the last commit's revision.
    ///
    /// @param info  of a function that answers the record instead; null for none
    /// @return the last commit
    HSVNCommitResult finish(svn_error_t* error, const svn_commit_info_t* info = nullptr);

  private:
    struct MessageSource
    {
        svn_client_get_commit_log2_t ask;
        void* baton;
    };

    MessageSource exchangeSource(const MessageSource& source);
    static svn_error_t* answerLogMessage(const char** message, const char** temporaryFile,
                                         const apr_array_header_t* items, void* baton, apr_pool_t* pool) noexcept;
    svn_error_t* ask(const char** message, const char** temporaryFile, const apr_array_header_t* items,
                     apr_pool_t* pool);
    void note(const svn_commit_info_t& info);
    svn_error_t* handOver(bool mayStop);

    HSVNOperation _operation;
    const std::optional<std::string>* _message = nullptr;
    const std::map<std::string, std::string>* _properties = nullptr;
    const HSVNReceiver<const HSVNCommitResult&>* _receiver = nullptr;
    HSVNCommitResult _result;
    bool _isNoted = false; // and the receiver has not heard of it
    bool _isRefused = false;
    std::optional<MessageSource> _outer; // what is asked outside of a verb's frame
};
