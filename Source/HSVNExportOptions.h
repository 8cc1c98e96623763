#pragma once

#include "HSVNExport.h"
#include "HSVNOptionsWithRevision.h"
#include "HSVNTypes.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

/// Choices of `HSVNContext::exportTree`.
struct HSVNExportChoices
{
    HSVNDepth depth = HSVNDepthInfinity; ///< how far below the item
    bool overwrite = false;              ///< what is in the way
    bool processExternals = true;        ///< export what externals definitions place, too
    bool expandKeywords = true;          ///< as checked-out files have them
    std::optional<std::string>
        nativeEndOfLine{}; ///< "LF", "CR" or "CRLF" of files with native line ends; nil: the system's
};

/// Choices for exporting a clean tree. The inherited `revision` is initially unspecified.
class HSVN_EXPORT HSVNExportOptions : public HSVNOptionsOf<HSVNExportOptions, HSVNOptionsWithRevision>
{
  public:
    static constexpr const char* staticClassName = "HSVNExportOptions";

    /// Export externals too. Initially `true`.
    bool processExternals() const { return _processExternals; }
    void setProcessExternals(bool processExternals) { _processExternals = processExternals; }
    /// Replace items that are in the way. Initially `false`.
    bool overwriteExisting() const { return _overwriteExisting; }
    void setOverwriteExisting(bool overwriteExisting) { _overwriteExisting = overwriteExisting; }
    /// Whether the user asked for the export, which its notification tells. Initially `true`.
    bool initiatedByUser() const { return _initiatedByUser; }
    void setInitiatedByUser(bool initiatedByUser) { _initiatedByUser = initiatedByUser; }
    /// How deep to export. Initially `HSVNDepthInfinity`.
    HSVNDepth depth() const { return _depth; }
    void setDepth(HSVNDepth depth) { _depth = depth; }
    /// Line ends of files whose style is native: one of the constants of HSVNEndOfLine.h. Initially
    /// `HSVNEndOfLineDefault`.
    const std::optional<std::string>& EOLMarkers() const { return _eolMarkers; }
    void setEOLMarkers(std::optional<std::string> markers) { _eolMarkers = std::move(markers); }

    /// The same choices for the verb `exportTree`.
    HSVNExportChoices choices() const;
    /// Shows every field but `initiatedByUser`, on purpose.
    std::string description() const override;

  private:
    bool _processExternals = true;
    bool _overwriteExisting = false;
    bool _initiatedByUser = true;
    HSVNDepth _depth = HSVNDepthInfinity;
    std::optional<std::string> _eolMarkers;
};

using HSVNExportOptionsRef = std::shared_ptr<const HSVNExportOptions>;
