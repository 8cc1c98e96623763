// Runs the seeds of all fuzz targets, once each.
//
// usage: hsvn_fuzz_seeds FOLDER

#include "SeedReplay.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>

std::map<std::string, FuzzTarget>& fuzzTargets()
{
    static std::map<std::string, FuzzTarget> targets;
    return targets;
}

namespace {

struct Seed
{
    std::string name;
    std::string bytes;
};

/// The seeds in a file, each after a line "== NAME".
std::vector<Seed> seedsIn(const std::string& path)
{
    std::ifstream file{path, std::ios::binary};
    std::vector<Seed> seeds;
    bool isFirst = true;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("== ")) {
            seeds.push_back({line.substr(3), {}});
            isFirst = true;
        } else if (!seeds.empty()) {
            seeds.back().bytes += (isFirst ? "" : "\n") + line;
            isFirst = false;
        }
    }
    return seeds;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::cerr << "usage: hsvn_fuzz_seeds FOLDER\n";
        return 2;
    }
    bool areThereAll = !fuzzTargets().empty();
    for (const auto& [name, run] : fuzzTargets()) {
        const auto seeds = seedsIn(std::string{argv[1]} + '/' + name + ".seeds");
        for (const auto& seed : seeds) {
            std::cout << name << ' ' << seed.name << std::endl; // before a seed that ends the process
            run(reinterpret_cast<const std::uint8_t*>(seed.bytes.data()), seed.bytes.size());
        }
        if (seeds.empty()) {
            std::cerr << name << " has no seeds\n";
            areThereAll = false;
        }
    }
    return areThereAll ? 0 : 1;
}
