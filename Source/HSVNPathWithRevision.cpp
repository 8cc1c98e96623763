#include "HSVNPathWithRevision.h"

#include "HSVNPlatformException.h"

#include <fmt/format.h>

#include <memory>
#include <utility>

HSVNPathWithRevision::HSVNPathWithRevision(HSVNPathRef thePath, HSVNRevisionRef theRevision)
    : _path{std::move(thePath)}, _revision{std::move(theRevision)}
{
    HSVNAssertParameter(_path != nullptr, "thePath != nil");
}

HSVNPathWithRevisionRef HSVNPathWithRevision::path(HSVNPathRef thePath, HSVNRevisionRef theRevision)
{
    return std::make_shared<HSVNPathWithRevision>(std::move(thePath), std::move(theRevision));
}

std::string HSVNPathWithRevision::description() const
{
    return fmt::format("{{ {} path: {}, revision: {} }}", objectDescription(), _path->description(),
                       HSVNDescription(_revision.get()));
}
