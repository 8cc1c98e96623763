#pragma once

#include "HSVNExport.h"
#include "HSVNObject.h"

#include <cstddef>
#include <cstdint>
#include <memory>

struct apr_pool_t;
struct svn_error_t;
struct svn_stream_t;

/// Where bytes come from: an application derives from it, or takes one of HSVNStandardStreams.h.
///
/// A stream is used by one thread at a time. Opening and closing what lies behind it is the application's duty.
class HSVN_EXPORT HSVNInputStream : public HSVNObject
{
  public:
    /// Reads the next bytes.
    ///
    /// @param maxLength  most bytes to put into the buffer; at least 1
    /// @return the count read, 0 at the end of the stream, -1 for a failure
    virtual std::int64_t read(char* buffer, std::size_t maxLength) = 0;

    std::string className() const override { return "HSVNInputStream"; }
};

/// Where bytes go to; otherwise like `HSVNInputStream`.
class HSVN_EXPORT HSVNOutputStream : public HSVNObject
{
  public:
    /// Takes the next bytes.
    ///
    /// @param maxLength  how many the buffer holds; at least 1
    /// @return how many of them, from the first on, were taken; -1 for a failure
    virtual std::int64_t write(const char* buffer, std::size_t maxLength) = 0;

    std::string className() const override { return "HSVNOutputStream"; }
};

using HSVNInputStreamRef = std::shared_ptr<HSVNInputStream>;
using HSVNOutputStreamRef = std::shared_ptr<HSVNOutputStream>;

/// A Subversion stream of the current bundle that reads from a platform stream.
///
/// The result lives in the pool and keeps the platform stream alive until Subversion closes it; closing it twice does
/// no harm, and the platform stream is not closed by it.
///
/// @param stream  not nil ("stream != nil")
/// @param pool    of the current bundle; not null ("pool != NULL")
/// Stands for svn_stream_create, svn_stream_set_read and svn_stream_set_close.
HSVN_EXPORT svn_stream_t* HSVNAdaptInputStream(const HSVNInputStreamRef& stream, apr_pool_t* pool);
/// The same for a platform stream that Subversion writes to (svn_stream_set_write).
HSVN_EXPORT svn_stream_t* HSVNAdaptOutputStream(const HSVNOutputStreamRef& stream, apr_pool_t* pool);

/// The callbacks that an adapted stream carries; the baton is the one that the adaptation made.
///
/// A baton that is null is a stream that was closed: nothing can be read or written, and closing it does nothing.
///
/// A read or write asks the platform stream once and stores the count that it answered in `length`: 0 ends a read, and
/// a short write is reported, not tried again. A count of -1 or beyond the buffer, or an exception, becomes a
/// Subversion error of status 20014 with the message "Unable to read data from input stream" or "Unable to write data
/// to output stream".
HSVN_EXPORT svn_error_t* HSVNAdaptStreamRead(void* baton, char* buffer, std::size_t* length);
/// The same for a write.
HSVN_EXPORT svn_error_t* HSVNAdaptStreamWrite(void* baton, const char* buffer, std::size_t* length);
/// Lets go of the platform stream; answers no error.
HSVN_EXPORT svn_error_t* HSVNAdaptStreamClose(void* baton);
