#pragma once

#include "HSVNReadingChoices.h"
#include "HSVNReceiver.h"
#include "HSVNTarget.h"
#include "Internal/BundleExtensions.h"
#include "Internal/Operation.h"

#include <string>
#include <utility>

/// The older revision and the younger one.
using HSVNDiffRevisions = std::pair<HSVNRevisionRef, HSVNRevisionRef>;

/// An item in two revisions, or two items each in its own, as Subversion takes them.
struct HSVNDiffEnds
{
    svn_opt_revision_t first;
    svn_opt_revision_t second;
};

HSVNDiffEnds HSVNEndsOf(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second);
/// @throws HSVNAssertionException "revision != nil"
HSVNDiffEnds HSVNEndsOf(const HSVNDiffRevisions& revisions);

/// The choices as Subversion takes them, in the operation's pool.
HSVNDifferenceFunctions::Comparing HSVNRecordOfChoices(const HSVNOperation& operation, const HSVNDiffChoices& choices);

/// Who takes a text, and how its headers are encoded.
struct HSVNDiffOutput
{
    const HSVNContentsReceiver& text;     ///< nil stands for the process's own stream
    const HSVNContentsReceiver& errors;   ///< as well
    const char* headerEncoding = nullptr; ///< null is the locale's
};

/// Writes how two items differ; the body of `diff` and `treeDiff`.
///
/// @throws HSVNUnsupportedFeatureException for a line before 1.11
void HSVNWriteDiff(HSVNOperation& operation, const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                   const HSVNDiffChoices& choices, const HSVNDiffOutput& output);
/// The same of one item in two revisions.
void HSVNWriteDiff(HSVNOperation& operation, const HSVNTargetInRevision& target, const HSVNDiffRevisions& revisions,
                   const HSVNDiffChoices& choices, const HSVNDiffOutput& output);

/// Writes how one item differs in two revisions into a file, by the place of the first table: without Git's headers,
/// and only as the choices allow it.
///
/// @param file  a path by which it can be opened
/// @throws HSVNUnsupportedFeatureException naming verb, choice and line
void HSVNWriteOlderDiff(HSVNOperation& operation, const HSVNTargetInRevision& target,
                        const HSVNDiffRevisions& revisions, const HSVNDiffChoices& choices, const std::string& file);
