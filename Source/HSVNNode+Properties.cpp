// Versioned properties of nodes: HSVNNode (Properties).

#include "HSVNException.h"
#include "HSVNNode.h"
#include "HSVNProperties.h"
#include "HSVNPropertyNames.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStringExternals.h"
#include "HSVNStringPaths.h"
#include "HSVNStringProperties.h"
#include "Internal/Browsing.h"
#include "Internal/Operation.h"

namespace {

void checkPropertyName(const std::string& name)
{
    HSVNAssertParameter(!name.empty(), "propName != nil && [propName length] > 0");
}

std::string valueOf(const svn_string_t& value) { return HSVNString::stringWithSVNString(&value); }

/// The entries of a hash of counted strings by C-string keys.
HSVNProperties::Map entriesOf(HSVNOperation& operation, apr_hash_t* hash)
{
    HSVNProperties::Map entries;
    for (apr_hash_index_t* index = operation->apr_hash_first(operation.pool(), hash); index;
         index = operation->apr_hash_next(index))
    {
        const void* key = nullptr;
        void* value = nullptr;
        operation->apr_hash_this(index, &key, nullptr, &value);
        entries.emplace(static_cast<const char*>(key), valueOf(*static_cast<const svn_string_t*>(value)));
    }
    return entries;
}

} // namespace

void HSVNNode::setProperty(const std::string& propName, const std::optional<std::string>& value,
                           const HSVNPathRef& path, const HSVNContextRef& context)
{
    checkPropertyName(propName);
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context,
        "HSVNNode",
        "setProperty:value:forNodeAtPath:withContext:",
        {{"propName", propName}, {"value", value.value_or("(null)")}, {"path", path}, {"context", context}}};
    const svn_string_t* counted = value ? HSVNString::SVNStringUsingPool(*value, operation.pool()) : nullptr;
    operation.check(operation->client_propset2(operation.cString(propName), counted, operation.changed(path->string()),
                                               FALSE, FALSE, operation.ctx(), operation.pool()));
}

std::optional<std::string> HSVNNode::propertyWithName(const std::string& propName, const HSVNPathRef& path,
                                                      const HSVNRevisionSpecRef& revision,
                                                      const HSVNContextRef& context)
{
    checkPropertyName(propName);
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNNode",
                            "propertyWithName:forNodeAtPath:forRevision:withContext:",
                            {{"propName", propName}, {"path", path}, {"revision", revision}, {"context", context}}};
    const HSVNRevisionRecords revisions{*revision};
    apr_hash_t* values = nullptr;
    operation.check(operation->client_propget2(&values, operation.cString(propName), operation.cString(path->string()),
                                               &revisions.peg, &revisions.operative, FALSE, operation.ctx(),
                                               operation.pool()));
    const auto entries = values ? entriesOf(operation, values) : HSVNProperties::Map{};
    return entries.empty() ? std::nullopt : std::optional{entries.begin()->second};
}

HSVNProperties HSVNNode::propertiesForNodeAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                                 const HSVNContextRef& context)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNNode",
                            "propertiesForNodeAtPath:forRevision:withContext:",
                            {{"path", path}, {"revision", revision}, {"context", context}}};
    const HSVNRevisionRecords revisions{*revision};
    apr_array_header_t* items = nullptr;
    operation.check(operation->client_proplist2(&items, operation.cString(path->string()), &revisions.peg,
                                                &revisions.operative, FALSE, operation.ctx(), operation.pool()));
    if (!items) {
        throw HSVNException("svn_client_proplist2 returned null array");
    }
    if (items->nelts == 0) {
        return {};
    }
    const auto* item = APR_ARRAY_IDX(items, 0, const svn_client_proplist_item_t*);
    if (!item) {
        throw HSVNException("svn_client_proplist2 returned array with null item");
    }
    return HSVNProperties{entriesOf(operation, item->prop_hash)};
}

std::vector<HSVNExternalDefinitionRef> HSVNNode::externalDefinitionsForNodeAtPath(const HSVNPathRef& path,
                                                                                  const HSVNRevisionSpecRef& revision,
                                                                                  const HSVNContextRef& context)
{
    const auto text = propertyWithName(HSVNPropertyExternals, path, revision, context);
    return text ? HSVNString::externalDefinitionListValue(*text) : std::vector<HSVNExternalDefinitionRef>{};
}

std::vector<std::string> HSVNNode::ignoredFilenamesForNodeAtPath(const HSVNPathRef& path,
                                                                 const HSVNRevisionSpecRef& revision,
                                                                 const HSVNContextRef& context)
{
    const auto text = propertyWithName(HSVNPropertyIgnore, path, revision, context);
    return text ? HSVNString::ignoreListValue(*text) : std::vector<std::string>{};
}

void HSVNNode::setIgnoredFilenames(const std::optional<std::vector<std::string>>& patterns, const HSVNPathRef& path,
                                   const HSVNContextRef& context)
{
    setProperty(HSVNPropertyIgnore, HSVNString::stringFromIgnoreList(patterns), path, context);
}
