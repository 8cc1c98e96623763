#pragma once

#include "HSVNCoder.h"
#include "HSVNExport.h"
#include "HSVNRevisionSpec.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

class HSVNExternalDefinition;
using HSVNExternalDefinitionRef = std::shared_ptr<HSVNExternalDefinition>;

/// One line of an externals property: which folder or file of a repository is placed where. For use by one thread.
class HSVN_EXPORT HSVNExternalDefinition : public HSVNArchivable
{
  public:
    /// Both texts empty, both revisions UNSPECIFIED.
    HSVNExternalDefinition();
    /// @param sourceDirectory  a URL, or one relative to the folder that bears the definition (".", "/" or "^" first)
    /// @param sourceRevision   operative and peg revision; nil means both UNSPECIFIED
    /// @param targetDirectory  where the external is placed, relative to the folder that bears the definition
    HSVNExternalDefinition(std::string sourceDirectory, const HSVNRevisionSpecRef& sourceRevision,
                           std::string targetDirectory);
    /// @throws HSVNInvalidArgumentException "Keyed unarchiver required", or for a value that is missing
    explicit HSVNExternalDefinition(HSVNCoder* decoder);

    /// A URL, or one relative to the folder that bears the definition (".", "/" or "^" first).
    const std::string& sourceDirectory() const { return _sourceDirectory; }
    void setSourceDirectory(std::string sourceDirectory) { _sourceDirectory = std::move(sourceDirectory); }
    /// Operative and peg revision; may be changed in place; never nil.
    const HSVNMutableRevisionSpecRef& sourceRevision() const { return _sourceRevision; }
    /// Takes the revisions over; nil unsets both.
    void setSourceRevision(HSVNMutableRevisionSpecRef revision);
    /// Where the external is placed, relative to the folder that bears the definition.
    const std::string& targetDirectory() const { return _targetDirectory; }
    void setTargetDirectory(std::string targetDirectory) { _targetDirectory = std::move(targetDirectory); }

    /// Equality of all three fields.
    bool isEqualToDefinition(const HSVNExternalDefinition& other) const;
    /// The same for a definition that is shared; nil gives false.
    bool isEqualToDefinition(const std::shared_ptr<const HSVNExternalDefinition>& other) const
    {
        return isEqual(other.get());
    }
    /// Equality of all three fields; nil gives false.
    bool isEqual(const HSVNExternalDefinition* other) const { return other && isEqualToDefinition(*other); }
    /// `isEqualToDefinition` of a definition that is shared.
    bool isEqual(const std::shared_ptr<const HSVNExternalDefinition>& other) const { return isEqual(other.get()); }
    /// Equal definitions have equal hashes.
    std::size_t hash() const;
    /// A definition with the same fields and a revision of its own.
    HSVNExternalDefinitionRef copy() const;

    std::string className() const override { return "HSVNExternalDefinition"; }
    std::string description() const override;
    /// Keys: "sourceDirectory", "sourceRevision", "targetDirectory".
    void encodeWithCoder(HSVNCoder* encoder) const override;

    friend bool operator==(const HSVNExternalDefinition& a, const HSVNExternalDefinition& b)
    {
        return a.isEqualToDefinition(b);
    }

  private:
    std::string _sourceDirectory;
    HSVNMutableRevisionSpecRef _sourceRevision;
    std::string _targetDirectory;
};

/// For unordered containers: by `hash`.
template <>
struct std::hash<HSVNExternalDefinition>
{
    std::size_t operator()(const HSVNExternalDefinition& definition) const noexcept { return definition.hash(); }
};
