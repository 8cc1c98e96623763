#pragma once

#include <HSVN/HSVN.h>

#include <cstdint>
#include <string>
#include <vector>

// Failures of the command line are HSVNExceptions with Subversion's own codes, so that they are printed as Subversion
// prints them.

// Subversion's codes by their bare names.
using enum HSVNStatusCode::Value;

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

/// Prints the chain of errors, as "PROGRAM: E155007: message" lines.
void printError(const HSVNException& exception);
/// The same with another text before the codes.
void printError(const HSVNException& exception, const std::string& prefix);
/// Prints the errors of an operation that a signal ended.
void printInterruption(const HSVNException& exception);
/// Prints "PROGRAM: warning: W155007: message", the outermost error only.
void printWarning(const HSVNException& exception);
/// The same, of the innermost error only.
void printWarningOfRoot(const HSVNException& exception);
/// Prints the whole chain in that form.
void printWarnings(const HSVNException& exception);

/// Says why an editor or a merge tool could not be used; rethrows what is another failure.
void reportFailedProgram(const HSVNException& exception);

/// Gathers what went wrong with some of several targets, so that the others are still served.
class TargetFailures
{
  public:
    /// @param isQuiet  nothing is printed of what is remembered
    explicit TargetFailures(bool isQuiet = false) : _isQuiet{isQuiet} {}
    /// Runs the body; an error with one of the codes is printed as a warning and remembered.
    ///
    /// @return whether there was none
    template <class Body>
    bool attempt(const std::vector<std::int32_t>& tolerated, Body body)
    {
        try {
            body();
            return true;
        } catch (const HSVNException& exception) {
            tolerate(exception, tolerated);
            return false;
        }
    }
    bool any() const { return !_codes.empty(); }
    /// The codes of what went wrong, each once, in the order in which they were met.
    const std::vector<std::int32_t>& codes() const { return _codes; }

  private:
    void tolerate(const HSVNException& exception, const std::vector<std::int32_t>& tolerated);

    bool _isQuiet;
    std::vector<std::int32_t> _codes;
};
