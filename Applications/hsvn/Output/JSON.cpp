#include "Output/JSON.h"

#include "Output/Output.h"

void writeJSON(const nlohmann::ordered_json& document)
{
    Output::writeBytes(document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
}
