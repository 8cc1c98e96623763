#include "HSVNDiff.h"

#include "HSVNPlatformException.h"
#include "Internal/Characters.h"
#include "Internal/ChosenSections.h"
#include "Internal/ComparisonParts.h"
#include "Internal/ContentsStream.h"
#include "Internal/Difference.h"
#include "Internal/NodeText.h"
#include "Internal/PathText.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <iconv.h>

namespace {

void requireLabel(const std::string& label)
{
    HSVNPathText::requireText(label);
    if (label.find_first_of("\r\n") != std::string::npos) {
        throw HSVNInvalidArgumentException(fmt::format("The label \"{}\" has a line end in it", label));
    }
}

/// From UTF-8 to an encoding.
class Converter
{
  public:
    explicit Converter(const std::string& encoding) : _handle{::iconv_open(encoding.c_str(), "UTF-8")} {}
    ~Converter()
    {
        if (isOpen()) {
            ::iconv_close(_handle);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool isOpen() const { return _handle != reinterpret_cast<iconv_t>(-1); } // NOLINT(performance-no-int-to-ptr)
    iconv_t get() const { return _handle; }

  private:
    iconv_t _handle;
};

/// Subversion writes header and signs as texts that a zero byte ends.
void requireEncoding(const std::string& encoding)
{
    std::array<char, 2> sign{'+', '\0'};
    std::array<char, 8> converted{};
    auto* in = sign.data();
    auto* out = converted.data();
    std::size_t inSize = 1;
    std::size_t outSize = converted.size();
    const Converter converter{encoding};
    const bool isConverted = converter.isOpen() && ::iconv(converter.get(), &in, &inSize, &out, &outSize) == 0;
    if (!isConverted || out != converted.data() + 1 || converted[0] != sign[0]) {
        throw HSVNInvalidArgumentException(
            fmt::format("\"{}\" is no encoding in which ASCII is the same", HSVNText::quoted(encoding)));
    }
}

} // namespace

HSVNDiff HSVNDiff::ofFiles(const HSVNTarget& original, const HSVNTarget& modified, const HSVNContextRef& context,
                           const HSVNDiffOptionsRef& options)
{
    HSVNRequireComparison(context, options);
    return HSVNDiff{Parts::compared(
        staticClassName, "diffOfFiles:", HSVNComparedTexts(HSVNTextOfFile, original, modified), context, options)};
}

HSVNDiff HSVNDiff::ofTexts(std::string original, std::string modified, const HSVNContextRef& context,
                           const HSVNDiffOptionsRef& options)
{
    HSVNRequireComparison(context, options);
    return HSVNDiff{Parts::compared(
        staticClassName, "diffOfTexts:",
        HSVNComparedTexts(HSVNComparedText::ofBytes, std::move(original), std::move(modified)), context, options)};
}

HSVNDiff HSVNDiff::ofItems(const HSVNTargetInRevision& original, const HSVNTargetInRevision& modified,
                           const HSVNContextRef& context, const HSVNDiffOptionsRef& options)
{
    HSVNRequireComparison(context, options);
    const auto textOf = [&context](const HSVNTargetInRevision& item) { return HSVNTextOfItem(item, context); };
    return HSVNDiff{Parts::compared(staticClassName, "diffOfItems:", HSVNComparedTexts(textOf, original, modified),
                                    context, options)};
}

void HSVNDiff::writeUnified(const std::string& originalLabel, const std::string& modifiedLabel,
                            const HSVNContentsReceiver& receiver, const std::string& encoding) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    requireLabel(originalLabel);
    requireLabel(modifiedLabel);
    requireEncoding(encoding);
    HSVNOperation operation{parts().context,
                            staticClassName,
                            "writeUnified:",
                            {{"originalLabel", originalLabel}, {"modifiedLabel", modifiedLabel}}};
    const HSVNContentsStream stream{operation, receiver};
    // More lines than the texts have make no difference, but Subversion counts all of them.
    const auto lines = sections().empty()
                           ? std::int64_t{0}
                           : std::max(sections().back().original.end(), sections().back().modified.end());
    HSVNWriteUnified(operation, stream, parts().texts, *parts().options,
                     {originalLabel, modifiedLabel, encoding,
                      static_cast<std::int32_t>(std::min<std::int64_t>(parts().options->contextLines(), lines))});
}

void HSVNDiff::writeStaged(const std::vector<std::size_t>& chosen, const HSVNContentsReceiver& receiver) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    const auto marks = HSVNChosenSections(chosen, sections().size());
    bool goesOn = true;
    for (std::size_t place = 0; goesOn && place < marks.size(); ++place) {
        const auto side = marks[place] ? HSVNDiffSide::Modified : HSVNDiffSide::Original;
        goesOn = parts().text(side).readPieces(sections()[place].lines(side), receiver);
    }
}

std::string HSVNDiff::staged(const std::vector<std::size_t>& chosen) const
{
    std::string text;
    writeStaged(chosen, [&text](std::string_view piece) { text += piece; });
    return text;
}
