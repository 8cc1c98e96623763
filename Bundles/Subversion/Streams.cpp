#include "EntryPointTable.h"

namespace HSVNAdapter {
namespace {

void setRead(svn_stream_t* stream, svn_read_fn_t read)
{
#if HSVN_LINE_MINOR >= 9
    // A platform stream may give fewer bytes than it is asked for; the older function would take them for the last.
    svn_stream_set_read2(stream, read, nullptr);
#else
    svn_stream_set_read(stream, read);
#endif
}

} // namespace

void fillStreams(HSVNBundleEntryPoints& table)
{
    table.stream_from_aprfile2 = svn_stream_from_aprfile2;
    table.stream_set_read = setRead;
    table.stream_set_write = svn_stream_set_write;
    table.stream_set_close = svn_stream_set_close;
    table.stream_create = svn_stream_create;
    table.stream_close = svn_stream_close;
}

} // namespace HSVNAdapter
