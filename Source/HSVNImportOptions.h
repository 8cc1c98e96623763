#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"
#include "HSVNTypes.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

/// Choices of `HSVNContext::importTree`.
struct HSVNImportChoices
{
    HSVNDepth depth = HSVNDepthInfinity;  ///< how far below the directory
    bool matchIgnorePatterns = true;      ///< leave out what the patterns match
    bool automaticProperties = true;      ///< as far as the configuration asks for them
    bool ignoreUnknownKinds = false;      ///< leave out devices, pipes and the like, which are an error otherwise
    std::optional<std::string> message{}; ///< the log message, UTF-8; nil asks the delegate
    std::map<std::string, std::string>
        revisionProperties{}; ///< further ones by name, values as bytes; none of Subversion's own
};

/// Choices for importing an unversioned tree.
class HSVN_EXPORT HSVNImportOptions : public HSVNOptionsOf<HSVNImportOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNImportOptions";

    /// Import everything below the folder. Initially `true`.
    bool recursive() const { return _recursive; }
    void setRecursive(bool recursive) { _recursive = recursive; }
    /// Leave items out that match an ignore pattern. Initially `true`.
    bool matchIgnorePatterns() const { return _matchIgnorePatterns; }
    void setMatchIgnorePatterns(bool matchIgnorePatterns) { _matchIgnorePatterns = matchIgnorePatterns; }

    /// The same choices for the verb `importTree`.
    HSVNImportChoices choices() const;
    std::string description() const override;

  private:
    bool _recursive = true;
    bool _matchIgnorePatterns = true;
};

using HSVNImportOptionsRef = std::shared_ptr<const HSVNImportOptions>;
