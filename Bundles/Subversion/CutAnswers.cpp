#include "Serf.h"

#ifdef HSVN_STANDS_IN_FRONT

// A web server's answer may end, as its connection does, between the two characters of a line's end. The second one is
// asked for again and again then, without a pause and whatever the time limit is.

namespace {

enum class LineState : int
{
    empty,
    ready,
    partial,
    split
};

/// How a line that is being read begins in memory, in 1.3 of the library.
struct LineBeginning
{
    LineState state;
};

constexpr apr_status_t truncatedAnswer = 120106; // as the library calls an answer that is cut elsewhere

bool isAtEnd(serf_bucket_t* bucket)
{
    const char* bytes = nullptr;
    apr_size_t size = 0;
    return APR_STATUS_IS_EOF(bucket->type->peek(bucket, &bytes, &size)) && size == 0;
}

} // namespace

struct serf_linebuf_t; // NOLINT(readability-identifier-naming)
extern "C" apr_status_t serf_linebuf_fetch(serf_linebuf_t* line, serf_bucket_t* bucket, int acceptable);

HSVN_STAND_IN(apr_status_t, serf_linebuf_fetch)(serf_linebuf_t* line, serf_bucket_t* bucket, int acceptable)
{
    const apr_status_t status = HSVN_BEHIND(serf_linebuf_fetch)(line, bucket, acceptable);
    return APR_STATUS_IS_EAGAIN(status) && HSVNAdapter::isKnownSerf() &&
                   reinterpret_cast<const LineBeginning*>(line)->state == LineState::split && isAtEnd(bucket)
               ? truncatedAnswer
               : status;
}

#endif
