#include "HSVNCommitItem.h"

#include "HSVNLocalPath.h"
#include "HSVNPathWithRevision.h"
#include "HSVNURL.h"

#include <fmt/format.h>

std::string HSVNCommitItem::description() const
{
    return fmt::format(
        "{{ {} path: {}, url: {}, revision: {:d}, actions: {:#010x}, nodeKind: {:d}, locked: {}, copySource: {} }}",
        objectDescription(), HSVNDescription(_path.get()), HSVNDescription(_url.get()), _revision, _actions,
        std::int32_t{_nodeKind}, _locked ? "YES" : "NO", HSVNDescription(_copySource.get()));
}
