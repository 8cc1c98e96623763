#include "HSVNDebug.h"

#include "Internal/Characters.h"
#include "Internal/Everlasting.h"
#include "Internal/HiddenPasswords.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <utility>

namespace {

std::int32_t levelFromEnvironment()
{
    const char* const value = std::getenv("SkerryLogLevel");
    constexpr std::array names{std::pair{"off", HSVNDebugLevelOff}, std::pair{"normal", HSVNDebugLevelNormal},
                               std::pair{"debug", HSVNDebugLevelDebug}, std::pair{"verbose", HSVNDebugLevelVerbose}};
    for (const auto& [name, level] : names) {
        if (value && HSVNText::equalIgnoringCase(value, name)) {
            return level;
        }
    }
    return HSVNDebugLevelNormal;
}

spdlog::logger& systemLog()
{
    static const HSVNEverlasting<std::shared_ptr<spdlog::logger>> log{[] {
        auto made = std::make_shared<spdlog::logger>(program_invocation_short_name,
                                                     std::make_shared<spdlog::sinks::stderr_sink_mt>());
        made->set_level(spdlog::level::info);
        made->set_pattern("%Y-%m-%d %H:%M:%S.%e %n[%P:%t] %v");
        return made;
    }()};
    return **log;
}

} // namespace

std::int32_t HSVNDebug::level()
{
    static const std::int32_t level = levelFromEnvironment();
    return level;
}

void HSVNDebug::write(std::string_view format, std::initializer_list<HSVNDebugArgument> arguments)
{
    systemLog().info("{}", HSVNWithHiddenPasswords(filled(format, arguments)));
}

std::optional<std::string> HSVNDebugSubstring(const std::optional<std::string>& text, std::size_t maxLength)
{
    if (!text) {
        return std::nullopt;
    }
    const std::string_view kept = HSVNText::prefix(*text, maxLength);
    std::string result;
    for (const char character : kept) {
        result += character == '\n' ? std::string_view{"\\n"} : std::string_view{&character, 1};
    }
    return kept.size() < text->size() ? result + "..." : result;
}
