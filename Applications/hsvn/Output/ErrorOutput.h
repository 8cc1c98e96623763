#pragma once

#include "CommandLine/Errors.h"

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
