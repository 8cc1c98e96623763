#pragma once

#include "HSVNContext.h"
#include "HSVNReceiver.h"
#include "HSVNRevisionSpec.h"

#include <functional>
#include <string>
#include <string_view>

/// Reads a file's contents in a revision.
///
/// @param target          a local path or a URL; see HSVNArguments
/// @param revision        not nil ("revision != nil")
/// @param expandKeywords  whether keywords and line ends are translated as in a working copy
/// @param receiver        called for each piece, in order; an exception stops the operation and reaches the caller;
///                        not nil ("receiver != nil")
/// @param context         not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_cat3; not offered by lines before 1.9.
HSVN_EXPORT void HSVNReadContents(const std::string& target, const HSVNRevisionSpecRef& revision, bool expandKeywords,
                                  const HSVNContentsReceiver& receiver, const HSVNContextRef& context);
