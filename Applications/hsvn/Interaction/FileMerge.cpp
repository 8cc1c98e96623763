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

constexpr const char* choices = "Select: (1) use their version, (2) use your version,\n"
                                "        (12) their version first, then yours,\n"
                                "        (21) your version first, then theirs,\n"
                                "        (e1) edit their version and use the result,\n"
                                "        (e2) edit your version and use the result,\n"
                                "        (eb) edit both versions and use the result,\n"
                                "        (p) postpone this conflicting section leaving conflict markers,\n"
                                "        (a) abort file merge and return to main menu: ";

Lines linesOf(const std::string& text)
{
    Lines lines;
    for (std::size_t start = 0; start < text.size();) {
        const auto end = std::min(text.find('\n', start), text.size() - 1) + 1;
        lines.push_back(text.substr(start, end - start));
        start = end;
    }
    return lines;
}

Lines partOf(const Lines& lines, const HSVNMergeStretch::Lines& range)
{
    const auto size = static_cast<std::int64_t>(lines.size());
    const auto start = std::clamp<std::int64_t>(range.start, 0, size);
    return {lines.begin() + start, lines.begin() + std::clamp<std::int64_t>(start + range.count, start, size)};
}

std::string textOf(const Lines& lines)
{
    std::string text;
    for (const auto& line : lines) {
        text += line;
    }
    return text;
}

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

std::string sideBySide(const Lines& theirs, const Lines& mine, const HSVNMergeStretch& stretch)
{
    const std::size_t width = columnWidth();
    // Counts the lines that are complete; the last of a file may not be.
    const auto header = [&](const char* whose, const HSVNMergeStretch::Lines& range, const Lines& lines) {
        const bool isCut = !lines.empty() && lines.back().back() != '\n';
        return column(fmt::format("{} version (at line {})", whose, range.start + range.count - (isCut ? 1 : 0)),
                      width);
    };
    const std::string rule = std::string(width, '-') + "+" + std::string(width, '-') + "\n";
    std::string text = "Conflicting section found during merge:\n" + header("(1) their", stretch.theirs, theirs) + "|" +
                       header("(2) your", stretch.mine, mine) + "\n" + rule;
    for (std::size_t index = 0; index < std::max(theirs.size(), mine.size()); ++index) {
        text += column(index < theirs.size() ? theirs[index] : "", width) + "|" +
                column(index < mine.size() ? mine[index] : "", width) + "\n";
    }
    return text + rule;
}

} // namespace

FileMerge::FileMerge(Session& session, const HSVNConflictSides& files, std::string path)
    : _session{session}, _files{files}, _path{std::move(path)}, _mine{linesOf(contentsOfFile(files.mine.value_or("")))},
      _theirs{linesOf(contentsOfFile(files.theirNew.value_or("")))}
{
}

bool FileMerge::run()
{
    const std::string shown = relativeToCurrentFolder(_path);
    Output::write(fmt::format("Merging '{}'.\n", shown));
    Output::flush();
    bool remains = false;
    for (const auto& stretch : HSVNMergeStretches(_files, _session.client())) {
        if (!stretch.isConflict) {
            _result +=
                textOf(stretch.theirs.start >= 0 ? partOf(_theirs, stretch.theirs) : partOf(_mine, stretch.mine));
            continue;
        }
        const Answer answer = askAbout(stretch);
        if (answer == Answer::Aborted) {
            Output::write(fmt::format("Merge of '{}' aborted.\n", shown));
            Output::flush();
            return false;
        }
        remains = remains || answer == Answer::LeftInConflict;
    }
    writeFile(_path, _result);
    Output::write(fmt::format("Merge of '{}' completed{}.\n", shown, remains ? " (remains in conflict)" : ""));
    Output::flush();
    return !remains;
}

FileMerge::Answer FileMerge::askAbout(const HSVNMergeStretch& stretch)
{
    const Lines theirLines = partOf(_theirs, stretch.theirs);
    const Lines myLines = partOf(_mine, stretch.mine);
    const std::string theirs = textOf(theirLines);
    const std::string mine = textOf(myLines);
    const std::string both = "<<<<<<<\n" + theirs + "=======\n" + mine + ">>>>>>>\n";
    const std::string question = sideBySide(theirLines, myLines, stretch) + choices;
    for (;;) {
        const std::string answer = Terminal::ask(question);
        if (answer == "1" || answer == "12") {
            _result += theirs + (answer == "12" ? mine : "");
            return Answer::Taken;
        }
        if (answer == "2" || answer == "21") {
            _result += mine + (answer == "21" ? theirs : "");
            return Answer::Taken;
        }
        if (answer == "p") {
            _result += both;
            return Answer::LeftInConflict;
        }
        if (answer == "a") {
            return Answer::Aborted;
        }
        if (answer == "e1" || answer == "e2" || answer == "eb") {
            try {
                _result += Editor::editBytes(_session, answer == "e1" ? theirs : answer == "e2" ? mine : both);
                return Answer::Taken;
            } catch (const HSVNException& exception) {
                reportFailedProgram(exception);
            }
        }
    }
}
