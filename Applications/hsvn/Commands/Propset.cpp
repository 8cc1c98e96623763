#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/PropertyNames.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "CommandLine/TextFiles.h"
#include "Commands/PropertyChanges.h"
#include "Commands/PropertyWarnings.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

/// One run of `propset`.
class PropsetRun
{
  public:
    explicit PropsetRun(Session& session) : _session{session} {}

    void run()
    {
        const Options& options = _session.options;
        _name = NativeText::toUTF8(takeArgument(_session));
        std::string given = options.file ? options.fileContents.value_or("") : takeArgument(_session);
        requirePropertyName(_name);
        if (!options.force) {
            requireKnownPropertyName(_name, options.revisionProperty);
        }
        takeValue(std::move(given));
        if (options.revisionProperty) {
            changeRevisionProperty(_session, _name, _value);
            return;
        }
        setOnItems();
    }

  private:
    /// Subversion's own properties are text, which is kept as UTF-8 with "\n" at line ends.
    void takeValue(std::string given)
    {
        const Options& options = _session.options;
        _given = given;
        if (isOwnProperty(_name)) {
            given.resize(std::min(given.size(), given.find('\0')));
            _value = withUnixLineEnds(NativeText::toUTF8(given, options.encoding));
        } else if (options.encoding) {
            fail(UnsupportedFeature, "--encoding option applies only to textual Subversion-controlled properties");
        } else {
            _value = std::move(given);
        }
    }

    void setOnItems()
    {
        const auto targets = unpeggedTargets(targetsOf(_session));
        if (_session.options.usedRevision) {
            fail(ArgumentParsing, fmt::format("Cannot specify revision for setting versioned property '{}'", _name));
        }
        if (targets.empty()) {
            fail(InsufficientArguments,
                 _session.options.file
                     ? "Explicit target argument required"
                     : fmt::format("Explicit target required ('{}' interpreted as prop value)", _given));
        }
        warnOfBinaryType(_session, _name, _value, targets);
        changeProperty(_session, _name, _value, targets);
        if (!_session.options.quiet) {
            warnOfOff(_name, _value);
        }
    }

    Session& _session;
    std::string _name;
    std::string _given; // as on the command line
    std::string _value;
};

void runPropset(Session& session) { PropsetRun{session}.run(); }

} // namespace

const Subcommand& propsetSubcommand()
{
    static const Subcommand subcommand{
        "propset",
        {"pset", "ps"},
        "Set the value of a property on files, dirs, or revisions.",
        "1. propset PROPNAME PROPVAL PATH...\n"
        "2. propset PROPNAME --revprop -r REV PROPVAL [TARGET]",
        "1. Sets the property of items of a working copy, to be committed.\n"
        "2. Sets a revision's own property, at once, in the repository that TARGET\n"
        "   is of.\n"
        "\n"
        "With --file the value is what a file contains, and PROPVAL is left out.\n"
        "\n"
        "Names that begin with 'svn:' mean something to Subversion.  On files:\n"
        "  svn:keywords    what to expand, separated by blanks: URL (HeadURL), Author\n"
        "                  (LastChangedBy), Date (LastChangedDate), Rev (Revision,\n"
        "                  LastChangedRevision), Id, Header, or NAME=FORMAT of one's\n"
        "                  own, in which %a is the author, %b the file's name, %d and\n"
        "                  %D the short and the long date, %P the path from the\n"
        "                  repository's root, %r the revision, %R the root's URL, %u\n"
        "                  the file's URL, %_ a blank, %% a percent sign, and %H and %I\n"
        "                  what Header and Id hold\n"
        "  svn:executable  the file can be run, whatever the value\n"
        "  svn:eol-style   'native', 'LF', 'CR' or 'CRLF'\n"
        "  svn:mime-type   all but 'text/...' is neither merged nor shown as lines\n"
        "  svn:needs-lock  the file is read-only until it is locked\n"
        "On folders:\n"
        "  svn:ignore          patterns of names to ignore, one a line\n"
        "  svn:global-ignores  the same for all that lies below as well\n"
        "  svn:auto-props      what new files below are given, one pattern a line:\n"
        "                      PATTERN = NAME=VALUE[;NAME=VALUE...]; ';;' is a ';'\n"
        "  svn:externals       working copies to bring in, one a line:\n"
        "                      [-r REV] URL[@PEG] LOCALPATH.  The URL may begin with\n"
        "                      '../' (the parent folder), '^/' (the repository's\n"
        "                      root), '//' (the scheme), '/' (the server's root) or\n"
        "                      '^/../' (a repository beside this one); '#' begins a\n"
        "                      comment",
        {OptionId::File, OptionId::Encoding, OptionId::Quiet, OptionId::Revision, OptionId::Targets,
         OptionId::Recursive, OptionId::Depth, OptionId::Revprop, OptionId::Force, OptionId::Changelist},
        {{OptionId::File, "read property value from file ARG"}},
        runPropset};
    return subcommand;
}
