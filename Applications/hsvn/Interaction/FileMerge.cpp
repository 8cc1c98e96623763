#include "Interaction/FileMerge.h"

#include "CommandLine/NativeText.h"
#include "CommandLine/Targets.h"
#include "CommandLine/TextFiles.h"
#include "Interaction/Editor.h"
#include "Interaction/Terminal.h"
#include "Output/ErrorOutput.h"
#include "Output/Output.h"

#include <algorithm>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace {

using Lines = std::vector<std::string>;
using Side = HSVNDiffSide;

constexpr const char* choices = "Select: (1) use their version, (2) use your version,\n"
                                "        (12) their version first, then yours,\n"
                                "        (21) your version first, then theirs,\n"
                                "        (e1) edit their version and use the result,\n"
                                "        (e2) edit your version and use the result,\n"
                                "        (eb) edit both versions and use the result,\n"
                                "        (p) postpone this conflicting section leaving conflict markers,\n"
                                "        (a) abort file merge and return to main menu: ";

/// Columns of a side: half of the terminal's width, of at most 80.
std::size_t columnWidth()
{
    constexpr std::size_t most = 80;
    winsize size{};
    const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0; // NOLINT: the system's form
    return (isKnown ? std::min<std::size_t>(most, size.ws_col) : most) / 2 - 2;
}

/// A line cut or filled up to a width. Bytes that are no text are shown as the program shows such bytes elsewhere.
std::string column(std::string line, std::size_t width)
{
    line = line.substr(0, line.find_first_of("\r\n"));
    while (NativeText::width(line) > width) {
        do {
            line.pop_back();
        } while (!line.empty() && (static_cast<unsigned char>(line.back()) & 0xC0U) == 0x80U &&
                 NativeText::width(line) > width);
    }
    return line.append(width - NativeText::width(line), ' ');
}

std::string sideBySide(const HSVNThreeWayDiff& diff, const HSVNDiffSection& section)
{
    const std::size_t width = columnWidth();
    const Lines theirs = diff.lines(section, Side::Theirs);
    const Lines mine = diff.lines(section, Side::Mine);
    // Counts the lines that are complete; the last of a file may not be.
    const auto header = [&](const char* whose, const HSVNDiffLines& range, const Lines& lines) {
        const bool isCut = !lines.empty() && lines.back().back() != '\n';
        return column(fmt::format("{} version (at line {})", whose, range.end() - (isCut ? 1 : 0)), width);
    };
    const std::string rule = std::string(width, '-') + "+" + std::string(width, '-') + "\n";
    std::string text = "Conflicting section found during merge:\n" + header("(1) their", section.theirs, theirs) + "|" +
                       header("(2) your", section.modified, mine) + "\n" + rule;
    for (std::size_t index = 0; index < std::max(theirs.size(), mine.size()); ++index) {
        text += column(index < theirs.size() ? theirs[index] : "", width) + "|" +
                column(index < mine.size() ? mine[index] : "", width) + "\n";
    }
    return text + rule;
}

} // namespace

FileMerge::FileMerge(Session& session, HSVNConflictedItem& item, std::string path)
    : _session{session}, _diff{item.textComparison()}, _path{std::move(path)}
{
}

bool FileMerge::run()
{
    const std::string shown = relativeToCurrentFolder(_path);
    Output::write(fmt::format("Merging '{}'.\n", shown));
    Output::flush();
    bool remains = false;
    for (const auto& section : _diff.sections()) {
        _choices.emplace_back();
        if (section.kind != HSVNDiffSectionKind::Conflict) {
            continue;
        }
        const Answer answer = askAbout(section);
        if (answer == Answer::Aborted) {
            Output::write(fmt::format("Merge of '{}' aborted.\n", shown));
            Output::flush();
            return false;
        }
        remains = remains || answer == Answer::LeftInConflict;
    }
    writeFile(_path, _diff.merged(_choices));
    Output::write(fmt::format("Merge of '{}' completed{}.\n", shown, remains ? " (remains in conflict)" : ""));
    Output::flush();
    return !remains;
}

FileMerge::Answer FileMerge::askAbout(const HSVNDiffSection& section)
{
    const std::string theirs = _diff.text(section, Side::Theirs);
    const std::string mine = _diff.text(section, Side::Mine);
    const std::string both = "<<<<<<<\n" + theirs + "=======\n" + mine + ">>>>>>>\n";
    const std::string question = sideBySide(_diff, section) + choices;
    HSVNSectionChoice& choice = _choices.back();
    for (;;) {
        const std::string answer = Terminal::ask(question);
        if (answer == "1" || answer == "12") {
            choice.part = answer == "1" ? HSVNMergePart::Theirs : HSVNMergePart::TheirsThenMine;
            return Answer::Taken;
        }
        if (answer == "2" || answer == "21") {
            choice.part = answer == "2" ? HSVNMergePart::Mine : HSVNMergePart::MineThenTheirs;
            return Answer::Taken;
        }
        if (answer == "p") {
            choice = {HSVNMergePart::Other, both};
            return Answer::LeftInConflict;
        }
        if (answer == "a") {
            return Answer::Aborted;
        }
        if (answer == "e1" || answer == "e2" || answer == "eb") {
            try {
                choice = {HSVNMergePart::Other, Editor::editBytes(_session, answer == "e1"   ? theirs
                                                                            : answer == "e2" ? mine
                                                                                             : both)};
                return Answer::Taken;
            } catch (const HSVNException& exception) {
                reportFailedProgram(exception);
            }
        }
    }
}
