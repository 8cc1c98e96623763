#pragma once

#include "CommandLine/Options.h"

#include <nlohmann/json.hpp>
#include <string>

/// The single facts that `info --show-item` can print.
enum class InfoItem : std::uint8_t
{
    Kind,
    URL,
    RelativeURL,
    RepositoryRootURL,
    RepositoryUUID,
    RepositorySize,
    Revision,
    LastChangedRevision,
    LastChangedDate,
    LastChangedAuthor,
    WorkingCopyRoot,
    Schedule,
    Depth,
    Changelist
};

/// @throws HSVNException for a name that is none
InfoItem infoItemNamed(const std::string& name);

/// The paragraph of one item.
void printInfo(const HSVNItemInfo& info, const Options& options);
/// One fact, followed by what tells its item from the others when several items are printed.
void printInfoItem(const HSVNItemInfo& info, InfoItem item, const Options& options,
                   const std::optional<std::string>& name);
void printInfoXML(const HSVNItemInfo& info);
nlohmann::ordered_json infoRecord(const HSVNItemInfo& info);
