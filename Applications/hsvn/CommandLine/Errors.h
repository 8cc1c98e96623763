#pragma once

#include <HSVN/HSVN.h>

#include <cstdint>
#include <string>
#include <vector>

// Failures of the command line are HSVNExceptions with Subversion's own codes, so that they are printed as Subversion
// prints them.

// Subversion's codes by their bare names.
using enum HSVNStatusCode::Value;
/// SVN_ERR_COMPOSED_ERROR, "Additional errors:", which the library has no name for.
inline constexpr std::int32_t ComposedError = 200042;
/// SVN_ERR_BAD_CONFIG_VALUE, likewise.
inline constexpr std::int32_t BadConfigurationValue = 125009;

/// An exception with a code and a message.
HSVNException failure(std::int32_t code, const std::string& message);
/// The same with a cause below it.
HSVNException failure(std::int32_t code, const std::string& message, const HSVNException& cause);
/// Fails with a code and a message.
[[noreturn]] void fail(std::int32_t code, const std::string& message);
/// The same with a cause below it.
[[noreturn]] void fail(std::int32_t code, const std::string& message, const HSVNException& cause);
/// An exception with a further message on top, the code unchanged.
HSVNException wrapped(const HSVNException& exception, const std::string& message);
/// An exception with further messages below its innermost one, of the same code.
HSVNException extended(const HSVNException& exception, const std::vector<std::string>& messages);
/// The same exception, a text of its messages replaced.
HSVNException replaced(const HSVNException& exception, const std::string& text, const std::string& by);
/// One error of a chain.
struct ErrorLink
{
    std::int32_t code = 0;
    std::string message;
    const HSVNUserInfo* cause = nullptr; ///< what the next one is made of; null for the last
};
/// The exception's chain of errors, the outermost first; it points into the exception.
std::vector<ErrorLink> chainOf(const HSVNException& exception);
/// Whether an error of the chain has the code.
bool hasCause(const HSVNException& exception, std::int32_t code);

/// Says that the command line cannot be understood: the line or lines to print, without the program's name, in the
/// locale's encoding: what cannot be understood need not be text.
struct UsageError
{
    std::string message;
    bool isNamed = true; ///< begins with the program's name
    std::string helpTopic{};
};

/// Names the program in messages; set once, first.
void setProgramName(const std::string& name);
const std::string& programName();
