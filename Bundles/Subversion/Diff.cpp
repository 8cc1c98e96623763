#include "ExtensionTable.h"
#include "ExtensionTargets.h"

#include <array>
#include <initializer_list>
#include <svn_path.h>
#include <svn_utf.h>

namespace HSVNAdapter {
namespace {

svn_error_t* summarize(const char* target1, const svn_opt_revision_t* revision1, const char* target2,
                       const svn_opt_revision_t* revision2, const HSVNDifferenceFunctions::Comparing* choices,
                       svn_client_diff_summarize_func_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target1, pool));
    SVN_ERR(checkTarget(&target2, pool));
#if HSVN_LINE_MINOR >= 5
    return svn_client_diff_summarize2(target1, revision1, target2, revision2, choices->depth, choices->ignoreAncestry,
                                      choices->changelists, receiver, baton, ctx, pool);
#else
    return svn_client_diff_summarize(target1, revision1, target2, revision2, recurses(choices->depth),
                                     choices->ignoreAncestry, receiver, baton, ctx, pool);
#endif
}

svn_error_t* summarizePeg(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* start,
                          const svn_opt_revision_t* end, const HSVNDifferenceFunctions::Comparing* choices,
                          svn_client_diff_summarize_func_t receiver, void* baton, svn_client_ctx_t* ctx,
                          apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
#if HSVN_LINE_MINOR >= 5
    return svn_client_diff_summarize_peg2(target, pegRevision, start, end, choices->depth, choices->ignoreAncestry,
                                          choices->changelists, receiver, baton, ctx, pool);
#else
    return svn_client_diff_summarize_peg(target, pegRevision, start, end, recurses(choices->depth),
                                         choices->ignoreAncestry, receiver, baton, ctx, pool);
#endif
}

svn_error_t* settleStreams(svn_stream_t** out, svn_stream_t** errors, apr_pool_t* pool)
{
    if (*out == nullptr) {
        SVN_ERR(svn_stream_for_stdout(out, pool));
    }
    if (*errors != nullptr) {
        return SVN_NO_ERROR;
    }
#if HSVN_LINE_MINOR >= 7
    return svn_stream_for_stderr(errors, pool);
#else
    apr_file_t* file = nullptr;
    if (const apr_status_t status = apr_file_open_stderr(&file, pool); status != APR_SUCCESS) {
        return svn_error_wrap_apr(status, "Can't open stderr");
    }
    *errors = svn_stream_from_aprfile(file, pool);
    return SVN_NO_ERROR;
#endif
}

const char* headerEncoding(const HSVNDifferenceFunctions::Comparing& choices)
{
    return choices.headerEncoding != nullptr ? choices.headerEncoding : SVN_APR_LOCALE_CHARSET;
}

#if HSVN_LINE_MINOR < 7
/// These lines know no arguments but those that are given.
const apr_array_header_t* argumentsOf(const HSVNDifferenceFunctions::Comparing& choices, apr_pool_t* pool)
{
    return choices.arguments != nullptr ? choices.arguments : apr_array_make(pool, 0, sizeof(const char*));
}
#endif

#if HSVN_LINE_MINOR < 8
/// A file that an older function writes in place of a stream.
class WrittenFile
{
  public:
    explicit WrittenFile(apr_pool_t* pool) : _pool{pool} {}
    ~WrittenFile()
    {
        if (_file != nullptr) {
            apr_file_close(_file); // which removes it
        }
    }
    WrittenFile(const WrittenFile&) = delete;
    WrittenFile& operator=(const WrittenFile&) = delete;

    svn_error_t* open()
    {
        const char* folder = nullptr;
        SVN_ERR(svn_io_temp_dir(&folder, _pool));
        return svn_io_open_unique_file2(&_file, nullptr, svn_path_join(folder, "hsvn-diff", _pool), ".tmp",
                                        svn_io_file_del_on_close, _pool);
    }
    apr_file_t* file() const { return _file; }

