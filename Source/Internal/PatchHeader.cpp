#include "Internal/PatchHeader.h"

#include <algorithm>
#include <charconv>

namespace {

/// Splits a name from what follows it behind a tab.
std::string_view takeName(std::string_view rest, std::string& label)
{
    const auto tab = std::min(rest.find('\t'), rest.size());
    label = rest.substr(std::min(tab + 1, rest.size()));
    return rest.substr(0, tab);
}

std::optional<std::uint32_t> modeIn(std::string_view text)
{
    std::uint32_t mode = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), mode, 8);
    return read.ec == std::errc{} ? std::optional{mode} : std::nullopt;
}

} // namespace

std::string HSVNPatchName(std::string_view written)
{
    std::string name = written.starts_with('/') ? "/" : "";
    while (!written.empty()) {
        const auto length = std::min(written.find('/'), written.size());
        const auto component = written.substr(0, length);
        if (!component.empty() && component != ".") {
            name += name.empty() || name == "/" ? "" : "/";
            name += component;
        }
        written.remove_prefix(std::min(length + 1, written.size()));
    }
    return name;
}

std::optional<std::string> HSVNGitDiffName(std::string_view rest)
{
    constexpr std::string_view prefix = " a/";
    constexpr std::string_view separator = " b/";
    if (rest.size() < prefix.size()) {
        return std::nullopt;
    }
    const auto names = rest.substr(prefix.size());
    // Both names are alike, so the separator is in the middle.
    const auto length = names.size() >= separator.size() ? (names.size() - separator.size()) / 2 : 0;
    const auto first = names.substr(0, length);
    if (length == 0 || names.substr(length, separator.size()) != separator ||
        names.substr(length + separator.size()) != first)
    {
        return std::nullopt;
    }
    return HSVNPatchName(first);
}

const HSVNPatchHeaderReader::Rule HSVNPatchHeaderReader::rules[] = {
    {"--- ", State::Start, &HSVNPatchHeaderReader::takeMinus},
    {"+++ ", State::Minus, &HSVNPatchHeaderReader::takePlus},
    {"diff --git", State::Start, &HSVNPatchHeaderReader::takeGitDiff},
    {"--- a/", State::GitDiff, &HSVNPatchHeaderReader::takeGitMinus},
    {"--- a/", State::GitMode, &HSVNPatchHeaderReader::takeGitMinus},
    {"--- a/", State::GitTree, &HSVNPatchHeaderReader::takeGitMinus},
    {"--- /dev/null", State::GitMode, &HSVNPatchHeaderReader::takeGitMinusNull},
    {"--- /dev/null", State::GitTree, &HSVNPatchHeaderReader::takeGitMinusNull},
    {"+++ b/", State::GitMinus, &HSVNPatchHeaderReader::takeGitPlus},
    {"+++ /dev/null", State::GitMinus, &HSVNPatchHeaderReader::takeGitPlusNull},
    {"old mode ", State::GitDiff, &HSVNPatchHeaderReader::takeOldMode},
    {"new mode ", State::OldMode, &HSVNPatchHeaderReader::takeNewMode},
    {"rename from ", State::GitDiff, &HSVNPatchHeaderReader::takeMoveFrom},
    {"rename from ", State::GitMode, &HSVNPatchHeaderReader::takeMoveFrom},
    {"rename to ", State::MoveFrom, &HSVNPatchHeaderReader::takeMoveTo},
    {"copy from ", State::GitDiff, &HSVNPatchHeaderReader::takeCopyFrom},
    {"copy from ", State::GitMode, &HSVNPatchHeaderReader::takeCopyFrom},
    {"copy to ", State::CopyFrom, &HSVNPatchHeaderReader::takeCopyTo},
    {"new file ", State::GitDiff, &HSVNPatchHeaderReader::takeNewFile},
    {"deleted file ", State::GitDiff, &HSVNPatchHeaderReader::takeDeletedFile},
    {"index ", State::GitDiff, &HSVNPatchHeaderReader::takeIndex},
    {"index ", State::GitTree, &HSVNPatchHeaderReader::takeIndex},
    {"index ", State::GitMode, &HSVNPatchHeaderReader::takeIndex},
    {"GIT binary patch", State::GitDiff, &HSVNPatchHeaderReader::takeBinary},
    {"GIT binary patch", State::GitTree, &HSVNPatchHeaderReader::takeBinary},
    {"GIT binary patch", State::GitMode, &HSVNPatchHeaderReader::takeBinary},
};

