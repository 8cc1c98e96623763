#pragma once

#include "HSVNDiffOptions.h"
#include "HSVNDiffSection.h"
#include "Internal/ComparedText.h"
#include "Internal/Operation.h"

#include <cstdint>
#include <string>
#include <vector>

/// Compares two or three texts.
///
/// @param texts  in the order of `HSVNDiffSide`
/// @return the sections in order
/// @throws HSVNException, HSVNStatusCode::DiffSourceModified, for a file that changed since its text was made
std::vector<HSVNDiffSection> HSVNSectionsOf(HSVNOperation& operation, std::vector<HSVNComparedText>& texts,
                                            const HSVNDiffOptions& options);

/// What a unified text is like beyond the options.
struct HSVNUnifiedForm
{
    const std::string& originalLabel;
    const std::string& modifiedLabel;
    const std::string& encoding;
    std::int32_t contextLines; ///< as the options have them, or fewer
};

/// Writes the difference of two texts in the unified form into a stream; see `HSVNDiff::writeUnified`.
void HSVNWriteUnified(HSVNOperation& operation, svn_stream_t* out, std::vector<HSVNComparedText>& texts,
                      const HSVNDiffOptions& options, const HSVNUnifiedForm& form);
