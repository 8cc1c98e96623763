#include "HSVNOptionsWithRevision.h"

#include "HSVNRevisionSpec.h"

#include <fmt/format.h>

HSVNOptionsWithRevision::HSVNOptionsWithRevision() : _revision{HSVNRevisionSpec::UNSPECIFIED()} {}

void HSVNOptionsWithRevision::setRevision(HSVNRevisionSpecRef revision)
{
    _revision = revision ? std::move(revision) : HSVNRevisionSpec::UNSPECIFIED();
}

std::string HSVNOptionsWithRevision::description() const
{
    return fmt::format("{{ {} revision: {}}}", HSVNOptions::description(), HSVNDescription(_revision.get()));
}
