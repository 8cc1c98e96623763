#pragma once

#include "HSVNForward.h"
#include "HSVNRevisionSpec.h"
#include "HSVNTarget.h"
#include "Internal/Subversion.h"

/// The two records that Subversion takes for a revision specification.
struct HSVNRevisionRecords
{
    explicit HSVNRevisionRecords(const HSVNRevisionSpec& revision)
        : peg{revision.pegRevision()->SVNRevision()}, operative{revision.operativeRevision()->SVNRevision()}
    {
    }

    svn_opt_revision_t peg;
    svn_opt_revision_t operative;
};

inline bool HSVNIsUnspecified(const HSVNRevisionRef& revision)
{
    return revision->isEqual(HSVNRevision::UNSPECIFIED());
}

/// A specification in which an unspecified state is that of the peg revision, or of HEAD without one.
inline HSVNRevisionSpecRef HSVNSpecOrHead(const HSVNRevisionSpecRef& revision)
{
    if (!revision || !HSVNIsUnspecified(revision->operativeRevision())) {
        return revision;
    }
    const auto& peg = revision->pegRevision();
    return HSVNRevisionSpec::revisionWithRevision(HSVNIsUnspecified(peg) ? HSVNRevision::HEAD() : peg, peg);
}

/// The record of a target's revision: without any, HEAD of a URL and what the working copy holds of a local path.
inline svn_opt_revision_t HSVNRevisionOfTarget(const HSVNTarget& target, const HSVNRevision& revision)
{
    auto record = revision.SVNRevision();
    if (record.kind == svn_opt_revision_unspecified) {
        record.kind = target.isURL() ? svn_opt_revision_head : svn_opt_revision_working;
    }
    return record;
}

/// The repository URL of an item that is to be listed: a URL is its own answer, also for an item that is gone from
/// HEAD and can only be found in an older revision; for a local path `HSVNNode::URLForNodeAtPath` is asked.
HSVNURLRef HSVNURLForListing(const HSVNPathRef& path, const HSVNContextRef& context);
