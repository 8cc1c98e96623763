#pragma once

#include "HSVNExport.h"
#include "HSVNExternalDefinition.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Versioned properties by name, with accessors for the standard ones. A value is a text, or bytes as they are stored.
///
/// A plain value; a getter of a property that is not there answers nil, an empty list or false, and setting nil or an
/// empty list removes the property.
class HSVN_EXPORT HSVNProperties
{
  public:
    /// Values by the property's name.
    using Map = std::map<std::string, std::string>;

    HSVNProperties() = default;
    /// Takes the values as they are; none is checked.
    explicit HSVNProperties(Map values);

    /// All properties.
    const Map& values() const& { return _values; }
    /// The same of an object that ends with the statement, as what an operation has just answered.
    Map values() && { return std::move(_values); }
    /// How many properties there are.
    std::size_t size() const { return _values.size(); }
    /// Whether there is none.
    bool empty() const { return _values.empty(); }
    /// Iteration in the order of the names.
    Map::const_iterator begin() const { return _values.begin(); }
    /// The end of the iteration.
    Map::const_iterator end() const { return _values.end(); }
    /// The value of a property, or nil.
    std::optional<std::string> value(const std::string& name) const;
    /// Sets a property; nil removes it.
    void setValue(std::optional<std::string> value, const std::string& name);

    /// svn:keywords as single keywords.
    std::vector<std::string> keywords() const;
    void setKeywords(const std::vector<std::string>& keywords);
    /// svn:ignore as patterns.
    std::vector<std::string> ignore() const;
    void setIgnore(const std::vector<std::string>& patterns);
    /// svn:eol-style: one of the HSVNEndOfLine texts, or nil.
    std::optional<std::string> EOLStyle() const;
    /// @throws HSVNInvalidArgumentException "Unrecognized end-of-line style '%@'" for any other text
    void setEOLStyle(const std::optional<std::string>& style);
    /// svn:mime-type.
    std::optional<std::string> MIMEType() const;
    void setMIMEType(const std::optional<std::string>& type);
    /// svn:executable: whether the property is there. Setting true stores "*".
    bool isExecutable() const;
    void setIsExecutable(bool isExecutable);
    /// svn:needs-lock: whether the property is there. Setting true stores "*".
    bool needsLock() const;
    void setNeedsLock(bool needsLock);
    /// svn:externals as definitions.
    ///
    /// @throws HSVNInvalidExternalsDescriptionException for a text that Subversion cannot parse
    std::vector<HSVNExternalDefinitionRef> externals() const;
    void setExternals(const std::vector<HSVNExternalDefinitionRef>& definitions);
    /// svn:externals as it stands.
    std::optional<std::string> externalsText() const;
    void setExternalsText(const std::optional<std::string>& text);

    /// Equality of all names and values.
    friend bool operator==(const HSVNProperties&, const HSVNProperties&) = default;

  private:
    void setFlag(bool flag, const char* name);
    void setText(std::string text, const char* name);

    Map _values;
};
