#pragma once

#include <nlohmann/json.hpp>

/// Writes a document and the end of its line to standard output; bytes that are no text become U+FFFD.
void writeJSON(const nlohmann::ordered_json& document);
