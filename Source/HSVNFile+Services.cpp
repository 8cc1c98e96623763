#include "HSVNContext.h"
#include "HSVNException.h"
#include "HSVNFile.h"
#include "HSVNStreams.h"
#include "HSVNURL.h"
#include "Internal/Browsing.h"
#include "Internal/Contents.h"
#include "Internal/KeptException.h"
#include "Internal/Operation.h"

#include <cstring>
#include <fmt/format.h>

namespace {

struct FileReceiver
{
    HSVNContext& context;
    const HSVNPathRef& path;
    HSVNURLRef url;
    HSVNFileRef file = nullptr;
};

svn_error_t* receiveFile(FileReceiver& receiver, const svn_dirent_t* dirent, const svn_lock_t* lock,
                         const char* repositoryPath)
{
    if (dirent->kind != svn_node_file) {
        return HSVN_SUBVERSION_ERROR(HSVNExceptionGeneralStatus, "Node is not a file");
    }
    const char* separator = std::strrchr(repositoryPath, '/');
    if (!separator) {
        return HSVN_SUBVERSION_ERROR(HSVNExceptionGeneralStatus,
                                     "Unexpected format of abs_path. Could not parse out name");
    }
    receiver.file = std::make_shared<HSVNFile>(separator + 1, receiver.path, receiver.url, dirent, lock);
    return SVN_NO_ERROR;
}

svn_error_t* HSVNFileInfoFunc(void* baton, const char* relativePath, const svn_dirent_t* dirent, const svn_lock_t* lock,
                              const char* repositoryPath, apr_pool_t*)
{
    if (*relativePath) {
        return SVN_NO_ERROR;
    }
    auto& receiver = *static_cast<FileReceiver*>(baton);
    return HSVNGuardCallback(receiver.context, [&] { return receiveFile(receiver, dirent, lock, repositoryPath); });
}

/// Hands every byte on to the caller's stream, which may take fewer at a time than it is offered, and keeps what it
/// throws for the operation to throw again.
class WholeOutputStream : public HSVNOutputStream
{
  public:
    WholeOutputStream(HSVNContext& context, HSVNOutputStream& stream) : _context{context}, _stream{stream} {}

    std::int64_t write(const char* buffer, std::size_t maxLength) override
    {
        try {
            std::size_t written = 0;
            while (written < maxLength) {
                const auto count = _stream.write(buffer + written, maxLength - written);
                if (count <= 0) {
                    return -1;
                }
                written += static_cast<std::size_t>(count);
            }
            return static_cast<std::int64_t>(written);
        } catch (...) {
            HSVNKeptException::keep(_context, std::current_exception());
            return -1;
        }
    }

  private:
    HSVNContext& _context;
    HSVNOutputStream& _stream;
};

/// An adapted output stream, closed on every path so that it lets go of the platform stream.
class AdaptedOutput
{
  public:
    AdaptedOutput(const HSVNOperation& operation, const HSVNOutputStreamRef& stream)
        : _entryPoints{*operation.operator->()}, _stream{HSVNAdaptOutputStream(stream, operation.pool())}
    {
    }
    ~AdaptedOutput()
    {
        if (auto* error = _entryPoints.stream_close(_stream)) {
            _entryPoints.error_clear(error);
        }
    }
    AdaptedOutput(const AdaptedOutput&) = delete;
    AdaptedOutput& operator=(const AdaptedOutput&) = delete;

    svn_stream_t* get() const { return _stream; }

  private:
    const HSVNBundleEntryPoints& _entryPoints;
    svn_stream_t* _stream;
};

} // namespace

HSVNFileRef HSVNFile::fileAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                 const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNFile",
                            "fileAtPath:forRevision:withContext:",
                            {{"path", path}, {"revision", revision}, {"context", context}}};
    const HSVNRevisionRecords revisions{*revision};
    FileReceiver receiver{*context, path, HSVNURLForListing(path, context)};
    operation.check(operation->client_list(operation.cString(path->string()), &revisions.peg, &revisions.operative,
                                           false, SVN_DIRENT_ALL, true, HSVNFileInfoFunc, &receiver, operation.ctx(),
                                           operation.pool()));
    if (!receiver.file) {
        throw HSVNException(fmt::format("{} does not exist", path->string()));
    }
    return receiver.file;
}

void HSVNFile::catRevision(const HSVNRevisionSpecRef& revision, const HSVNPathRef& path,
                           const std::shared_ptr<HSVNOutputStream>& stream, const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNFile",
                            "catRevision:ofFileAtPath:toOutputStream:withContext:",
                            {{"revision", revision}, {"path", path}, {"stream", stream}, {"context", context}}};
    const AdaptedOutput output{operation, std::make_shared<WholeOutputStream>(*context, *stream)};
    HSVNContents(operation, output.get(), path->string(), *revision, {.expandKeywords = true});
}
