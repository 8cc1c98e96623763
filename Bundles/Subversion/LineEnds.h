#pragma once

#include "SubversionLine.h"

// Repositories refuse log messages and values of Subversion's own properties whose lines end in anything but "\n".

namespace HSVNAdapter {

/// Replaces the value, which may be null, of a property that Subversion keeps as text by one made in the pool whose
/// lines end in "\n". Lines that end in several ways are an error, as for `svn`.
svn_error_t* endLines(const svn_string_t** value, const char* propertyName, apr_pool_t* pool);

/// Ends the lines of log messages in "\n" while it lives, in whatever way they end.
class LogMessageTap
{
  public:
    explicit LogMessageTap(svn_client_ctx_t* ctx);
    ~LogMessageTap();
    LogMessageTap(const LogMessageTap&) = delete;
    LogMessageTap& operator=(const LogMessageTap&) = delete;

  private:
    static svn_error_t* ask(const char** message, const char** temporaryFile, const apr_array_header_t* items,
                            void* baton, apr_pool_t* pool);

    svn_client_ctx_t* _ctx;
    svn_client_get_commit_log2_t _function;
    void* _baton;
};

} // namespace HSVNAdapter
