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

/// Whether Subversion accepts a text as a MIME type: of what stands before any parameters, it wants one "/".
bool isMIMEType(std::string_view text)
{
    const auto type = text.substr(0, text.find_first_of("; "));
    return std::count(type.begin(), type.end(), '/') == 1 && std::all_of(type.begin(), type.end(), [](char character) {
               return character > ' ' && character < '\x7f' &&
                      std::string_view{"()<>@,;:\\\"[]?="}.find(character) == std::string_view::npos;
           });
}

bool looksLikeText(Session& session, const std::string& target)
{
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(NativeText::fromUTF8(localStyle(target)), ignored)) {
        return false;
    }
    const auto type =
        HSVNNode::MIMETypeForNodeAtPath(HSVNLocalPath::pathWithString(absolutePath(target)), session.client());
    return !type || !isBinaryMIMEType(*type);
}

} // namespace

void warnOfBinaryType(Session& session, const std::string& name, const std::string& value,
                      const std::vector<std::string>& targets)
{
    const auto types = split(value, "\n");
    if (name != "svn:mime-type" || types.empty() || !isMIMEType(types.front()) || !isBinaryMIMEType(types.front())) {
        return;
    }
    for (const auto& target : targets) {
        if (!isURL(target) && looksLikeText(session, target)) {
            Output::writeError(fmt::format("{}: warning: '{}' is a binary mime-type but file '{}' looks like text; "
                                           "diff, merge, blame, and other operations will stop working on this file\n",
                                           programName(), types.front(), absolutePath(target)));
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
