#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

/// How many rounds a test makes: a variable of the environment makes it larger by hand.
inline std::uint32_t numberFromEnvironment(const char* variable, std::uint32_t usual)
{
    const char* const text = std::getenv(variable);
    return text ? static_cast<std::uint32_t>(std::stoul(text)) : usual;
}
