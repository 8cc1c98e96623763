#pragma once

#include "HSVNTypes.h"

#include <string>

/// A place of a repository in a certain revision.
struct HSVNPlaceInRevision
{
    std::string url{};                                 ///< of the place
    HSVNRevisionNumber revision = HSVNInvalidRevision; ///< in which it is found
};

/// How far one branch is merged into another (`HSVNContext::mergingSummary`).
struct HSVNMergingSummary
{
    HSVNPlaceInRevision ancestor{}; ///< the youngest that both branches have
    HSVNPlaceInRevision base{};     ///< what the next merge compares with: the last full merge, or the ancestor
    HSVNPlaceInRevision source{};   ///< the tip of the branch that is merged
    HSVNPlaceInRevision target{};   ///< the tip of the branch that it is merged into
    std::string repositoryRoot{};   ///< what all these URLs begin with
    bool reintegrates = false;      ///< the last full merge went the other way, so that the next one brings it back
};
