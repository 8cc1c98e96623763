#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNOptions.h"

#include <memory>
#include <string>
#include <utility>

/// Choices for copying items.
class HSVN_EXPORT HSVNCopyOptions : public HSVNOptionsOf<HSVNCopyOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNCopyOptions";

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
