#include "HSVNStreams.h"

#include "HSVNException.h"
#include "Internal/Everlasting.h"
#include "Internal/Pool.h"

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

const StreamBaton& batonOf(const void* baton)
{
    static const HSVNEverlasting<StreamBaton> closed;
    return baton ? *static_cast<const StreamBaton*>(baton) : *closed;
}

// Stores the count that a platform stream answers, or tells that there is none: nothing that the stream throws may
// reach Subversion's frames, and no count beyond the buffer may be believed.
template <class Stream, class Transfer>
bool storeCount(std::size_t* length, const std::shared_ptr<Stream>& stream, Transfer&& transfer) noexcept
{
    try {
        const std::int64_t count = stream ? transfer(*stream) : -1;
        if (count < 0 || static_cast<std::uint64_t>(count) > *length) {
            return false;
        }
        *length = static_cast<std::size_t>(count);
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

svn_stream_t* HSVNAdaptInputStream(const HSVNInputStreamRef& stream, apr_pool_t* pool)
{
    HSVNAssertParameter(stream != nullptr, "stream != nil");
    HSVNAssertParameter(pool != nullptr, "pool != NULL");
    const auto& entryPoints = HSVNCurrentEntryPoints();
    auto* adapted = makeStream(entryPoints, {stream, nullptr}, pool);
    entryPoints.stream_set_read(adapted, HSVNAdaptStreamRead);
    return adapted;
}

svn_stream_t* HSVNAdaptOutputStream(const HSVNOutputStreamRef& stream, apr_pool_t* pool)
{
    HSVNAssertParameter(stream != nullptr, "stream != nil");
    HSVNAssertParameter(pool != nullptr, "pool != NULL");
    const auto& entryPoints = HSVNCurrentEntryPoints();
    auto* adapted = makeStream(entryPoints, {nullptr, stream}, pool);
    entryPoints.stream_set_write(adapted, HSVNAdaptStreamWrite);
    return adapted;
}

svn_error_t* HSVNAdaptStreamRead(void* baton, char* buffer, std::size_t* length)
{
    const auto read = [&](HSVNInputStream& stream) { return stream.read(buffer, *length); };
    return storeCount(length, batonOf(baton).input, read)
               ? SVN_NO_ERROR
               : HSVN_SUBVERSION_ERROR(HSVNExceptionGeneralStatus, "Unable to read data from input stream");
}

svn_error_t* HSVNAdaptStreamWrite(void* baton, const char* buffer, std::size_t* length)
{
    const auto write = [&](HSVNOutputStream& stream) { return stream.write(buffer, *length); };
    return storeCount(length, batonOf(baton).output, write)
               ? SVN_NO_ERROR
               : HSVN_SUBVERSION_ERROR(HSVNExceptionGeneralStatus, "Unable to write data to output stream");
}

svn_error_t* HSVNAdaptStreamClose(void* baton)
{
    if (baton) {
        *static_cast<StreamBaton*>(baton) = {};
    }
    return SVN_NO_ERROR;
}
