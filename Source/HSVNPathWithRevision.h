#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNObject.h"
#include "HSVNPath.h"
#include "HSVNRevision.h"

#include <string>

/// A path together with a revision. Immutable; may be shared between threads.
class HSVN_EXPORT HSVNPathWithRevision : public HSVNObject
{
  public:
    /// @param thePath      not nil ("thePath != nil")
    /// @param theRevision  may be nil
    HSVNPathWithRevision(HSVNPathRef thePath, HSVNRevisionRef theRevision);
    /// The constructor by another name.
    static HSVNPathWithRevisionRef path(HSVNPathRef thePath, HSVNRevisionRef theRevision);

    /// Never nil.
    const HSVNPathRef& path() const { return _path; }
    /// nil when none was given.
    const HSVNRevisionRef& revision() const { return _revision; }

    std::string className() const override { return "HSVNPathWithRevision"; }
    /// The default object description with both values.
    std::string description() const override;

  private:
    HSVNPathRef _path;
    HSVNRevisionRef _revision;
};
