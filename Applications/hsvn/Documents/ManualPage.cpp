#include "ManualPage.h"

#include "CommandLine/Subcommands.h"

#include <fmt/format.h>

namespace {

/// Text as roff shows it unchanged: no character of it is a request or an escape.
std::string escaped(std::string_view text)
{
    std::string result;
    bool isLineStart = true;
    for (const char character : text) {
        if (isLineStart && (character == '.' || character == '\'')) {
            result += "\\&";
        }
        switch (character) {
        case '\\':
            result += "\\e";
            break;
        case '-':
            result += "\\-";
            break;
        case '\'':
            result += "\\(aq";
            break;
        case '^':
            result += "\\(ha";
            break;
        case '~':
            result += "\\(ti";
            break;
        case '`':
            result += "\\(ga";
            break;
        default:
            result += character;
        }
        isLineStart = character == '\n';
    }
    return result;
}

/// Lines that keep their breaks and their columns.
std::string verbatim(std::string_view text) { return fmt::format(".nf\n{}\n.fi\n", escaped(text)); }

std::string optionEntry(const Option& option, const char* description)
{
    return fmt::format(".TP\n.B {}\n{}", escaped(option.synopsis()), verbatim(description));
}

std::string subcommandSection(const Subcommand& subcommand)
{
    std::string text = fmt::format(".SS {}\n{}\n.PP\n", escaped(subcommand.heading()), escaped(subcommand.summary));
    text += verbatim("usage:\n" + std::string{subcommand.usage});
    if (*subcommand.details != '\0') {
        text += ".PP\n" + verbatim(subcommand.details);
    }
    for (const OptionId id : subcommand.options) {
        const Option& option = optionWithId(id);
        text += optionEntry(option, subcommand.descriptionOf(option));
    }
    return text;
}

std::string globalSection()
{
    std::string text = ".SH GLOBAL OPTIONS\nThese are accepted by every subcommand but create.\n";
    for (const OptionId id : globalOptions()) {
        text += optionEntry(optionWithId(id), optionWithId(id).description);
    }
    for (const OptionId id : {OptionId::Help, OptionId::Version}) {
        text += optionEntry(optionWithId(id), optionWithId(id).description);
    }
    return text;
}

constexpr const char* head = ".TH HSVN 1 \"\" \"HSVN " HSVN_VERSION_STRING "\" \"User Commands\""
                             R"(
.SH NAME
hsvn \- Subversion command\-line client
.SH SYNOPSIS
.B hsvn
.I subcommand
[\fIoptions\fR] [\fIargs\fR]
.br
.B hsvn help
[\fIsubcommand\fR]
.br
.B hsvn \-\-version
[\fB\-\-quiet\fR] [\fB\-\-verbose\fR]
.SH DESCRIPTION
The command line of Subversion, on the HSVN library: the same subcommands, options, output and exit codes as
.BR svn (1).
Beyond it,
.B \-\-json
prints what is listed as JSON,
.B log \-\-graph
draws branches and merges, and on a terminal the output is coloured, long output goes through a pager, long work shows
its progress, and what is misspelled is suggested in its right form. Control characters in names, messages and files are
shown there as ?\eNNN, characters that turn the direction of text as {U+NNNN}; anywhere else every byte stays as it is.
.PP
Options and arguments may stand in any order;
.B \-\-
ends the options. A target may name the revision in which it is looked up, as
.IR PATH @ REV .
.SH SUBCOMMANDS
)";

constexpr const char* tail = R"(.SH ENVIRONMENT
.TP
.BR SVN_EDITOR ", " VISUAL ", " EDITOR
The editor for log messages, the first of them that is set.
.TP
.BR HSVN_PAGER ", " PAGER
The command line of the pager, the first of them that is set,
.BR less (1)
by default. None is used when it is empty or
.BR cat .
.B LESS
is FRX for it, and
.B LV
\-c, where they are not set.
.TP
.B NO_COLOR
Output to a terminal is not coloured when it is set to anything.
.SH FILES
.TP
.I ~/.subversion
The user's configuration and stored credentials, shared with
.BR svn (1).
.SH EXIT STATUS
0 on success, 1 when anything failed, also with one of several targets.
.SH SEE ALSO
.BR svn (1),
.BR svnadmin (1)
)";

} // namespace

std::string manualPage()
{
    std::string page = head;
    for (const Subcommand* const subcommand : subcommands()) {
        page += subcommandSection(*subcommand);
    }
    return page + globalSection() + tail;
}
