#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

using FuzzTarget = int (*)(const std::uint8_t* data, std::size_t size);

/// The fuzz targets of the program by name.
std::map<std::string, FuzzTarget>& fuzzTargets();

/// Enters a target at the program's start, under the name of its source.
struct EnteredFuzzTarget
{
    EnteredFuzzTarget(const std::string& source, FuzzTarget target)
    {
        const auto start = source.rfind('/') + 1;
        fuzzTargets()[source.substr(start, source.rfind('.') - start)] = target;
    }
};
