#include "Internal/Properties.h"

#include "HSVNPropertyNames.h"
#include "HSVNStatusCodes.h"
#include "Internal/Browsing.h"
#include "Internal/Characters.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RecursionFlag.h"

#include <algorithm>
#include <fmt/format.h>
#include <svn_props.h>

namespace {

std::vector<std::pair<std::string, HSVNPropertyMap>> inheritedOf(const HSVNOperation& operation,
                                                                 const apr_array_header_t* array)
{
    std::vector<std::pair<std::string, HSVNPropertyMap>> inherited;
    for (int index = 0; array && index < array->nelts; ++index) {
        const auto* item = APR_ARRAY_IDX(array, index, const svn_prop_inherited_item_t*);
        inherited.emplace_back(item->path_or_url, HSVNPropertiesOfHash(operation, item->prop_hash));
    }
    return inherited;
}

using PropertiesCall = HSVNItemsCall<const HSVNItemProperties&>;

svn_error_t* receiveProperties(void* baton, const char* path, apr_hash_t* properties, apr_array_header_t* inherited,
                               apr_pool_t*)
{
    const auto& call = *static_cast<PropertiesCall*>(baton);
    return call.handOver([&] {
        return HSVNItemProperties{path, HSVNPropertiesOfHash(call.operation, properties),
                                  inheritedOf(call.operation, inherited)};
    });
}

/// What the places of the first table cannot tell.
bool recursionFlag(const HSVNOperation& operation, const HSVNPropertiesChoices& choices)
{
    operation.refuse(choices.inherited, "inherited");
    operation.refuse(!choices.changelists.empty(), "changelists");
    return HSVNRecursionFlag(operation, choices.depth);
}

void listProperties(HSVNOperation& operation, const char* target, const HSVNRevisionRecords& revisions, bool recurse,
                    const HSVNReceiver<const HSVNItemProperties&>& receiver)
{
    apr_array_header_t* items = nullptr;
    operation.check(operation->client_proplist2(&items, target, &revisions.peg, &revisions.operative, recurse,
                                                operation.ctx(), operation.pool()));
    if (!items) {
        throw HSVNException("svn_client_proplist2 returned null array");
    }
    for (int index = 0; index < items->nelts; ++index) {
        const auto* item = APR_ARRAY_IDX(items, index, const svn_client_proplist_item_t*);
        if (!item) {
            throw HSVNException("svn_client_proplist2 returned array with null item");
        }
        const std::string path{item->node_name->data, item->node_name->len};
        if (!receiver({path, HSVNPropertiesOfHash(operation, item->prop_hash), {}})) {
            return;
        }
    }
}

} // namespace

const char* HSVNCheckedPropertyName(const HSVNOperation& operation, const std::string& name)
{
    const char* const text = operation.cString(name);
    if (!HSVNIsPropertyName(name)) {
        HSVNException::exceptionWithReason(fmt::format("Bad property name: '{}'", HSVNText::quoted(name)),
                                           HSVNStatusCode::PropertyName)
            ->raise();
    }
    return text;
}

HSVNPropertyMap HSVNPropertiesOfHash(const HSVNOperation& operation, apr_hash_t* hash)
{
    HSVNPropertyMap properties;
    HSVNForEach<svn_string_t>(operation, hash, [&](std::string name, const svn_string_t* value) {
        properties.emplace(std::move(name), std::string{value->data, value->len});
    });
    return properties;
}

void HSVNReadProperties(HSVNOperation& operation, const std::string& target, const HSVNRevisionSpec& revision,
                        const HSVNPropertiesChoices& choices, const HSVNReceiver<const HSVNItemProperties&>& receiver)
{
    const char* const targetText = operation.cString(target);
    const HSVNRevisionRecords revisions{revision};
    operation.refuse(choices.inherited && !operation.isAtLeast({1, 8}), "inherited");
    if (!operation.isAtLeast(HSVNVersion::version1_5())) {
        recursionFlag(operation, choices);
    }
    if (const auto list = operation.newest(&HSVNPropertyFunctions::client_proplist)) {
        PropertiesCall call{operation, receiver};
        operation.check(list(targetText, &revisions.peg, &revisions.operative, HSVNDepthForSubversion(choices.depth),
                             HSVNFilterArray(operation, choices.changelists), choices.inherited, receiveProperties,
                             &call, operation.ctx(), operation.pool()));
        return;
    }
    listProperties(operation, targetText, revisions, recursionFlag(operation, choices), receiver);
}

HSVNPropertyValues HSVNReadProperty(HSVNOperation& operation, const std::string& target, const std::string& name,
                                    const HSVNRevisionSpec& revision, const HSVNPropertiesChoices& choices)
{
    const char* const nameText = HSVNCheckedPropertyName(operation, name);
    const char* const targetText = operation.cString(target);
    const HSVNRevisionRecords revisions{revision};
    apr_hash_t* values = nullptr;
    apr_array_header_t* inherited = nullptr;
    if (const auto get = operation.newest(&HSVNPropertyFunctions::client_propget)) {
        try {
            operation.check(get(&values, choices.inherited ? &inherited : nullptr, nameText, targetText, &revisions.peg,
                                &revisions.operative, HSVNDepthForSubversion(choices.depth),
                                HSVNFilterArray(operation, choices.changelists), operation.ctx(), operation.pool()));
        } catch (const HSVNUnversionedResourceException& exception) {
            // The place of the first table has this other name for it.
            throw HSVNNoSuchEntryException(exception.reason(), exception.userInfo());
        }
    } else {
        operation.check(operation->client_propget2(&values, nameText, targetText, &revisions.peg, &revisions.operative,
                                                   recursionFlag(operation, choices), operation.ctx(),
                                                   operation.pool()));
    }
    const auto byPath = HSVNPropertiesOfHash(operation, values);
    HSVNPropertyValues found{{byPath.begin(), byPath.end()}, inheritedOf(operation, inherited)};
    std::sort(found.values.begin(), found.values.end(),
              [](const auto& a, const auto& b) { return HSVNIsPathBefore(a.first, b.first); });
    return found;
}
