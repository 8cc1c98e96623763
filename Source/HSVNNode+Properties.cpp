// Versioned properties of nodes: HSVNNode (Properties).

#include "HSVNException.h"
#include "HSVNNode.h"
#include "HSVNProperties.h"
#include "HSVNPropertyNames.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStringExternals.h"
#include "HSVNStringPaths.h"
#include "HSVNStringProperties.h"
#include "Internal/Properties.h"
#include "Internal/SetProperty.h"

namespace {

void checkPropertyName(const std::string& name)
{
    HSVNAssertParameter(!name.empty(), "propName != nil && [propName length] > 0");
}

} // namespace

void HSVNNode::setProperty(const std::string& propName, const std::optional<std::string>& value,
                           const HSVNPathRef& path, const HSVNContextRef& context)
{
    checkPropertyName(propName);
    HSVNOperation operation{
        context,
        "HSVNNode",
        "setProperty:value:forNodeAtPath:withContext:",
        {{"propName", propName}, {"value", value.value_or("(null)")}, {"path", path}, {"context", context}}};
    HSVNSetProperty(operation, operation.pathArray(*path), propName, value, {});
}

std::optional<std::string> HSVNNode::propertyWithName(const std::string& propName, const HSVNPathRef& path,
                                                      const HSVNRevisionSpecRef& revision,
                                                      const HSVNContextRef& context)
{
    checkPropertyName(propName);
    HSVNOperation operation{context,
                            "HSVNNode",
                            "propertyWithName:forNodeAtPath:forRevision:withContext:",
                            {{"propName", propName}, {"path", path}, {"revision", revision}, {"context", context}}};
    const auto values = HSVNReadProperty(operation, path->string(), propName, *revision, {}).values;
    return values.empty() ? std::nullopt : std::optional{values.front().second};
}

HSVNProperties HSVNNode::propertiesForNodeAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                                 const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNNode",
                            "propertiesForNodeAtPath:forRevision:withContext:",
                            {{"path", path}, {"revision", revision}, {"context", context}}};
    HSVNProperties::Map properties;
    HSVNReadProperties(operation, path->string(), *revision, {}, [&](const HSVNItemProperties& item) {
        properties = item.properties;
        return false; // there is one item at most
    });
    return HSVNProperties{std::move(properties)};
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

void HSVNNode::setIgnoredFilenames(std::initializer_list<const char*> patterns, const HSVNPathRef& path,
                                   const HSVNContextRef& context)
{
    setProperty(HSVNPropertyIgnore, HSVNString::stringFromIgnoreList(patterns), path, context);
}
