#pragma once

#include "HSVNLogPathChange.h"
#include "Internal/SharedText.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The changes of one revision, by path. As they were read they lie in one block; the objects are made when anyone asks
/// for one: most of a log's hundred thousands never are.
///
/// Log items share it; whoever has it alone may change it. Reading it, which may make the objects, is safe on any
/// thread.
class HSVNLogChanges
{
  public:
    struct ByText
    {
        using is_transparent = void;
        bool operator()(const HSVNSharedText& a, const HSVNSharedText& b) const { return *a < *b; }
        bool operator()(const HSVNSharedText& a, std::string_view b) const { return *a < b; }
        bool operator()(std::string_view a, const HSVNSharedText& b) const { return a < *b; }
    };
    using Map = std::map<HSVNSharedText, HSVNLogPathChangeRef, ByText>;

    /// A change as it is read; the texts are the reader's.
    struct Record
    {
        std::string_view path;
        std::optional<std::string_view> copyPath;
        HSVNRevisionNumber copyRevision = HSVNInvalidRevision;
        HSVNLogAction action = HSVNLogActionNone;
        HSVNNodeKind kind = HSVNNodeKindUnknown;
        std::optional<bool> textModified;
        std::optional<bool> propertiesModified;
    };

    /// The changes as objects.
    explicit HSVNLogChanges(Map changes);
    /// The changes as they are read, in any order, no two of one path.
    explicit HSVNLogChanges(std::vector<Record> records);

    /// All changes as objects, which are the same from the first time on.
    const Map& objects() const;
    /// The same for the one who has the changes alone.
    Map& objects();

  private:
    void makeObjects() const;

    mutable std::once_flag _isMade;
    mutable std::string _block; ///< of each change its fields and texts; empty once the objects are made
    mutable std::unique_ptr<Map> _objects;
};
