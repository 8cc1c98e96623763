#pragma once

#include "HSVNComparison.h"
#include "HSVNDiffOptions.h"
#include "HSVNForward.h"
#include "HSVNTarget.h"
#include "Internal/ComparedText.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// @throws HSVNInvalidArgumentException when one is nil
void HSVNRequireComparison(const HSVNContextRef& context, const HSVNDiffOptionsRef& options);

/// What a comparison holds.
struct HSVNComparison::Parts
{
    std::vector<HSVNComparedText> texts; ///< in the order of `HSVNDiffSide`
    HSVNContextRef context;
    HSVNDiffOptionsRef options;
    std::vector<HSVNDiffSection> sections{};

    HSVNComparedText& text(HSVNDiffSide side);

    /// Compares the texts.
    ///
    /// @param className  of the comparison, for the debug line as the name of the operation
    static std::unique_ptr<Parts> compared(std::string_view className, std::string_view name,
                                           std::vector<HSVNComparedText> texts, const HSVNContextRef& context,
                                           const HSVNDiffOptionsRef& options);
};

/// The texts of a comparison one after the other; `make` makes each of an element.
template <class Make, class... Elements>
std::vector<HSVNComparedText> HSVNComparedTexts(Make make, Elements&&... elements)
{
    std::vector<HSVNComparedText> texts;
    texts.reserve(sizeof...(elements));
    (texts.push_back(make(std::forward<Elements>(elements))), ...);
    return texts;
}

/// The text of a local file.
///
/// @throws HSVNException for a URL, what cannot be read and what is no file
HSVNComparedText HSVNTextOfFile(const HSVNTarget& file);
