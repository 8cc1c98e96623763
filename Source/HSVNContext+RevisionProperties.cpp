#include "HSVNContext.h"
#include "Internal/Properties.h"
#include "Internal/PropertyValue.h"
#include "Internal/RevisionNumber.h"

namespace {

void store(HSVNRevisionNumber* number, svn_revnum_t value)
{
    if (number) {
        *number = HSVNRevisionNumberFromSubversion(value);
    }
}

} // namespace

std::map<std::string, std::string>
HSVNContext::revisionProperties(const HSVNTarget& url, const HSVNRevisionRef& revision, HSVNRevisionNumber* number)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNOperation operation{*this, "revisionProperties", {{"url", url.text()}, {"revision", revision}}};
    const auto record = revision->SVNRevision();
    apr_hash_t* properties = nullptr;
    svn_revnum_t found = HSVNInvalidRevision;
    operation.call(&HSVNPropertyFunctions::client_revprop_list, &properties, operation.cString(url.text()), &record,
                   &found, operation.ctx(), operation.pool());
    store(number, found);
    return HSVNPropertiesOfHash(operation, properties);
}

std::optional<std::string> HSVNContext::revisionProperty(const HSVNTarget& url, const std::string& name,
                                                         const HSVNRevisionRef& revision, HSVNRevisionNumber* number)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNOperation operation{*this, "revisionProperty", {{"url", url.text()}, {"name", name}, {"revision", revision}}};
    const auto record = revision->SVNRevision();
    svn_string_t* value = nullptr;
    svn_revnum_t found = HSVNInvalidRevision;
    operation.call(&HSVNPropertyFunctions::client_revprop_get, HSVNCheckedPropertyName(operation, name), &value,
                   operation.cString(url.text()), &record, &found, operation.ctx(), operation.pool());
    store(number, found);
    return value ? std::optional{std::string{value->data, value->len}} : std::nullopt;
}

HSVNRevisionNumber HSVNContext::setRevisionProperty(const HSVNTarget& url, const std::string& name,
                                                    const std::optional<std::string>& value,
                                                    const HSVNRevisionRef& revision,
                                                    const HSVNSetRevisionPropertyChoices& choices)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNOperation operation{
        *this, "setRevisionProperty", {{"url", url.text()}, {"name", name}, {"revision", revision}}};
    const char* const nameText = operation.cString(name);
    const char* const urlText = operation.cString(url.text());
    const auto record = revision->SVNRevision();
    svn_revnum_t number = HSVNInvalidRevision;
    if (choices.formerValue) {
        operation.call(&HSVNPropertyFunctions::client_revprop_replace, nameText, HSVNPropertyValue{value}.get(),
                       HSVNPropertyValue{*choices.formerValue}.get(), urlText, &record, &number, choices.force,
                       operation.ctx(), operation.pool());
    } else {
        operation.call(&HSVNPropertyFunctions::client_revprop_set, nameText, HSVNPropertyValue{value}.get(), urlText,
                       &record, &number, choices.force, operation.ctx(), operation.pool());
    }
    return HSVNRevisionNumberFromSubversion(number);
}
