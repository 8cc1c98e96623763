#pragma once

#include "HSVNExport.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Uniform type identifiers that the library itself names.
inline constexpr const char* HSVNTypeItem = "public.item";           ///< every file and folder
inline constexpr const char* HSVNTypeDirectory = "public.directory"; ///< every folder
inline constexpr const char* HSVNTypeData = "public.data";           ///< every file
inline constexpr const char* HSVNTypeText = "public.text";           ///< every text

/// What the tags of file types are: a tag stands for a type in its own class only.
enum class HSVNTypeTagClass
{
    filenameExtension, ///< without its "."
    MIMEType
};

/// The uniform type identifiers of the types that a table declares, such as "public.html", and of those that it does
/// not. Immutable; may be used by any thread.
class HSVN_EXPORT HSVNTypeRegistry
{
  public:
    /// The types of a table.
    ///
    /// @param file  path of a JSON object with an array "types" of objects, each with a text "identifier" and, where it
    ///              has any, arrays of texts "conformsTo" (identifiers), "extensions" and "mimeTypes"
    /// @throws HSVNException "Failed to load the type table at FILE: CAUSE" for a table that cannot be read, names a
    ///         type twice, or makes a type conform to itself or to none that it declares
    explicit HSVNTypeRegistry(const std::string& file);

    /// The types of the library's own table, read when first asked for.
    ///
    /// @throws HSVNException as the constructor, at every call until the table can be read
    static const HSVNTypeRegistry& sharedRegistry();

    /// The identifier of the first type in the table that has the tag and conforms to another type, or else a dynamic
    /// one.
    ///
    /// @param tag  letters' case, and parameters of a MIME type, do not count
    /// @return a dynamic identifier begins with "dyn." and is the same for the same three arguments, in any process
    std::string preferredIdentifierForTag(HSVNTypeTagClass tagClass, std::string_view tag,
                                          std::string_view conformingTo) const;
    /// Whether a type is another, or conforms to it through any number of steps; an unknown type conforms to itself
    /// only.
    bool conforms(std::string_view identifier, std::string_view other) const;
    /// All declared identifiers, sorted.
    std::vector<std::string> identifiers() const;

  private:
    using Identifiers = std::vector<std::string>;

    std::map<std::string, Identifiers, std::less<>> _conformances; // the direct ones, by type
    std::map<std::string, Identifiers, std::less<>> _typesByExtension;
    std::map<std::string, Identifiers, std::less<>> _typesByMIMEType;
};
