#include "FuzzInput.h"

// Formats of log lines, with arguments of every kind.
HSVN_FUZZ_TARGET
{
    FuzzInput input{data, size};
    const std::string text = input.line();
    const std::string format = input.rest();
    const auto number = static_cast<std::int32_t>(text.size()) - 4;
    const std::size_t bound = format.size() * 1400 + 100 * text.size() * format.size() + 16;
    require(HSVNDebug::lineWithFormat(format).size() <= bound, "a line is bounded");
    require(HSVNDebug::lineWithFormat(format, text, number, 1e308 * number, HSVNVersion{1, number}, HSVNDate{number},
                                      std::optional<HSVNDate>{}, nullptr, text.size())
                    .size() <= bound,
            "a line is bounded");
    HSVNDebug::lineWithFormat(format, number, 'c', true, HSVNDepthFiles, INT64_MIN, UINT64_MAX, 0.5F);
    return 0;
}
