#pragma once

#include "HSVNCommitResult.h"
#include "Internal/Operation.h"
#include "Internal/Subversion.h"

#include <map>
#include <optional>
#include <string>

/// The frame of a verb that may commit: gives Subversion the log message and the revision properties that the caller
/// chose, and takes what it tells of each commit.
class HSVNRevisionChange
{
  public:
    /// All that is given outlives the frame.
    HSVNRevisionChange(HSVNContext& context, std::string_view verb, const std::vector<HSVNArgument>& arguments,
                       const std::optional<std::string>& message,
                       const std::map<std::string, std::string>& revisionProperties,
                       const HSVNReceiver<const HSVNCommitResult&>& receiver);
    ~HSVNRevisionChange();
    HSVNRevisionChange(const HSVNRevisionChange&) = delete;
    HSVNRevisionChange& operator=(const HSVNRevisionChange&) = delete;

    HSVNOperation& operation() { return _operation; }
    /// The revision properties; null for none.
    apr_hash_t* properties() const;
    /// Takes what Subversion tells of a commit; the baton is the frame.
    static svn_error_t* received(const svn_commit_info_t* info, void* baton, apr_pool_t* pool);
    /// The same for a function that answers the record; null for no commit.
    void take(const svn_commit_info_t* info);

    /// Throws what a callback kept or the error means; it then tells the last commit's revision.
    ///
    /// @return the last commit
    HSVNCommitResult finish(svn_error_t* error);

  private:
    static svn_error_t* answerLogMessage(const char** message, const char** temporaryFile,
                                         const apr_array_header_t* items, void* baton, apr_pool_t* pool) noexcept;
    svn_error_t* receive(const svn_commit_info_t& info);

    HSVNOperation _operation;
    const std::map<std::string, std::string>& _properties;
    const HSVNReceiver<const HSVNCommitResult&>& _receiver;
    HSVNCommitResult _result;
    const std::optional<std::string>& _message;
    // What asks for a log message outside of this frame.
    svn_client_get_commit_log2_t _outerAsk;
    void* _outerBaton;
};
