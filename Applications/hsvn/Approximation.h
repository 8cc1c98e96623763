#pragma once

#include <optional>
#include <string>
#include <string_view>

/// UTF-8 text in ASCII letters as good as they can say it: accents are dropped, dashes and quotation marks become plain
/// ones, and any other character its number, "{U+03B1}". Nil for a text that is not UTF-8.
std::optional<std::string> approximation(std::string_view text);
