#include "HSVNRepositoryInfo.h"

#include "HSVNURL.h"
#include "Internal/Text.h"

#include <fmt/format.h>

#include <utility>

HSVNRepositoryInfo::HSVNRepositoryInfo(std::optional<std::string> uuid, HSVNURLRef rootURL, HSVNRevisionNumber revision)
    : _uuid{std::move(uuid)}, _rootURL{std::move(rootURL)}, _revision{revision}
{
}

HSVNRepositoryInfoRef HSVNRepositoryInfo::infoForRepositoryWithUUID(std::optional<std::string> uuid, HSVNURLRef rootURL,
                                                                    HSVNRevisionNumber revision)
{
    return std::make_shared<HSVNRepositoryInfo>(std::move(uuid), std::move(rootURL), revision);
}

std::string HSVNRepositoryInfo::description() const
{
    return fmt::format("{{ {} UUID: {}, rootURL: {}, revision: {:d} }}", objectDescription(), HSVNDescription(_uuid),
                       HSVNDescription(_rootURL.get()), _revision);
}