    /// Hands over what was written.
    svn_error_t* copyTo(svn_stream_t* out) const
    {
        apr_off_t start = 0;
        SVN_ERR(svn_io_file_seek(_file, APR_SET, &start, _pool));
        std::array<char, 16384> block{};
        while (apr_file_eof(_file) != APR_EOF) {
            apr_size_t size = block.size();
            const apr_status_t status = apr_file_read(_file, block.data(), &size);
            if (status != APR_SUCCESS && !APR_STATUS_IS_EOF(status)) {
                return svn_error_wrap_apr(status, "Can't read the differences");
            }
            SVN_ERR(svn_stream_write(out, block.data(), &size));
        }
        return SVN_NO_ERROR;
    }

  private:
    apr_pool_t* _pool;
    apr_file_t* _file = nullptr;
};

/// Compares by a function that writes files; what it wrote before it failed is handed over, too.
template <class Compare>
svn_error_t* writeThroughFiles(svn_stream_t* out, svn_stream_t* errors, apr_pool_t* pool, Compare compare)
{
    WrittenFile text{pool};
    WrittenFile messages{pool};
    SVN_ERR(text.open());
    SVN_ERR(messages.open());
    svn_error_t* const error = compare(text.file(), messages.file());
    svn_error_t* failure = text.copyTo(out);
    failure = failure == nullptr ? messages.copyTo(errors) : failure;
    if (error == nullptr) {
        return failure;
    }
    svn_error_clear(failure);
    return error;
}
#endif

#if HSVN_LINE_MINOR >= 5
/// Subversion finds a directory in front of names only where both are absolute; those of URLs are below them already.
svn_error_t* settleNames(const char** relativeTo, std::initializer_list<const char**> targets, apr_pool_t* pool)
{
    bool isLocal = *relativeTo != nullptr;
    for (const auto* const target : targets) {
        isLocal = isLocal && !isURL(*target);
    }
    if (!isLocal) {
        *relativeTo = nullptr;
        return SVN_NO_ERROR;
    }
    SVN_ERR(checkLocalTarget(relativeTo, pool));
    SVN_ERR(checkAbsoluteTarget(relativeTo, pool));
    for (const auto target : targets) {
        SVN_ERR(checkAbsoluteTarget(target, pool));
    }
    return SVN_NO_ERROR;
}
#endif

svn_error_t* diff(svn_stream_t* out, svn_stream_t* errors, const char* target1, const svn_opt_revision_t* revision1,
                  const char* target2, const svn_opt_revision_t* revision2,
                  const HSVNDifferenceFunctions::Comparing* choices, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkShownTarget(&target1, pool));
    SVN_ERR(checkShownTarget(&target2, pool));
    SVN_ERR(settleStreams(&out, &errors, pool));
#if HSVN_LINE_MINOR >= 5
    const char* relativeTo = choices->relativeTo;
    SVN_ERR(settleNames(&relativeTo, {&target1, &target2}, pool));
#endif
#if HSVN_LINE_MINOR >= 11
    return svn_client_diff7(choices->arguments, target1, revision1, target2, revision2, relativeTo, choices->depth,
                            choices->ignoreAncestry, choices->omitAdded, choices->omitDeleted, choices->copiesAsAdds,
                            choices->ignoreContentType, choices->ignoreProperties, choices->propertiesOnly,
                            choices->gitFormat, TRUE, headerEncoding(*choices), out, errors, choices->changelists, ctx,
                            pool);
#elif HSVN_LINE_MINOR >= 8
    return svn_client_diff6(choices->arguments, target1, revision1, target2, revision2, relativeTo, choices->depth,
                            choices->ignoreAncestry, choices->omitAdded, choices->omitDeleted, choices->copiesAsAdds,
                            choices->ignoreContentType, choices->ignoreProperties, choices->propertiesOnly,
                            choices->gitFormat, headerEncoding(*choices), out, errors, choices->changelists, ctx, pool);
