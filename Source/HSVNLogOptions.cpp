#include "HSVNLogOptions.h"

#include "HSVNRevision.h"

#include <fmt/format.h>

HSVNLogOptions::HSVNLogOptions()
    : _pegRevision{HSVNRevision::UNSPECIFIED()}, _fromRevision{HSVNRevision::HEAD()},
      _toRevision{HSVNRevision::revisionWithNumber(0)}
{
}

std::string HSVNLogOptions::description() const
{
    return fmt::format("{{ {} fromRevision: {}, toRevision: {}, pegRevision: {}, limit: {:d}, "
                       "discoverChangedPaths: {:d}, traverseCopyHistory: {:d} }}",
                       HSVNOptions::description(), HSVNDescription(_fromRevision.get()),
                       HSVNDescription(_toRevision.get()), HSVNDescription(_pegRevision.get()), _limit,
                       _discoverChangedPaths, _traverseCopyHistory);
}
