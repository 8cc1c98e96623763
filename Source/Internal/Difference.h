#pragma once

#include "HSVNDiffOptions.h"
#include "HSVNDiffSection.h"
#include "Internal/ComparedText.h"
#include "Internal/Operation.h"

#include <vector>

/// Compares two or three texts.
///
/// @param texts  in the order of `HSVNDiffSide`
/// @return the sections in order
/// @throws HSVNException, HSVNStatusCode::DiffSourceModified, for a file that changed since its text was made
std::vector<HSVNDiffSection> HSVNSectionsOf(HSVNOperation& operation, std::vector<HSVNComparedText>& texts,
                                            const HSVNDiffOptions& options);

/// Writes the difference of two texts in the unified form into a stream; see `HSVNDiff::writeUnified`.
void HSVNWriteUnified(HSVNOperation& operation, svn_stream_t* out, std::vector<HSVNComparedText>& texts,
                      const HSVNDiffOptions& options, const std::vector<std::string>& labels,
                      const std::string& encoding);
