#pragma once

#include "Output/ConflictStatistics.h"

#include <HSVN/HSVN.h>

#include <cstddef>
#include <cstdint>
#include <string>

/// What the notifications belong to, where that changes how they read.
enum class NotifiedOperation
{
    Other,
    CheckOut,
    Export,
    CopyToRepository ///< of a working copy's items
};

/// Prints notifications as Subversion's command line does, and remembers what a subcommand must know at its end.
class NotificationPrinter
{
  public:
    /// @param isQuiet  nothing is printed but what is remembered
    explicit NotificationPrinter(bool isQuiet, NotifiedOperation operation = NotifiedOperation::Other)
        : _isQuiet{isQuiet}, _operation{operation}
    {
    }

    /// Prints nothing from now on.
    void beQuiet() { _isQuiet = true; }
    /// Leaves out the lines that begin and end an update or checkout.
    void leaveOutFirstAndLastLines() { _leavesOutFrame = true; }
    /// Says once, even when quiet, that a commit of limited depth makes the copies of folders whole all the same.
    void warnOfCopiesBelow(HSVNDepth depth) { _commitDepth = depth; }
    /// Prints one notification at once. A failure to write is told once; the operation goes on.
    void print(const HSVNNotification& notification);
    /// Prints the summary of conflicts, if there is anything to tell.
    void printConflictSummary() const;

    ConflictStatistics& conflicts() { return _conflicts; }
    const ConflictStatistics& conflicts() const { return _conflicts; }
    /// Fails when an external could not be served.
    void requireExternals() const;
    /// A failure of the subcommand itself, below that of externals when there is one.
    HSVNException withFailedExternals(const HSVNException& failure) const;
    /// Whether something was told as a warning, such as a lock that was not got.
    bool hasWarned() const { return _hasWarned; }

  private:
    std::string text(const HSVNNotification& notification);
    std::string textOfChange(const HSVNNotification& notification);
    std::string textOfCommit(const HSVNNotification& notification);
    std::string textOfResult(const HSVNNotification& notification);
    std::string addition(const HSVNNotification& notification);
    std::string existing(const HSVNNotification& notification);
    /// @param gap  how many blanks stand between the columns and the path
    std::string update(const HSVNNotification& notification, std::size_t gap);
    std::string completion(const HSVNNotification& notification);
    std::string endOfExternal();
    std::string completionLine(HSVNRevisionNumber revision, bool isExternal);
    std::string sending(const std::string& verb, const HSVNNotification& notification) const;
    void countConflicts(const HSVNNotification& notification);
    std::string copyWarning(const HSVNNotification& notification);
    void warn(const HSVNNotification& notification);

    bool _isQuiet;
    NotifiedOperation _operation;
    HSVNDepth _commitDepth = HSVNDepthInfinity;
    bool _leavesOutFrame = false;
    bool _hasChange = false;    // since the last line about a revision
    int _externalsUnderWay = 0; // those of externals are within these
    bool _isSendingText = false;
    bool _cannotWrite = false;
    bool _hasFailedExternal = false;
    bool _hasWarned = false;
    ConflictStatistics _conflicts;
};
