#include "Commands/PropertyWarnings.h"

#include "CommandLine/NativeText.h"
#include "CommandLine/PropertyNames.h"
#include "CommandLine/Targets.h"
#include "CommandLine/TextFiles.h"
#include "Output/ErrorOutput.h"
#include "Output/Output.h"
#include "Output/Words.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <string_view>
#include <system_error>

namespace {

constexpr std::int32_t badMIMEType = 125004; // SVN_ERR_BAD_MIME_TYPE, which the library has no name for

bool isControl(char character) { return (character >= '\0' && character < ' ') || character == '\x7f'; }

bool isOfMediaType(char character)
{
    return character > ' ' && character < '\x7f' &&
           std::string_view{"()<>@,;:\\\"/[]?="}.find(character) == std::string_view::npos;
}

/// The media type stands before any parameters.
void requireMIMEType(const std::string& type)
{
    const std::string media = type.substr(0, type.find_first_of("; "));
    const auto slash = media.find('/');
    if (media.empty()) {
        fail(badMIMEType, fmt::format("MIME type '{}' has empty media type", type));
    }
    if (slash == std::string::npos) {
        fail(badMIMEType, fmt::format("MIME type '{}' does not contain '/'", type));
    }
    for (std::size_t index = 0; index < media.size(); ++index) {
        if (index != slash && !isOfMediaType(media[index])) {
            fail(badMIMEType,
                 fmt::format("MIME type '{}' contains invalid character '{}' in media type", type, media[index]));
        }
    }
    for (const char character : type) {
        if (isControl(character) && character != '\t') {
            fail(badMIMEType,
                 fmt::format("MIME type '{}' contains invalid character '0x{:02x}' in postfix", type, int{character}));
        }
    }
}

std::string withoutOuterSpace(const std::string& text)
{
    constexpr const char* space = " \t\n\v\f\r";
    const auto first = text.find_first_not_of(space);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(space) - first + 1);
}

/// Links count, whatever they lead to.
bool isFile(const std::string& target)
{
    std::error_code ignored;
    const auto status = std::filesystem::symlink_status(NativeText::fromUTF8(localStyle(target)), ignored);
    return std::filesystem::is_regular_file(status) || std::filesystem::is_symlink(status);
}

bool looksLikeText(Session& session, const std::string& target)
{
    const auto type =
        HSVNNode::MIMETypeForNodeAtPath(HSVNLocalPath::pathWithString(absolutePath(target)), session.client());
    return !type || !isBinaryMIMEType(*type);
}

} // namespace

void warnOfBinaryType(Session& session, const std::string& name, const std::string& value,
                      const std::vector<std::string>& targets)
{
    if (name != "svn:mime-type") {
        return;
    }
    const std::string type = withoutOuterSpace(value);
    for (const auto& target : targets) {
        if (isURL(target) || !isFile(target)) {
            continue;
        }
        requireMIMEType(type);
        if (isBinaryMIMEType(type) && looksLikeText(session, target)) {
            Output::writeError(fmt::format("{}: warning: '{}' is a binary mime-type but file '{}' looks like text; "
                                           "diff, merge, blame, and other operations will stop working on this file\n",
                                           programName(), type, absolutePath(target)));
        }
    }
}

void warnOfOff(const std::string& name, const std::string& value)
{
    if (isBooleanProperty(name) && looksLikeOff(value)) {
        printWarning(failure(BadPropertyValue, fmt::format("To turn off the {} property, use '{} propdel';\n"
                                                           "setting the property to '{}' will not turn it off.",
                                                           name, programName(), value)));
    }
}
