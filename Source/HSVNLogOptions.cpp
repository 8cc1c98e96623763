#include "HSVNLogOptions.h"

#include "HSVNRevision.h"

#include <fmt/format.h>

HSVNLogOptions::HSVNLogOptions()
    : _pegRevision{HSVNRevision::UNSPECIFIED()}, _fromRevision{HSVNRevision::HEAD()},
      _toRevision{HSVNRevision::revisionWithNumber(0)}
{
}

HSVNLogChoices HSVNLogOptions::choices() const
{
    return {.pegRevision = _pegRevision,
            .ranges = {{_fromRevision, _toRevision}},
            .limit = _limit,
            .changedPaths = _discoverChangedPaths,
            .stopOnCopy = !_traverseCopyHistory,
            .properties = std::vector<std::string>{"svn:author", "svn:date", "svn:log"}};
}

std::string HSVNLogOptions::description() const
{
    return fmt::format("{{ {} fromRevision: {}, toRevision: {}, pegRevision: {}, limit: {:d}, "
                       "discoverChangedPaths: {:d}, traverseCopyHistory: {:d} }}",
                       HSVNOptions::description(), HSVNDescription(_fromRevision.get()),
                       HSVNDescription(_toRevision.get()), HSVNDescription(_pegRevision.get()), _limit,
                       _discoverChangedPaths, _traverseCopyHistory);
}
