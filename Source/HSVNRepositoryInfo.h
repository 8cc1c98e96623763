#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNObject.h"
#include "HSVNTypes.h"

#include <memory>
#include <optional>
#include <string>

/// Identity of a repository as a working copy or a server tells it. Immutable; may be shared between threads.
class HSVN_EXPORT HSVNRepositoryInfo : public HSVNObject
{
  public:
    /// @param uuid     the repository's UUID; nil when not known
    /// @param rootURL  URL of the repository's root; nil when not known
    /// @param revision  the youngest revision known
    HSVNRepositoryInfo(std::optional<std::string> uuid, HSVNURLRef rootURL, HSVNRevisionNumber revision);
    /// The constructor by another name.
    static HSVNRepositoryInfoRef infoForRepositoryWithUUID(std::optional<std::string> uuid, HSVNURLRef rootURL,
                                                           HSVNRevisionNumber revision);

    /// The repository's UUID; nil when not known.
    const std::optional<std::string>& UUID() const { return _uuid; }
    /// URL of the repository's root; nil when not known.
    const HSVNURLRef& rootURL() const { return _rootURL; }
    /// The youngest revision known.
    HSVNRevisionNumber revision() const { return _revision; }

    std::string className() const override { return "HSVNRepositoryInfo"; }
    std::string description() const override;

  private:
    std::optional<std::string> _uuid;
    HSVNURLRef _rootURL;
    HSVNRevisionNumber _revision;
};
