#pragma once

#include "HSVNComparison.h"
#include "HSVNDiffOptions.h"
#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNReceiver.h"
#include "HSVNTarget.h"

#include <cstddef>
#include <string>
#include <vector>

/// Two texts compared: the sections that they have in common, and those that are changed.
///
/// This is Subversion's own comparison on every line, whatever the texts hold. Other programs, such as the one that the
/// user's configuration names ("diff-cmd"), compare for `HSVNContext::diff` alone, where they are asked for.
class HSVN_EXPORT HSVNDiff : public HSVNComparison
{
  public:
    static constexpr const char* staticClassName = "HSVNDiff";

    /// Compares two files.
    ///
    /// @param original  a local path; it need not be versioned
    /// @param modified  as well
    /// @param context   not nil ("context != nil"), as in the operations below; used by its thread, and kept
    /// @param options   not nil ("options != nil"), as in the operations below
    /// @throws HSVNException for a URL, what cannot be read and what is no file
    /// Stands for svn_diff_file_diff_2.
    static HSVNDiff ofFiles(const HSVNTarget& original, const HSVNTarget& modified, const HSVNContextRef& context,
                            const HSVNDiffOptionsRef& options = HSVNDiffOptions::defaults());
    /// Compares two texts in memory, whatever bytes they are.
    ///
    /// Stands for svn_diff_mem_string_diff, on lines before 1.5 for svn_diff_file_diff_2 on files that nobody else can
    /// read.
    static HSVNDiff ofTexts(std::string original, std::string modified, const HSVNContextRef& context,
                            const HSVNDiffOptionsRef& options = HSVNDiffOptions::defaults());
    /// Compares two states of a versioned file, or two such files, as `HSVNContext::contents` reads them but with
    /// keywords as the repository has them, which is how Subversion compares. Without a revision a local path is what
    /// the working copy holds, and a URL HEAD.
    ///
    /// Stands for svn_client_cat3 (svn_client_cat2) and svn_diff_file_diff_2.
    static HSVNDiff ofItems(const HSVNTargetInRevision& original, const HSVNTargetInRevision& modified,
                            const HSVNContextRef& context,
                            const HSVNDiffOptionsRef& options = HSVNDiffOptions::defaults());

    /// Hands out the original text with only some of the differences, as a commit of a part of a file needs it: the
    /// modified text's lines of the sections that are chosen, the original's of all others.
    ///
    /// @param chosen    places in `sections`, in any order
    /// @param receiver  not nil ("receiver != nil")
    /// @throws HSVNInvalidArgumentException for a place that is none; nothing is handed out then
    void writeStaged(const std::vector<std::size_t>& chosen, const HSVNContentsReceiver& receiver) const;
    /// The same as one text.
    std::string staged(const std::vector<std::size_t>& chosen) const;

    /// Hands out the differences in the unified form; nothing where there are none. The texts are compared once more.
    ///
    /// @param originalLabel  of the header, UTF-8 without line ends, as the other one
    /// @param receiver       not nil ("receiver != nil")
    /// @param encoding       of header and signs in front of the lines, as iconv names it; ASCII must be the same in it
    /// @throws HSVNInvalidArgumentException for a label or an encoding that is none
    /// @throws HSVNUnsupportedFeatureException for functions or another number of context lines, `HSVNDiffOptions`, on
    ///         a line before 1.9
    /// Stands for svn_diff_file_output_unified4 (svn_diff_file_output_unified2).
    void writeUnified(const std::string& originalLabel, const std::string& modifiedLabel,
                      const HSVNContentsReceiver& receiver, const std::string& encoding = "UTF-8") const;

  private:
    using HSVNComparison::HSVNComparison;
};
