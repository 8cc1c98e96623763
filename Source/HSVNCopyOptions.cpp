#include "HSVNCopyOptions.h"

#include "HSVNRevision.h"

#include <fmt/format.h>

HSVNCopyOptions::HSVNCopyOptions() : _revision{HSVNRevision::UNSPECIFIED()} {}

void HSVNCopyOptions::setRevision(HSVNRevisionRef revision)
{
    _revision = std::move(revision);
    if (!_revision) {
        _revision = HSVNRevision::UNSPECIFIED();
    }
}

std::string HSVNCopyOptions::description() const
{
    return fmt::format("{{ {} revision: {} }}", HSVNOptions::description(), HSVNDescription(_revision.get()));
}
