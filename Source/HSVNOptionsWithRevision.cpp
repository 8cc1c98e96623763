#include "HSVNOptionsWithRevision.h"

#include "HSVNRevisionSpec.h"

#include <fmt/format.h>

HSVNOptionsWithRevision::HSVNOptionsWithRevision() : _revision{HSVNRevisionSpec::UNSPECIFIED()} {}

void HSVNOptionsWithRevision::setRevision(HSVNRevisionSpecRef revision)
{
    _revision = std::move(revision);
    if (!_revision) {
        _revision = HSVNRevisionSpec::UNSPECIFIED();
    }
}

std::string HSVNOptionsWithRevision::description() const
{
    return fmt::format("{{ {} revision: {}}}", HSVNOptions::description(), HSVNDescription(_revision.get()));
}
