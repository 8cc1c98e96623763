#include "Internal/PatchGuard.h"

#include "HSVNException.h"
#include "HSVNStatusCodes.h"
#include "Internal/PatchReader.h"
#include "Internal/ReservedName.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fmt/format.h>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace {

namespace files = std::filesystem;

constexpr std::array<std::string_view, 6> nameWords{"--- ",       "+++ ",       "rename from ",
                                                    "rename to ", "copy from ", "copy to "};
constexpr std::array<std::string_view, 4> modeWords{"old mode ", "new mode ", "new file mode ", "deleted file mode "};
constexpr std::string_view gitWord = "diff --git";

void refuse(HSVNStatusCode::Value status, const std::string& reason)
{
    HSVNException::exceptionWithReason(reason, status)->raise();
}

/// Reads a patch for the names that Subversion may take from it.
class Guard : public HSVNPatchReader
{
  public:
    Guard(const HSVNPatchSource& source, const std::string& directory, const HSVNPatchChoices& choices)
        : HSVNPatchReader{source, choices.ignoreWhitespace}, _strip{choices.strip}
    {
        std::error_code ignored; // without a current folder Subversion refuses, too
        const auto written = files::absolute(directory.empty() ? "." : directory, ignored).lexically_normal();
        _root = written.has_filename() || !written.has_relative_path() ? written : written.parent_path();
    }

    void readAll()
    {
        for (HSVNPatchFacts facts; next(facts);) {
        }
    }

    bool leadsThroughLink() const { return _leadsThroughLink; }

  private:
    void readHeaderLine(const HSVNPatchRawLine& line) override
    {
        const auto text = line.header();
        if (text.starts_with(gitWord)) {
            requireWhole(line);
            if (const auto name = HSVNGitDiffName(text.substr(gitWord.size()))) {
                check(*name);
            }
        }
        for (const auto word : nameWords) {
            if (text.starts_with(word)) {
                requireWhole(line);
                checkWritten(word, text.substr(word.size()));
            }
        }
        for (const auto word : modeWords) {
            if (text.starts_with(word) && text.substr(word.size()).starts_with("12")) {
                noteLink();
            }
        }
    }

    void readPart(const HSVNPatchPart& part, const HSVNPatchFacts& /*facts*/) override
    {
        if (part.lacksName) {
            refuse(HSVNStatusCode::IllegalTarget, "The patch changes a property, but does not say which");
        }
        if (part.isOfProperty && part.hasImpossibleLines) {
            refuse(HSVNStatusCode::IllegalTarget,
                   fmt::format("The patch changes lines of property '{}' that it says are not there",
                               part.property.value_or("")));
        }
        if (part.property == "svn:special") {
            noteLink();
        }
        _isOfFormerItem = _isOfFormerItem || part.kind != HSVNPatchPart::Kind::Noise;
    }

    static void requireWhole(const HSVNPatchRawLine& line)
    {
        const auto text = line.header();
        if (line.text.size() != line.size || text.size() != line.text.size()) {
            refuse(HSVNStatusCode::IllegalTarget,
                   fmt::format("The patch has a line with a NUL in it or too long: '{}'", text.substr(0, 200)));
        }
    }

    void checkWritten(std::string_view word, std::string_view name)
    {
        const bool isMove = word.starts_with("rename");
        _hasMove = _hasMove || isMove;
        if (word.starts_with('-') || word.starts_with('+')) {
            name = name.substr(0, name.find('\t'));
            if (name.starts_with("a/") || name.starts_with("b/")) {
                check(HSVNPatchName(name.substr(2)));
            }
        }
        const auto item = check(HSVNPatchName(name));
        if (isMove && item) {
            // What is moved may be a link itself.
            _links.insert(*item);
        }
    }

    /// The item that a name stands for; nil for what Subversion leaves alone.
    std::optional<files::path> itemNamed(const std::string& name) const
    {
        files::path written{name};
        auto component = written.begin();
        int count = 0;
        for (; count < _strip && component != written.end(); ++count) {
            ++component;
        }
        files::path stripped;
        for (; component != written.end(); ++component) {
            stripped /= *component;
        }
        const auto item = (_root / stripped).lexically_normal();
        const auto below = item.lexically_relative(_root);
        const bool isOutside = below.empty() || *below.begin() == "..";
        return isOutside || below == "." ? std::nullopt : std::optional{below};
    }

    std::optional<files::path> check(const std::string& name)
    {
        auto item = itemNamed(name);
        if (!item) {
            return std::nullopt;
        }
        if (std::any_of(item->begin(), item->end(), [](const auto& part) { return HSVNIsReservedName(part.string()); }))
        {
            refuse(HSVNStatusCode::ReservedFileName,
                   fmt::format("The patch changes '{}', which is in an administrative area", item->string()));
        }
        if (const auto above = linkAbove(*item); !above.empty()) {
            _leadsThroughLink = true;
            if (_hasMove) {
                refuse(HSVNStatusCode::IllegalTarget,
                       fmt::format("The patch moves items and changes '{}', but '{}' is a symbolic link or becomes one",
                                   item->string(), above.string()));
            }
        }
        if (std::exchange(_isOfFormerItem, false)) {
            _names.clear();
            _isLink = false;
        }
        _names.insert(*item);
        if (_isLink) {
            _links.insert(*item);
        }
        return item;
    }

    /// What above an item is a symbolic link, or becomes one; empty when nothing does.
    files::path linkAbove(const files::path& item) const
    {
        files::path above;
        for (auto part = item.begin(); std::next(part) != item.end(); ++part) {
            above /= *part;
            std::error_code ignored;
            if (_links.contains(above) || files::is_symlink(_root / above, ignored)) {
                return above;
            }
        }
        return {};
    }

    /// The item that is being read becomes a link, by whichever of its names.
    void noteLink()
    {
        _isLink = true;
        _links.insert(_names.begin(), _names.end());
    }

    int _strip;
    files::path _root;
    bool _hasMove = false;
    bool _leadsThroughLink = false;
    bool _isLink = false;
    bool _isOfFormerItem = false;
    std::set<files::path> _names;
    std::set<files::path> _links;
};

} // namespace

bool HSVNRequireHarmlessPatch(const HSVNPatchSource& source, const std::string& directory,
                              const HSVNPatchChoices& choices)
{
    Guard guard{source, directory, choices};
    guard.readAll();
    return guard.leadsThroughLink();
}
