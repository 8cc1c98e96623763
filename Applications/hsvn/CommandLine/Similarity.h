#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Whether two names have so much in common that one may be a misspelled form of the other.
bool areSimilar(std::string_view a, std::string_view b);

/// The known names that resemble a name, the most similar one first.
std::vector<std::string> namesLike(std::string_view name, std::span<const char* const> known);

/// "; did you mean 'NAME'?" behind a complaint about a name, where the user reads it at a terminal and known names
/// resemble it; else empty.
std::string suggestion(std::string_view name, std::span<const char* const> known, std::string_view prefix = "");

/// "'PREFIXa', 'PREFIXb' or 'PREFIXc'"
std::string choiceOf(const std::vector<std::string>& names, std::string_view prefix = "");
