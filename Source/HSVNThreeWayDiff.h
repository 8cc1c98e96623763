#pragma once

#include "HSVNComparison.h"
#include "HSVNDiffOptions.h"
#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNReceiver.h"
#include "HSVNTarget.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What stands for a section in a merged text.
enum class HSVNMergePart : std::uint8_t
{
    Automatic, ///< what changed, from whichever side; markers around both sides of a conflict
    Base,
    Mine,
    Theirs,
    MineThenTheirs,
    TheirsThenMine,
    Other ///< a text of the caller's
};

/// The choice for one section. A plain value.
struct HSVNSectionChoice
{
    HSVNMergePart part = HSVNMergePart::Automatic; ///< what stands for it
    std::string text{}; ///< with `HSVNMergePart::Other` alone: bytes that are taken as they are
};

/// The lines that stand around the sides of a conflict, without their ends. A plain value.
struct HSVNConflictMarkers
{
    std::string mine = "<<<<<<< mine";     ///< before the lines of mine
    std::string base = "||||||| base";     ///< before those of the base
    std::string separator = "=======";     ///< before those of theirs
    std::string theirs = ">>>>>>> theirs"; ///< behind those of theirs
    bool showsBase = true;                 ///< whether the base's lines are shown between those of mine and theirs
};

/// Two texts compared with one that both come from: what either changed, what both changed alike, and what is in
/// conflict. Lines before 1.5 offer it, too.
class HSVN_EXPORT HSVNThreeWayDiff : public HSVNComparison
{
  public:
    static constexpr const char* staticClassName = "HSVNThreeWayDiff";

    /// Compares three files.
    ///
    /// @param base     a local path; nil is an empty file
    /// @param mine     a local path
    /// @param theirs   a local path
    /// @param context  not nil ("context != nil"), as in the operations below; used by its thread
    /// @param options  not nil ("options != nil"), as in the operations below
    /// @throws HSVNException for a URL, what cannot be read and what is no file
    /// Stands for svn_diff_file_diff3_2.
    static HSVNThreeWayDiff ofFiles(const std::optional<HSVNTarget>& base, const HSVNTarget& mine,
                                    const HSVNTarget& theirs, const HSVNContextRef& context,
                                    const HSVNDiffOptionsRef& options = HSVNDiffOptions::defaults());
    /// Compares three texts in memory, whatever bytes they are.
    ///
    /// Stands for svn_diff_mem_string_diff3, on lines before 1.5 for svn_diff_file_diff3_2 on files that nobody else
    /// can read.
    static HSVNThreeWayDiff ofTexts(std::string base, std::string mine, std::string theirs,
                                    const HSVNContextRef& context,
                                    const HSVNDiffOptionsRef& options = HSVNDiffOptions::defaults());
    /// Compares states of versioned files; see `HSVNDiff::ofItems`.
    static HSVNThreeWayDiff ofItems(const HSVNTargetInRevision& base, const HSVNTargetInRevision& mine,
                                    const HSVNTargetInRevision& theirs, const HSVNContextRef& context,
                                    const HSVNDiffOptionsRef& options = HSVNDiffOptions::defaults());

    /// Whether any section is in conflict.
    bool hasConflicts() const;

    /// Hands out the merged text piece by piece. Of common sections, and of those that both changed alike, mine is
    /// taken, where the options let them differ at all. Markers end as the first line of mine does.
    ///
    /// @param choices   for each section, in order; what has none is `Automatic`, and common sections have no choice
    /// @param receiver  not nil ("receiver != nil")
    /// Stands for svn_diff_file_output_merge3.
    void merge(const std::vector<HSVNSectionChoice>& choices, const HSVNConflictMarkers& markers,
               const HSVNContentsReceiver& receiver) const;
    /// The same as one text.
    std::string merged(const std::vector<HSVNSectionChoice>& choices = {},
                       const HSVNConflictMarkers& markers = {}) const;

    /// Hands out the conflicts alone, with up to three lines of the merged text before and after each and the lines'
    /// numbers behind the markers. Text left out between two of them is shown as "@@".
    ///
    /// @param receiver  not nil ("receiver != nil")
    /// Stands for svn_diff_file_output_merge3 and its style "only conflicts".
    void showConflicts(const HSVNConflictMarkers& markers, const HSVNContentsReceiver& receiver) const;

  private:
    using HSVNComparison::HSVNComparison;
};
