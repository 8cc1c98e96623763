#include "EntryPointTable.h"

namespace HSVNAdapter {

void fillStreams(HSVNBundleEntryPoints& table)
{
    table.stream_from_aprfile2 = svn_stream_from_aprfile2;
    table.stream_set_read = svn_stream_set_read;
    table.stream_set_write = svn_stream_set_write;
    table.stream_set_close = svn_stream_set_close;
    table.stream_create = svn_stream_create;
    table.stream_close = svn_stream_close;
}

} // namespace HSVNAdapter
