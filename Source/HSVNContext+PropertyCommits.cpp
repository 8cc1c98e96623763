#include "HSVNContext.h"
#include "Internal/PropertyValue.h"
#include "Internal/RevisionChange.h"

HSVNCommitResult HSVNContext::setProperty(const HSVNTarget& url, HSVNRevisionNumber base, const std::string& name,
                                          const std::optional<std::string>& value,
                                          const HSVNCommitPropertyChoices& choices,
                                          const HSVNReceiver<const HSVNCommitResult&>& receiver)
{
    HSVNRevisionChange change{*this,
                              "setProperty",
                              {{"url", url.text()}, {"base", base}, {"name", name}},
                              choices.message,
                              choices.revisionProperties,
                              receiver};
    auto& operation = change.operation();
    const auto function = operation.extension(&HSVNPropertyFunctions::client_propset_remote);
    return change.finish(function(operation.cString(name), HSVNPropertyValue{value}.get(),
                                  operation.changed(url.text()), choices.force, base, change.properties(),
                                  HSVNRevisionChange::received, &change, operation.ctx(), operation.pool()));
}
