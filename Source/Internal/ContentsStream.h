#pragma once

#include "HSVNReceiver.h"
#include "Internal/Operation.h"

/// A stream that hands what is written into it to a receiver. Lives as long as the operation.
class HSVNContentsStream
{
  public:
    HSVNContentsStream(HSVNOperation& operation, const HSVNContentsReceiver& receiver)
        : _operation{operation}, _receiver{receiver}, _stream{operation->stream_create(this, operation.pool())}
    {
        operation->stream_set_write(_stream, write);
    }
    HSVNContentsStream(const HSVNContentsStream&) = delete;
    HSVNContentsStream& operator=(const HSVNContentsStream&) = delete;

    operator svn_stream_t*() const { return _stream; } // NOLINT(google-explicit-constructor)

  private:
    static svn_error_t* write(void* baton, const char* bytes, apr_size_t* length)
    {
        const auto& stream = *static_cast<HSVNContentsStream*>(baton);
        return HSVNGuardCallback(*stream._operation.context(), [&] {
            return HSVNHandOver(stream._operation, stream._receiver, std::string_view{bytes, *length});
        });
    }

    HSVNOperation& _operation;
    const HSVNContentsReceiver& _receiver;
    svn_stream_t* _stream;
};