#else
    return writeThroughFiles(out, errors, pool, [&](apr_file_t* text, apr_file_t* messages) {
#if HSVN_LINE_MINOR >= 7
        return svn_client_diff5(choices->arguments, target1, revision1, target2, revision2, relativeTo, choices->depth,
                                choices->ignoreAncestry, choices->omitDeleted, choices->copiesAsAdds,
                                choices->ignoreContentType, choices->gitFormat, headerEncoding(*choices), text,
                                messages, choices->changelists, ctx, pool);
#elif HSVN_LINE_MINOR >= 5
        return svn_client_diff4(argumentsOf(*choices, pool), target1, revision1, target2, revision2, relativeTo,
                                choices->depth, choices->ignoreAncestry, choices->omitDeleted,
                                choices->ignoreContentType, headerEncoding(*choices), text, messages,
                                choices->changelists, ctx, pool);
#else
        return svn_client_diff3(argumentsOf(*choices, pool), target1, revision1, target2, revision2,
                                recurses(choices->depth), choices->ignoreAncestry, choices->omitDeleted,
                                choices->ignoreContentType, headerEncoding(*choices), text, messages, ctx, pool);
#endif
    });
#endif
}

svn_error_t* diffPeg(svn_stream_t* out, svn_stream_t* errors, const char* target, const svn_opt_revision_t* pegRevision,
                     const svn_opt_revision_t* start, const svn_opt_revision_t* end,
                     const HSVNDifferenceFunctions::Comparing* choices, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkShownTarget(&target, pool));
    SVN_ERR(settleStreams(&out, &errors, pool));
#if HSVN_LINE_MINOR >= 5
    const char* relativeTo = choices->relativeTo;
    SVN_ERR(settleNames(&relativeTo, {&target}, pool));
#endif
#if HSVN_LINE_MINOR >= 11
    return svn_client_diff_peg7(choices->arguments, target, pegRevision, start, end, relativeTo, choices->depth,
                                choices->ignoreAncestry, choices->omitAdded, choices->omitDeleted,
                                choices->copiesAsAdds, choices->ignoreContentType, choices->ignoreProperties,
                                choices->propertiesOnly, choices->gitFormat, TRUE, headerEncoding(*choices), out,
                                errors, choices->changelists, ctx, pool);
#elif HSVN_LINE_MINOR >= 8
    return svn_client_diff_peg6(choices->arguments, target, pegRevision, start, end, relativeTo, choices->depth,
                                choices->ignoreAncestry, choices->omitAdded, choices->omitDeleted,
                                choices->copiesAsAdds, choices->ignoreContentType, choices->ignoreProperties,
                                choices->propertiesOnly, choices->gitFormat, headerEncoding(*choices), out, errors,
                                choices->changelists, ctx, pool);
#else
    return writeThroughFiles(out, errors, pool, [&](apr_file_t* text, apr_file_t* messages) {
#if HSVN_LINE_MINOR >= 7
        return svn_client_diff_peg5(choices->arguments, target, pegRevision, start, end, relativeTo, choices->depth,
                                    choices->ignoreAncestry, choices->omitDeleted, choices->copiesAsAdds,
                                    choices->ignoreContentType, choices->gitFormat, headerEncoding(*choices), text,
                                    messages, choices->changelists, ctx, pool);
#elif HSVN_LINE_MINOR >= 5
        return svn_client_diff_peg4(argumentsOf(*choices, pool), target, pegRevision, start, end, relativeTo,
                                    choices->depth, choices->ignoreAncestry, choices->omitDeleted,
                                    choices->ignoreContentType, headerEncoding(*choices), text, messages,
                                    choices->changelists, ctx, pool);
#else
        return svn_client_diff_peg3(argumentsOf(*choices, pool), target, pegRevision, start, end,
                                    recurses(choices->depth), choices->ignoreAncestry, choices->omitDeleted,
                                    choices->ignoreContentType, headerEncoding(*choices), text, messages, ctx, pool);
#endif
    });
#endif
}

} // namespace

void fillDiff(HSVNDifferenceFunctions& table)
{
    table.client_diff = diff;
    table.client_diff_peg = diffPeg;
    table.client_diff_summarize = summarize;
    table.client_diff_summarize_peg = summarizePeg;
}

} // namespace HSVNAdapter
