#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNOptions.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

/// Choices of `HSVNContext::copy`.
struct HSVNCopyChoices
{
    bool asChild = false;                 ///< into the destination when that exists
    bool makeParents = false;             ///< make missing parents of the destination
    bool processExternals = true;         ///< fetch the externals of what comes into a working copy
    bool pinExternals = false;            ///< give externals without a revision their present one
    std::optional<std::string> message{}; ///< the log message, UTF-8; nil asks the delegate
    std::map<std::string, std::string>
        revisionProperties{}; ///< further ones by name, values as bytes; none of Subversion's own
};

/// Choices for copying items.
class HSVN_EXPORT HSVNCopyOptions : public HSVNOptionsOf<HSVNCopyOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNCopyOptions";

    /// The initial values, as `defaults` has them.
    HSVNCopyOptions();

    /// The state of the source that is copied. Initially `HSVNRevision::UNSPECIFIED()`.
    const HSVNRevisionRef& revision() const { return _revision; }
    /// Nil means unspecified.
    void setRevision(HSVNRevisionRef revision);

    std::string description() const override;

  private:
    HSVNRevisionRef _revision;
};

using HSVNCopyOptionsRef = std::shared_ptr<const HSVNCopyOptions>;
