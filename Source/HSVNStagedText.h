#pragma once

#include "HSVNDiffSection.h"
#include "HSVNExport.h"
#include "HSVNReceiver.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Writes a text with only some of the changes that another one has, as a commit of a part of a file needs it: the
/// lines of the modified text for the sections that are chosen, those of the original one for all others. All sections
/// chosen give the modified text, none the original one.
///
/// @param original  the text before, such as a file's pristine one
/// @param modified  the text with all changes
/// @param sections  of the two, in order, as a comparison of two texts or the hunks of a patch have them; what lies
///                  between them is common
/// @param chosen    the places of sections in that list, in any order
/// @param receiver  takes the text piece by piece; not nil ("receiver != nil")
/// @throws HSVNInvalidArgumentException for sections that are not in order or not of these texts, and for a place that
///         is none; nothing is written then
///
/// Any thread; needs no bundle.
HSVN_EXPORT void HSVNWriteStagedText(std::string_view original, std::string_view modified,
                                     const std::vector<HSVNDiffSection>& sections,
                                     const std::vector<std::size_t>& chosen, const HSVNContentsReceiver& receiver);
/// The same as a text.
HSVN_EXPORT std::string HSVNStagedText(std::string_view original, std::string_view modified,
                                       const std::vector<HSVNDiffSection>& sections,
                                       const std::vector<std::size_t>& chosen);
