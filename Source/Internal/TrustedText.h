#pragma once

#include "HSVNPath.h"

#include <string>

/// The key to the constructors of paths that check nothing. Whoever uses it vouches for the text:
/// - it is UTF-8 without a NUL, and not empty;
/// - a local path is absolute, a URL escaped and of the RFC's form;
/// - it has no trailing "/", the roots "/" and "file:///" aside.
///
/// The texts that Subversion reports are such, and so is a child of a valid URL by an escaped name. What comes from an
/// application, an archive or a 1.4 working copy's copy-from URL is not.
struct HSVNPath::Trusted
{
};

/// The local path of a text that Subversion reports.
HSVNLocalPathRef HSVNLocalPathOfTrustedText(std::string path);
/// The URL of a text that Subversion reports.
HSVNURLRef HSVNURLOfTrustedText(std::string url);
