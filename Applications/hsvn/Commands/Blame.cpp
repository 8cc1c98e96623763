#include "CommandLine/Dates.h"
#include "CommandLine/RevisionArguments.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "CommandLine/TextFiles.h"
#include "Output/ErrorOutput.h"
#include "Output/JSON.h"
#include "Output/Output.h"
#include "Output/XML.h"

#include <algorithm>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace {

std::optional<std::string> propertyOf(const HSVNLineChange& change, const char* name)
{
    const auto property = change.properties.find(name);
    return property == change.properties.end() ? std::nullopt : std::optional{property->second};
}

void addChange(XML& xml, const HSVNLineChange& change)
{
    xml.open("commit", {{"revision", std::to_string(change.revision)}});
    xml.element("author", propertyOf(change, "svn:author")).element("date", propertyOf(change, "svn:date"));
    xml.close("commit");
}

nlohmann::ordered_json recordOf(const HSVNLineChange& change)
{
    nlohmann::ordered_json record{{"revision", change.revision}};
    for (const auto& [name, property] : {std::pair{"author", "svn:author"}, std::pair{"date", "svn:date"}}) {
        if (const auto value = propertyOf(change, property)) {
            record[name] = *value;
        }
    }
    return record;
}

/// One run of `blame`.
class BlameRun
{
  public:
    explicit BlameRun(Session& session)
        : _session{session}, _start{session.options.startRevision()}, _end{session.options.endRevision()}
    {
    }

    void run()
    {
        const Options& options = _session.options;
        const auto targets = requiredTargets(_session);
        settleRange();
        _choices = {.ignoreContentType = options.force,
                    .mergedRevisions = options.useMergeHistory,
                    .arguments = split(options.extensions.value_or(""), " \t\n\r")};
        _session.client()->checkBlameArguments(_choices.arguments);
        checkOptions();
        const bool isDocument = options.xml && !options.incremental;
        if (isDocument) {
            XML::writeHeader("blame");
        }
        TargetFailures failures;
        for (const auto& target : targets) {
            failures.attempt({WorkingCopyPathNotFound, EntryNotFound, NotFile, NodeNotFound}, [&] { blame(target); });
        }
        if (isDocument) {
            XML::writeFooter("blame");
        }
        if (options.json) {
            _records.finish();
        }
        if (failures.any()) {
            fail(IllegalTarget, "Could not perform blame on all targets because some targets don't exist");
        }
    }

  private:
    void checkOptions() const
    {
        const Options& options = _session.options;
        if (options.xml && options.verbose) {
            fail(ArgumentParsing, "'verbose' option invalid in XML mode");
        }
        if (options.incremental && !options.xml) {
            fail(ArgumentParsing, "'incremental' option only valid in XML mode");
        }
    }

    /// One revision is the end of a range from the first one on.
    void settleRange()
    {
        if (isUnspecified(_end) && !isUnspecified(_start)) {
            _end = std::exchange(_start, HSVNRevision::UNSPECIFIED());
        }
        if (isUnspecified(_start)) {
            _start = HSVNRevision::revisionWithNumber(1);
        }
    }

    void blame(const std::string& target)
    {
        const auto [path, peg] = peggedTarget(_session, target);
        const auto version = _session.client()->bundleVersion();
        const bool knowsLocalLines = !version || !version->isLessThan({1, 7});
        const auto& newest = isURL(path)       ? HSVNRevision::HEAD()
                             : knowsLocalLines ? HSVNRevision::WORKING()
                                               : HSVNRevision::BASE();
        const auto end = !isUnspecified(_end) ? _end : !isUnspecified(peg) ? peg : newest;
        _lines = XML{};
        if (_session.options.xml) {
            _lines.open("target", {{"path", localStyle(path)}});
        }
        try {
            _session.client()->blame({HSVNTarget::verbatim(path), HSVNRevisionSpec::pegRevisionWithRevision(peg)},
                                     {_start, end}, _choices,
                                     [&, &shown = path](const HSVNBlamedLine& line) { print(line, shown); });
        } catch (const HSVNException& exception) {
            if (exception.status() != ClientIsBinaryFile) {
                throw;
            }
            Output::writeError(fmt::format("Skipping binary file (use --force to treat as text): '{}'\n", target));
            return;
        }
        if (_session.options.xml) {
            _lines.close("target").write();
        }
    }

