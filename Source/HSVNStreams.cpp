#include "HSVNStreams.h"

#include "HSVNException.h"
#include "HSVNPoolPrivate.h"

#include <new>
#include <type_traits>

namespace {

// Lies in the pool, which runs no destructor: closing empties it, and an empty one may be closed again.
struct StreamBaton
{
    HSVNInputStreamRef input;
    HSVNOutputStreamRef output;
};

svn_stream_t* makeStream(const HSVNBundleEntryPoints& entryPoints, StreamBaton baton, apr_pool_t* pool)
{
    auto* memory = entryPoints.apr_palloc(pool, sizeof(StreamBaton));
    auto* stream = entryPoints.stream_create(new (memory) StreamBaton{std::move(baton)}, pool);
    entryPoints.stream_set_close(stream, HSVNAdaptStreamClose);
    return stream;
}

// The count that a platform stream answers, or -1: nothing that it throws may reach Subversion's frames.
template <class Stream, class Transfer>
std::int64_t guardedCount(const std::shared_ptr<Stream>& stream, Transfer&& transfer) noexcept
{
    try {
        return stream ? transfer(*stream) : -1;
    } catch (...) {
        return -1;
    }
}

} // namespace

svn_stream_t* HSVNAdaptInputStream(const HSVNInputStreamRef& stream, apr_pool_t* pool)
{
    HSVNAssertParameter(stream != nullptr, "stream != nil");
    const auto& entryPoints = HSVNCurrentEntryPoints();
    auto* adapted = makeStream(entryPoints, {stream, nullptr}, pool);
    entryPoints.stream_set_read(adapted, HSVNAdaptStreamRead);
    return adapted;
}

svn_stream_t* HSVNAdaptOutputStream(const HSVNOutputStreamRef& stream, apr_pool_t* pool)
{
    HSVNAssertParameter(stream != nullptr, "stream != nil");
    const auto& entryPoints = HSVNCurrentEntryPoints();
    auto* adapted = makeStream(entryPoints, {nullptr, stream}, pool);
    entryPoints.stream_set_write(adapted, HSVNAdaptStreamWrite);
    return adapted;
}

svn_error_t* HSVNAdaptStreamRead(void* baton, char* buffer, std::size_t* length)
{
    const auto count = guardedCount(static_cast<StreamBaton*>(baton)->input,
                                    [&](HSVNInputStream& stream) { return stream.read(buffer, *length); });
    if (count < 0) {
        return HSVN_SUBVERSION_ERROR(HSVNExceptionGeneralStatus, "Unable to read data from input stream");
    }
    *length = static_cast<std::size_t>(count);
    return SVN_NO_ERROR;
}

svn_error_t* HSVNAdaptStreamWrite(void* baton, const char* buffer, std::size_t* length)
{
    const auto count = guardedCount(static_cast<StreamBaton*>(baton)->output,
                                    [&](HSVNOutputStream& stream) { return stream.write(buffer, *length); });
    if (count < 0) {
        return HSVN_SUBVERSION_ERROR(HSVNExceptionGeneralStatus, "Unable to write data to output stream");
    }
    *length = static_cast<std::size_t>(count);
    return SVN_NO_ERROR;
}

svn_error_t* HSVNAdaptStreamClose(void* baton)
{
    *static_cast<StreamBaton*>(baton) = {};
    return SVN_NO_ERROR;
}
