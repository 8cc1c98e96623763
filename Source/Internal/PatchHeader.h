#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What a patch names in place of a file that is not there.
inline constexpr std::string_view HSVNPatchOfNothing = "/dev/null";

/// What a header of a patch says is done to an item.
enum class HSVNPatchOperation : std::uint8_t
{
    Unknown, ///< a header that is not Git's
    Modify,
    Add,
    Delete,
    Copy,
    Move
};

/// What the lines of a header have told. Names are as Subversion reads them: with "/" and without "." and "//".
struct HSVNPatchHeader
{
    std::optional<std::string> oldName{};
    std::optional<std::string> newName{};
    std::string oldLabel{}; ///< what follows the name behind a tab, such as "(revision 1)"
    std::string newLabel{};
    HSVNPatchOperation operation = HSVNPatchOperation::Unknown;
    std::optional<std::uint32_t> oldMode{};
    std::optional<std::uint32_t> newMode{};
    bool isBinary = false; ///< what follows is "GIT binary patch"
};

/// Reads the headers of a patch line by line, by the rules of Subversion's own reader: which line counts depends on the
/// lines before it, and what does not count is skipped.
class HSVNPatchHeaderReader
{
  public:
    enum class Answer : std::uint8_t
    {
        Skipped,    ///< the line counts for nothing
        Taken,      ///< the line is part of a header
        Complete,   ///< the line is the last one of a header
        CameBefore, ///< the header was complete before this line
    };

    Answer take(std::string_view line);
    const HSVNPatchHeader& header() const { return _header; }
    /// Begins anew.
    void restart() { *this = {}; }
    /// Whether a line of a header has been taken, of which nothing has come yet.
    bool hasBegun() const { return _state != State::Start; }

  private:
    enum class State : std::uint8_t
    {
        Start,
        Minus,
        UnifiedFound,
        GitDiff,
        GitTree,
        GitMinus,
        GitFound,
        OldMode,
        GitMode,
        MoveFrom,
        CopyFrom,
        BinaryFound
    };
    struct Rule
    {
        std::string_view word;
        State state;
        void (HSVNPatchHeaderReader::*take)(std::string_view rest);
    };
    static const Rule rules[];

    bool apply(std::string_view line);
    void takeMinus(std::string_view rest);
    void takePlus(std::string_view rest);
    void takeGitDiff(std::string_view rest);
    void takeGitMinus(std::string_view rest);
    void takeGitPlus(std::string_view rest);
    void takeGitMinusNull(std::string_view rest);
    void takeGitPlusNull(std::string_view rest);
    void takeOldMode(std::string_view rest);
    void takeNewMode(std::string_view rest);
    void takeNewFile(std::string_view rest);
    void takeDeletedFile(std::string_view rest);
    void takeMoveFrom(std::string_view rest);
    void takeMoveTo(std::string_view rest);
    void takeCopyFrom(std::string_view rest);
    void takeCopyTo(std::string_view rest);
    void takeIndex(std::string_view rest);
    void takeBinary(std::string_view rest);

    State _state = State::Start;
    bool _hasTreeLine = false;
    HSVNPatchHeader _header;
};

/// A name in a patch as Subversion reads it.
std::string HSVNPatchName(std::string_view written);

/// The one name of "diff --git a/NAME b/NAME"; nil where the two differ.
///
/// @param rest  what follows "diff --git"
std::optional<std::string> HSVNGitDiffName(std::string_view rest);
