#include "Output/JSON.h"

#include "Output/Output.h"

#include <string>

namespace {

constexpr int indentation = 2;

std::string textOf(const nlohmann::ordered_json& document)
{
    return document.dump(indentation, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace

void writeJSON(const nlohmann::ordered_json& document) { Output::writeBytes(textOf(document) + '\n'); }

void JSONArray::add(const nlohmann::ordered_json& element)
{
    const std::string lineStart = '\n' + std::string(indentation, ' ');
    std::string text = textOf(element);
    // A line end within a string is written as an escape.
    for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n', end + lineStart.size())) {
        text.replace(end, 1, lineStart);
    }
    Output::writeBytes((_isEmpty ? "[" : ",") + lineStart + text);
    _isEmpty = false;
}

void JSONArray::finish() { Output::writeBytes(_isEmpty ? "[]\n" : "\n]\n"); }
