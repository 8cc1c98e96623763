#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNOptions.h"

#include <memory>
#include <string>
#include <utility>

/// Options of operations that read a certain revision of an item.
class HSVN_EXPORT HSVNOptionsWithRevision : public HSVNOptionsOf<HSVNOptionsWithRevision>
{
  public:
    static constexpr const char* staticClassName = "HSVNOptionsWithRevision";

    /// The initial values, as `defaults` has them.
    HSVNOptionsWithRevision();

    /// Which item (peg) in which state (operative). Initially `HSVNRevisionSpec::UNSPECIFIED()`.
    const HSVNRevisionSpecRef& revision() const { return _revision; }
    /// Nil means unspecified.
    void setRevision(HSVNRevisionSpecRef revision);

    std::string description() const override;

  private:
    HSVNRevisionSpecRef _revision;
};

using HSVNOptionsWithRevisionRef = std::shared_ptr<const HSVNOptionsWithRevision>;
