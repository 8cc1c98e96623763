#include "Interaction/LogMessage.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Targets.h"
#include "CommandLine/TextFiles.h"
#include "Interaction/Terminal.h"

#include <cctype>
#include <fmt/format.h>
#include <utility>

namespace {

constexpr std::string_view endMark = "--This line, and those below, will be ignored--";

/// The text up to the line that begins with the mark. A file with a message has it where an earlier commit has left it.
std::string withoutProposal(const std::string& text)
{
    if (text.starts_with(endMark)) {
        return "";
    }
    const auto lineEnd = text.find(fmt::format("\n{}", endMark));
    return lineEnd == std::string::npos ? text : text.substr(0, lineEnd + 1);
}

bool isBlank(const std::string& text) { return text.find_first_not_of(" \t\n\v\f\r") == std::string::npos; }

/// The four columns of an item: what is done, properties, lock, history.
std::string columnsOf(const HSVNCommitItem& item, bool keepsLock)
{
    const auto has = [&](HSVNCommitAction action) { return (item.actions() & action) != 0; };
    char text = '_';
    char properties = ' ';
    if (has(HSVNCommitActionAdd)) {
        text = has(HSVNCommitActionDelete) ? 'R' : 'A';
    } else if (has(HSVNCommitActionDelete)) {
        text = 'D';
    } else {
        text = has(HSVNCommitActionTextModified) ? 'M' : '_';
        properties = has(HSVNCommitActionPropertiesModified) ? 'M' : ' ';
    }
    return {text, properties, item.isLocked() && !keepsLock ? 'U' : ' ', has(HSVNCommitActionCopy) ? '+' : ' '};
}

} // namespace

LogMessage::LogMessage(Session& session, std::string folder)
    : _session{session}, _folder{std::move(folder)},
      _given{session.options.file ? session.options.fileContents : session.options.message}, _editor{session, _folder,
                                                                                                     "svn-commit"}
{
    if (_given && _given->find('\0') != std::string::npos) {
        fail(BadLogMessage, "Log message contains a zero byte");
    }
    if (!session.options.encoding) {
        session.options.encoding = session.client()->optionForName("log-encoding", HSVNConfigCategoryConfig,
                                                                   HSVNConfigSectionMiscellany, std::nullopt);
    }
}

bool LogMessage::answer(std::string& message, const std::vector<HSVNCommitItemRef>& items)
{
    _hasFailed = true;
    const bool goesOn = answerOrThrow(message, items);
    _hasFailed = false;
    return goesOn;
}

bool LogMessage::answerOrThrow(std::string& message, const std::vector<HSVNCommitItemRef>& items)
{
    if (_given) {
        try {
            message = withoutProposal(withUnixLineEnds(NativeText::toUTF8(*_given, _session.options.encoding)));
            return true;
        } catch (const HSVNException& exception) {
            throw wrapped(exception, "Error normalizing log message to internal format");
        }
    }
    if (items.empty()) {
        return true;
    }
    if (_session.options.nonInteractive) {
        fail(InsufficientArguments, "Cannot invoke editor to get log message when non-interactive");
    }
    return edit(message, items);
}

bool LogMessage::edit(std::string& message, const std::vector<HSVNCommitItemRef>& items)
{
    const std::string text = proposal(items);
    for (;;) {
        std::optional<std::string> edited;
        try {
            edited = _editor.edit(text);
        } catch (const HSVNException& exception) {
            if (exception.status() != NoEditor) {
                throw;
            }
            throw wrapped(exception, "Could not use external editor to fetch log message; consider setting the "
                                     "$SVN_EDITOR environment variable or using the --message (-m) or --file (-F) "
                                     "options");
        }
        message = withoutProposal(edited.value_or(""));
        if (!isBlank(message)) {
            return true;
        }
        const std::string reply = Terminal::ask("\nLog message unchanged or not specified\n"
                                                "(a)bort, (c)ontinue, (e)dit:\n");
        const char letter =
            reply.empty() ? '\0' : static_cast<char>(std::tolower(static_cast<unsigned char>(reply[0])));
        if (letter == 'a') {
            discardFile();
            return false;
        }
        if (letter == 'c') {
            message.clear();
            return true;
        }
    }
}

std::string LogMessage::proposal(const std::vector<HSVNCommitItemRef>& items) const
{
    std::string text = fmt::format("\n{}\n\n", endMark);
    for (const auto& item : items) {
        text += lineOf(*item);
    }
    return text;
}

std::string LogMessage::lineOf(const HSVNCommitItem& item) const
{
    std::string name;
    if (item.path()) {
        name = item.path()->string();
        name = _folder.empty() ? name : localStyle(std::string{pathBelow(name, _folder).value_or(name)});
    } else if (item.URL()) {
        name = item.URL()->string();
    }
    return fmt::format("{} {}\n", columnsOf(item, _session.options.noUnlock), name);
}

HSVNException LogMessage::withLeftFile(const HSVNException& exception) const
{
    if (_editor.file().empty()) {
        return exception;
    }
    return extended(exception,
                    {"Your commit message was left in a temporary file:", fmt::format("   '{}'", _editor.file())});
}

void refuseLogMessage(const Options& options)
{
    if (options.message || options.file || !options.revisionProperties.empty()) {
        fail(UnnecessaryLogMessage, "Local, non-commit operations do not take a log message or revision properties");
    }
}

HSVNPropertyMap revisionPropertiesOf(const Options& options)
{
    HSVNPropertyMap properties;
    for (const auto& property : options.revisionProperties) {
        properties[property.name] = property.value.value_or("");
    }
    return properties;
}