    void print(const HSVNBlamedLine& line, const std::string& path)
    {
        if (_session.options.xml) {
            addLine(line);
        } else if (_session.options.json) {
            _records.add(record(line, path));
        } else {
            Output::write(columns(line) + " ");
            // Up to a zero byte, as Subversion prints a line.
            Output::writeBytes(line.text.substr(0, line.text.find('\0')));
            Output::writeBytes("\n");
        }
    }

    void addLine(const HSVNBlamedLine& line)
    {
        _lines.open("entry", {{"line-number", std::to_string(line.number + 1)}});
        if (line.change) {
            addChange(_lines, *line.change);
        }
        if (line.mergedChange && line.mergedPath) {
            _lines.open("merged", {{"path", *line.mergedPath}});
            addChange(_lines, *line.mergedChange);
            _lines.close("merged");
        }
        _lines.close("entry");
    }

    static nlohmann::ordered_json record(const HSVNBlamedLine& line, const std::string& path)
    {
        nlohmann::ordered_json record{{"path", localStyle(path)}, {"line-number", line.number + 1}};
        if (line.change) {
            record["commit"] = recordOf(*line.change);
        }
        if (line.mergedChange && line.mergedPath) {
            record["merged"] = recordOf(*line.mergedChange);
            record["merged"]["path"] = *line.mergedPath;
        }
        return record;
    }

    /// What stands before a line, without the last space.
    std::string columns(const HSVNBlamedLine& line) const
    {
        const Options& options = _session.options;
        const bool isMerged = options.useMergeHistory && line.change && line.mergedChange &&
                              line.mergedChange->revision < line.change->revision;
        const auto& change = isMerged ? line.mergedChange : line.change;
        const std::string author = change ? propertyOf(*change, "svn:author").value_or("-") : "-";
        std::string text = options.useMergeHistory ? (isMerged ? "G " : "  ") : "";
        text += fmt::format("{:>{}}", change ? std::to_string(change->revision) : "-", revisionWidth(line));
        if (!options.verbose) {
            // In bytes, as Subversion counts.
            const std::string cut = author.substr(0, authorWidth);
            return text + " " + std::string(authorWidth - cut.size(), ' ') + cut;
        }
        const std::string gap(author.size() < authorWidth ? authorWidth - author.size() : 0, ' ');
        text += fmt::format(" {}{} {}", gap, author, change ? dateOf(*change) : noDate());
        return isMerged && line.mergedPath ? fmt::format("{} {:<14}", text, *line.mergedPath) : text;
    }

    static std::string dateOf(const HSVNLineChange& change)
    {
        const auto text = propertyOf(change, "svn:date");
        return text ? humanDate(*text) : noDate();
    }

    /// As wide as a date; a text that is none stays short, as Subversion prints it.
    static std::string noDate() { return fmt::format("{:>44}", "-"); }

    static std::size_t revisionWidth(const HSVNBlamedLine& line)
    {
        return std::max<std::size_t>(6, std::to_string(line.youngestRevision).size());
    }

    static constexpr std::size_t authorWidth = 10;

    Session& _session;
    HSVNRevisionRef _start;
    HSVNRevisionRef _end;
    HSVNBlameChoices _choices;
    XML _lines; // kept until the target is known to have been read whole
    JSONArray _records;
};

void runBlame(Session& session)
{
    session.pageOutput();
    BlameRun{session}.run();
}

} // namespace

const Subcommand& blameSubcommand()
{
    static const Subcommand subcommand{
        "blame",
        {"praise", "annotate", "ann"},
        "Show for each line of a file which revision changed it.",
        "blame [-rM:N] TARGET[@REV]...",
        "Prints the file's lines behind the number of the revision that changed\n"
        "each of them, and behind the author's name.\n"
        "\n"
        "The lines are those of revision N, or of REV without -r.  Where M is\n"
        "older than N, or left out, the last change up to N is told, but none\n"
        "before M; a single -r N leaves M out.\n"
        "\n"
        "Where M is younger than N, the next change after N is told that\n"
        "altered or deleted the line, but none after M.\n"
        "\n"
        "REV also tells in which revision the target is looked up.",
        {OptionId::Revision, OptionId::Verbose, OptionId::UseMergeHistory, OptionId::Incremental, OptionId::XML,
         OptionId::JSON, OptionId::Extensions, OptionId::Force},
        {{OptionId::Verbose, "print the date, too"}, {OptionId::Force, "read files of binary types as texts"}},
        runBlame,
        RevisionUse::Range};
    return subcommand;
}
