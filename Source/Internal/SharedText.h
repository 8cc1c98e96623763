#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

/// A text that may be nil and never changes; copies share it.
using HSVNSharedText = std::shared_ptr<const std::string>;

/// A shared text of the given one; nil for nil.
HSVNSharedText HSVNMakeSharedText(std::optional<std::string> text);

/// The text, or nil.
std::optional<std::string> HSVNTextValue(const HSVNSharedText& text);

/// Makes equal texts one object, so that thousands of records by one author hold one text. Used by one thread.
class HSVNTextCache
{
  public:
    /// The one object for that text; nil for null.
    HSVNSharedText sharedText(const char* text);

  private:
    struct Hash
    {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
        std::size_t operator()(const HSVNSharedText& text) const { return (*this)(std::string_view{*text}); }
    };
    struct Equal
    {
        using is_transparent = void;
        bool operator()(const HSVNSharedText& a, const HSVNSharedText& b) const { return *a == *b; }
        bool operator()(const HSVNSharedText& a, std::string_view b) const { return *a == b; }
        bool operator()(std::string_view a, const HSVNSharedText& b) const { return a == *b; }
    };
    std::unordered_set<HSVNSharedText, Hash, Equal> _texts;
};
