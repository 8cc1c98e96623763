#include "HSVNPropertyReading.h"

#include "Internal/Browsing.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"

#include <svn_props.h>

namespace {

std::string bytesOf(const svn_string_t& value) { return {value.data, value.len}; }

HSVNPropertyMap propertiesOf(const HSVNOperation& operation, apr_hash_t* hash)
{
    HSVNPropertyMap properties;
    HSVNForEach<svn_string_t>(operation, hash, [&](std::string name, const svn_string_t* value) {
        properties.emplace(std::move(name), bytesOf(*value));
    });
    return properties;
}

std::vector<std::pair<std::string, HSVNPropertyMap>> inheritedOf(const HSVNOperation& operation,
                                                                 const apr_array_header_t* array)
{
    std::vector<std::pair<std::string, HSVNPropertyMap>> inherited;
    for (int index = 0; array && index < array->nelts; ++index) {
        const auto* item = APR_ARRAY_IDX(array, index, const svn_prop_inherited_item_t*);
        inherited.emplace_back(item->path_or_url, propertiesOf(operation, item->prop_hash));
    }
    return inherited;
}

struct PropertiesCall
{
    HSVNOperation& operation;
    const HSVNItemPropertiesReceiver& receiver;
};

svn_error_t* receiveProperties(void* baton, const char* path, apr_hash_t* properties, apr_array_header_t* inherited,
                               apr_pool_t*)
{
    const auto& call = *static_cast<PropertiesCall*>(baton);
    return HSVNGuardCallback(*call.operation.context(), [&]() -> svn_error_t* {
        call.receiver({path, propertiesOf(call.operation, properties), inheritedOf(call.operation, inherited)});
        return nullptr;
    });
}

void store(HSVNRevisionNumber* number, svn_revnum_t value)
{
    if (number) {
        *number = HSVNRevisionNumberFromSubversion(value);
    }
}

} // namespace

void HSVNReadProperties(const std::string& target, const HSVNRevisionSpecRef& revision,
                        const HSVNPropertyReadingOptions& options, const HSVNItemPropertiesReceiver& receiver,
                        const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNPropertyReading",
                            "readProperties:revision:withOptions:receiver:withContext:",
                            {{"target", target}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_proplist);
    const HSVNRevisionRecords revisions{*revision};
    PropertiesCall call{operation, receiver};
    operation.check(function(operation.cString(target), &revisions.peg, &revisions.operative,
                             HSVNDepthForSubversion(options.depth), HSVNFilterArray(operation, options.changelists),
                             options.inherited, receiveProperties, &call, operation.ctx(), operation.pool()));
}

HSVNPropertyValues HSVNReadProperty(const std::string& name, const std::string& target,
                                    const HSVNRevisionSpecRef& revision, const HSVNPropertyReadingOptions& options,
                                    const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNPropertyReading",
                            "readProperty:target:revision:withOptions:withContext:",
                            {{"name", name}, {"target", target}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_propget);
    const HSVNRevisionRecords revisions{*revision};
    apr_hash_t* values = nullptr;
    apr_array_header_t* inherited = nullptr;
    operation.check(function(&values, options.inherited ? &inherited : nullptr, operation.cString(name),
                             operation.cString(target), &revisions.peg, &revisions.operative,
                             HSVNDepthForSubversion(options.depth), HSVNFilterArray(operation, options.changelists),
                             operation.ctx(), operation.pool()));
    const auto byPath = propertiesOf(operation, values);
    HSVNPropertyValues found{{byPath.begin(), byPath.end()}, inheritedOf(operation, inherited)};
    std::sort(found.values.begin(), found.values.end(),
              [](const auto& a, const auto& b) { return HSVNIsPathBefore(a.first, b.first); });
    return found;
}

HSVNPropertyMap HSVNReadRevisionProperties(const std::string& url, const HSVNRevisionRef& revision,
                                           HSVNRevisionNumber* number, const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNPropertyReading",
                            "readRevisionProperties:revision:number:withContext:",
                            {{"url", url}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_revprop_list);
    const auto record = revision->SVNRevision();
    apr_hash_t* properties = nullptr;
    svn_revnum_t found = HSVNInvalidRevision;
    operation.check(function(&properties, operation.cString(url), &record, &found, operation.ctx(), operation.pool()));
    store(number, found);
    return propertiesOf(operation, properties);
}

std::optional<std::string> HSVNReadRevisionProperty(const std::string& name, const std::string& url,
                                                    const HSVNRevisionRef& revision, HSVNRevisionNumber* number,
                                                    const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNPropertyReading",
                            "readRevisionProperty:url:revision:number:withContext:",
                            {{"name", name}, {"url", url}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_revprop_get);
    const auto record = revision->SVNRevision();
    svn_string_t* value = nullptr;
    svn_revnum_t found = HSVNInvalidRevision;
    operation.check(function(operation.cString(name), &value, operation.cString(url), &record, &found, operation.ctx(),
                             operation.pool()));
    store(number, found);
    return value ? std::optional{bytesOf(*value)} : std::nullopt;
}
