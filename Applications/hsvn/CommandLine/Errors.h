#pragma once

#include <HSVN/HSVN.h>

#include <cstdint>
#include <string>
#include <vector>

// Failures of the command line are HSVNExceptions with Subversion's own codes, so that they are printed as Subversion
// prints them.

/// Subversion's codes that the program itself raises or looks for.
enum ErrorCode : std::int32_t
{
    EndOfFile = 70014,
    BadFileName = 125001,
    BadURL = 125002,
    BadDate = 125003,
    BadPropertyValue = 125005,
    InconsistentLineEnds = 135000,
    PipeWrite = 135007,
    WorkingCopyLocked = 155004,
    WorkingCopyNotDirectory = 155007,
    WorkingCopyPathNotFound = 155010,
    LeftLocalModifications = 155012,
    ObstructedUpdate = 155000,
    FoundConflict = 155015,
    ConflictResolverFailure = 155027,
    InvalidSwitch = 155025,
    WorkingCopyUpgradeRequired = 155036,
    InvalidOperationDepth = 155038,
    IllegalURL = 170000,
    AuthenticationFailed = 215004,
    BadRevision = 195002,
    ClientModified = 195006,
    UnrelatedResources = 195012,
    InvalidMergeInfo = 195021,
    ClientIsDirectory = 195007,
    ClientIsBinaryFile = 195004,
    ClientBadRevision = 195008,
    EntryNotFound = 150000,
    EntryExists = 150002,
    NodeNotFound = 160013,
    NotDirectory = 160016,
    NotFile = 160017,
    PropertyName = 195011,
    General = 200000,
    UnversionedResource = 200005,
    MalformedNumber = 200004,
    UnsupportedFeature = 200007,
    IllegalTarget = 200009,
    PropertyNotFound = 200017,
    MalformedVersion = 200037,
    ExternalProgram = 200012,
    Cancelled = 200015,
    DatabaseBusy = 200033,
    ArgumentParsing = 205000,
    InsufficientArguments = 205001,
    MutuallyExclusiveArguments = 205002,
    LogMessageIsVersionedFile = 205004,
    LogMessageIsPath = 205005,
    NoEditor = 205007,
    BadLogMessage = 205008,
    UnnecessaryLogMessage = 205009,
    NoMergeTool = 205010,
    ExternalsProcessing = 205011
};

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
