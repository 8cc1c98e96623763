#pragma once

#include "HSVNContext.h"
#include "HSVNException.h"
#include "HSVNRevisionSpec.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Targets and revisions as Subversion's own command line takes them: as text.
///
/// A target is a local path, absolute or relative to the current folder ("" is the folder itself), or a URL. The
/// operations that take such targets report relative ones relative, and their messages name them as Subversion's do.
/// They refuse a target with a NUL or an escaped zero byte in it (HSVNInvalidArgumentException, HSVNException), and,
/// where the target is to be changed, one in the administrative area of a working copy (HSVNException,
/// `HSVNStatusCode::ReservedFileName`).
namespace HSVNArguments {

/// Arguments made canonical.
struct List
{
    /// The targets in the order of the arguments, UTF-8.
    std::vector<std::string> targets{};
    /// What was left out because it names Subversion's administrative folder; null when nothing was.
    HSVNExceptionRef skipped{};
};

/// A target with the peg revision that its text ends in.
struct Pegged
{
    /// Without the peg revision; still escaped when it is a URL.
    std::string target{};
    HSVNRevisionRef pegRevision{}; ///< UNSPECIFIED without one
};

/// Makes arguments canonical: "^/" becomes the repository's root, URLs are escaped, peg revisions stay.
///
/// @param arguments  UTF-8, as a user gives them
/// @param context    not nil ("context != nil")
/// @throws HSVNException for an argument that cannot be a target
/// Stands for svn_client_args_to_target_array2, or what the line has in its place; lines before 1.6 know no "^/".
HSVN_EXPORT List canonicalTargets(const std::vector<std::string>& arguments, const HSVNContextRef& context);

/// Takes a peg revision ("path@5", "path@") off a canonical target.
///
/// @param context  not nil ("context != nil")
/// @throws HSVNException for a text after the last "@" that is no revision
/// Stands for svn_opt_parse_path.
HSVN_EXPORT Pegged parse(const std::string& target, const HSVNContextRef& context);

/// Reads "REV" or "REV:REV" as Subversion's command line does: a number, HEAD, BASE, COMMITTED, PREV or {DATE}.
///
/// @param context  not nil ("context != nil")
/// @return the two revisions, the second UNSPECIFIED when there is one only; nil for a text of another form
/// Stands for svn_opt_parse_revision.
HSVN_EXPORT std::optional<std::pair<HSVNRevisionRef, HSVNRevisionRef>> parseRevisions(const std::string& text,
                                                                                      const HSVNContextRef& context);

} // namespace HSVNArguments
