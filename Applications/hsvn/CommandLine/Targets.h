#pragma once

#include "CommandLine/Session.h"

#include <optional>
#include <string>
#include <vector>

/// The targets of the command line and of --targets files, canonical, peg revisions kept; those that name Subversion's
/// own folder are left out with a message.
std::vector<std::string> targetsOf(Session& session);
/// The same with the current folder where there would be none.
std::vector<std::string> targetsOrCurrentFolder(Session& session);
/// The same of a subcommand that needs at least one.
///
/// @throws HSVNException "Not enough arguments provided"
std::vector<std::string> requiredTargets(Session& session);

/// Takes the first argument, which is no target, off the command line; fails when there is none.
std::string takeArgument(Session& session);

/// A target of a subcommand that takes "PATH@REV" arguments.
HSVNArguments::Pegged peggedTarget(Session& session, const std::string& target);
/// The targets of subcommands that take no peg revisions; a trailing "@" is taken off.
///
/// @throws HSVNException for a peg revision
std::vector<std::string> unpeggedTargets(const std::vector<std::string>& targets);
/// Fails for a URL among the targets.
void requireLocal(const std::vector<std::string>& targets);
/// The targets of subcommands that take local paths without a peg revision; a trailing "@" is taken off.
///
/// A peg revision is found before a URL; subcommands that look for URLs first call `requireLocal` before.
///
/// @throws HSVNException for a URL or a peg revision
std::vector<std::string> localTargets(const std::vector<std::string>& targets);

/// The same as `requiredTargets`, but fails unless they are all local or all URLs.
std::vector<std::string> requiredTargetsOfOneKind(Session& session);
/// Fails unless the targets are all local or all URLs.
void requireOneKind(const std::vector<std::string>& targets);

bool isURL(const std::string& target);
/// A path as it is shown: "." for the current folder.
std::string localStyle(std::string path);
/// What follows the folder in the path, without the "/", a part of the path's text; nil when the path is not the folder
/// or below it.
std::optional<std::string_view> pathBelow(std::string_view path, std::string_view folder);
/// Takes the current folder down, which the functions below tell paths from; done first.
void rememberCurrentFolder();
/// An absolute path below the current folder as relative to it, any other as it is.
std::string relativeToCurrentFolder(const std::string& path);
/// The absolute form of a canonical local path.
///
/// @throws HSVNException for a relative one where the current folder had been removed
std::string absolutePath(const std::string& path);
/// The way from a folder to a path, both absolute: "b/c", "../x", "" for the folder itself.
std::string relativePath(const std::string& path, const std::string& folder);
/// A folder and what stands below it, either of which may be empty.
std::string joined(const std::string& folder, const std::string& path);
/// The path without its last component.
std::string parentFolder(const std::string& path);
/// The deepest path that all of the absolute paths, at least one, are or lie below.
std::string commonFolder(const std::vector<std::string>& paths);
/// The last component.
std::string baseName(const std::string& path);
/// The last component of a URL, unescaped.
std::string nameOfURL(const std::string& url);
