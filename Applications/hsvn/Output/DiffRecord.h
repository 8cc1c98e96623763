#pragma once

#include <HSVN/HSVN.h>

#include <nlohmann/json.hpp>

/// One item of a comparison, with its sections' lines and what becomes of its properties.
nlohmann::ordered_json diffRecord(const HSVNPatchItem& item);
