#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

/// Choices of `HSVNContext::remove`.
struct HSVNDeleteChoices
{
    bool force = false;     ///< delete modified and unversioned items, too
    bool keepLocal = false; ///< leave files and directories where they are, unversioned from the commit on
    std::optional<std::string> message{}; ///< the log message, UTF-8; nil asks the delegate
    std::map<std::string, std::string>
        revisionProperties{}; ///< further ones by name, values as bytes; none of Subversion's own
};

/// Choices for deleting items.
class HSVN_EXPORT HSVNDeleteOptions : public HSVNOptionsOf<HSVNDeleteOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNDeleteOptions";

    /// Delete modified and unversioned items too. Initially `false`.
    bool force() const { return _force; }
    void setForce(bool force) { _force = force; }

    /// The same choices for the verb `remove`.
    HSVNDeleteChoices choices() const;
    std::string description() const override;

  private:
    bool _force = false;
};

using HSVNDeleteOptionsRef = std::shared_ptr<const HSVNDeleteOptions>;
