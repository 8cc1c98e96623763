#include "Internal/Add.h"

#include "HSVNLocalPath.h"
#include "Internal/CanonicalPath.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RecursionFlag.h"

#include <filesystem>
#include <ranges>

namespace {

/// Adds the directories above an item that lie below one with an administrative area of its own, as each of a working
/// copy has on lines without a choice for them; none where there is no such.
void addParents(HSVNOperation& operation, const char* target)
{
    const std::filesystem::path item =
        HSVNCanonicalLocalPath(HSVNLocalPath::pathWithString(*target == '\0' ? "." : target))->string();
    std::vector<std::string> parents;
    auto parent = item.parent_path();
    for (std::error_code failure; !exists(parent / operation->wc_get_adm_dir(operation.pool()), failure);
         parent = parent.parent_path())
    {
        if (!parent.has_relative_path()) {
            return;
        }
        parents.push_back(parent);
    }
    for (const auto& path : std::views::reverse(parents)) {
        constexpr bool force = true; // where it is added already, nothing is to be done
        operation.check(
            operation->client_add3(operation.cString(path), false, force, true, operation.ctx(), operation.pool()));
    }
}

} // namespace

void HSVNAdd(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNAddChoices& choices)
{
    if (const auto add = operation.newest(&HSVNChangeFunctions::client_add)) {
        const svn_depth_t depth = HSVNDepthForSubversion(choices.depth);
        HSVNForEachText(targets, [&](const char* target) {
            operation.check(add(target, depth, choices.force, !choices.matchIgnorePatterns,
                                !choices.automaticProperties, choices.makeParents, operation.ctx(), operation.pool()));
        });
        return;
    }
    operation.refuse(!choices.automaticProperties, "automaticProperties");
    const bool recurse = HSVNRecursionFlag(operation, choices.depth);
    HSVNForEachText(targets, [&](const char* target) {
        if (choices.makeParents) {
            addParents(operation, target);
        }
        operation.check(operation->client_add3(target, recurse, choices.force, !choices.matchIgnorePatterns,
                                               operation.ctx(), operation.pool()));
    });
}
