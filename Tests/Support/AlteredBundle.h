#pragma once

#include "HSVNBundleLoader.h"
#include "HSVNClient.h"
#include "Internal/BundleEntryPoints.h"

#include <functional>
#include <memory>
#include <string>

/// A bundle of the newest loaded line whose table a test alters, to see or to change what passes through it.
class AlteredBundle : public HSVNBundle
{
  public:
    /// @param alter  changes the table, which starts as a copy of the line's own
    explicit AlteredBundle(const std::function<void(HSVNBundleEntryPoints&)>& alter) : _table{original()}
    {
        alter(_table);
    }

    /// The line's own table.
    static const HSVNBundleEntryPoints& original()
    {
        return *HSVNBundleLoader::sharedInstance().newestBundle()->entryPoints();
    }

    std::string className() const override { return "AlteredBundle"; }
    const HSVNBundleEntryPoints* entryPoints() override { return &_table; }

  private:
    HSVNBundleEntryPoints _table;
};

/// A client of a line whose bundle offers no second table.
inline HSVNClientRef clientWithoutExtensions(const std::string& line)
{
    const auto client =
        std::make_shared<HSVNClient>(std::make_shared<AlteredBundle>([](HSVNBundleEntryPoints&) {}), nullptr);
    client->setBundleVersion(HSVNVersion::versionWithString(line));
    return client;
}