HSVNPatchHeaderReader::Answer HSVNPatchHeaderReader::take(std::string_view line)
{
    const bool isTaken = apply(line);
    const bool isTree = _state == State::GitTree || _state == State::GitMode;
    if (_state == State::UnifiedFound || _state == State::GitFound || _state == State::BinaryFound) {
        return Answer::Complete;
    }
    if (isTree && _hasTreeLine && !isTaken) {
        return Answer::CameBefore;
    }
    _hasTreeLine = _hasTreeLine || isTree;
    if (!isTaken && _state != State::Start && _state != State::GitDiff) {
        // No header after all; the line may begin one. What was told of names stays, as it does in Subversion.
        _state = State::Start;
        return apply(line) ? Answer::Taken : Answer::Skipped;
    }
    return isTaken ? Answer::Taken : Answer::Skipped;
}

bool HSVNPatchHeaderReader::apply(std::string_view line)
{
    for (const auto& rule : rules) {
        if (rule.state == _state && line.starts_with(rule.word)) {
            (this->*rule.take)(line.substr(rule.word.size()));
            return true;
        }
    }
    return false;
}

void HSVNPatchHeaderReader::takeMinus(std::string_view rest)
{
    _header.oldName = HSVNPatchName(takeName(rest, _header.oldLabel));
    _state = State::Minus;
}

void HSVNPatchHeaderReader::takePlus(std::string_view rest)
{
    _header.newName = HSVNPatchName(takeName(rest, _header.newLabel));
    _state = State::UnifiedFound;
}

void HSVNPatchHeaderReader::takeGitDiff(std::string_view rest)
{
    // Two names that tell nothing by themselves: other lines follow.
    const auto first = rest.find(" a/");
    const auto second = first == std::string_view::npos ? first : rest.find(" b/", first);
    if (second == std::string_view::npos || second + 3 == rest.size() || first + 3 == rest.size()) {
        return;
    }
    if (auto name = HSVNGitDiffName(rest)) {
        _header.oldName = name;
        _header.newName = std::move(name);
    }
    _header.operation = HSVNPatchOperation::Modify;
    _state = State::GitDiff;
}

void HSVNPatchHeaderReader::takeGitMinus(std::string_view rest)
{
    _header.oldName = HSVNPatchName(takeName(rest, _header.oldLabel));
    _state = State::GitMinus;
}

void HSVNPatchHeaderReader::takeGitPlus(std::string_view rest)
{
    _header.newName = HSVNPatchName(takeName(rest, _header.newLabel));
    _state = State::GitFound;
}

void HSVNPatchHeaderReader::takeGitMinusNull(std::string_view /*rest*/)
{
    _header.oldName = HSVNPatchOfNothing;
    _state = State::GitMinus;
}

void HSVNPatchHeaderReader::takeGitPlusNull(std::string_view /*rest*/)
{
    _header.newName = HSVNPatchOfNothing;
    _state = State::GitFound;
}

void HSVNPatchHeaderReader::takeOldMode(std::string_view rest)
{
    _header.oldMode = modeIn(rest);
    _state = State::OldMode;
}

void HSVNPatchHeaderReader::takeNewMode(std::string_view rest)
{
    _header.newMode = modeIn(rest);
    _state = State::GitMode;
}

void HSVNPatchHeaderReader::takeNewFile(std::string_view rest)
{
    constexpr std::string_view word = "mode ";
    _header.newMode = rest.starts_with(word) ? modeIn(rest.substr(word.size())) : std::nullopt;
    _header.operation = HSVNPatchOperation::Add;
    _state = State::GitTree;
}

void HSVNPatchHeaderReader::takeDeletedFile(std::string_view rest)
{
    constexpr std::string_view word = "mode ";
    _header.oldMode = rest.starts_with(word) ? modeIn(rest.substr(word.size())) : std::nullopt;
    _header.operation = HSVNPatchOperation::Delete;
    _state = State::GitTree;
}

void HSVNPatchHeaderReader::takeMoveFrom(std::string_view rest)
{
    _header.oldName = HSVNPatchName(rest);
    _state = State::MoveFrom;
}

void HSVNPatchHeaderReader::takeMoveTo(std::string_view rest)
{
    _header.newName = HSVNPatchName(rest);
    _header.operation = HSVNPatchOperation::Move;
    _state = State::GitTree;
}

void HSVNPatchHeaderReader::takeCopyFrom(std::string_view rest)
{
    _header.oldName = HSVNPatchName(rest);
    _state = State::CopyFrom;
}

void HSVNPatchHeaderReader::takeCopyTo(std::string_view rest)
{
    _header.newName = HSVNPatchName(rest);
    _header.operation = HSVNPatchOperation::Copy;
    _state = State::GitTree;
}

void HSVNPatchHeaderReader::takeIndex(std::string_view /*rest*/)
{
    // Git's own numbers; a mode behind them does not change.
}

void HSVNPatchHeaderReader::takeBinary(std::string_view /*rest*/)
{
    _header.isBinary = true;
    _state = State::BinaryFound;
}
