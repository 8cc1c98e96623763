#pragma once

#include <nlohmann/json.hpp>

/// Writes a document and the end of its line to standard output; bytes that are no text become U+FFFD.
void writeJSON(const nlohmann::ordered_json& document);

/// A document that is an array, whose elements are written one by one, as `writeJSON` would write all of them.
class JSONArray
{
  public:
    void add(const nlohmann::ordered_json& element);
    /// Ends the document. One that is left before, by a failure, lacks its end and is no JSON text.
    void finish();

  private:
    bool _isEmpty = true;
};
