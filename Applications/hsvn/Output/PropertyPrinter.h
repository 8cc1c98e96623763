#pragma once

#include "CommandLine/Session.h"
#include "Output/XML.h"

#include <nlohmann/json.hpp>
#include <string>

// How `propget` and `proplist` show properties.

/// Names, or names and indented values.
void printProperties(const HSVNPropertyMap& properties, bool withValues);
/// A value alone, as it is; of Subversion's own properties as text in the locale's encoding.
void printValue(const std::string& name, const std::string& value);
/// Elements of names, or of names and values, of which Subversion's own are shown as text.
void addProperties(XML& xml, const char* element, const HSVNPropertyMap& properties, bool withValues);
/// A value; bytes that are no text as base64 in an object that says so.
nlohmann::ordered_json propertyValueRecord(const std::string& value);
/// Values by name.
nlohmann::ordered_json propertyRecord(const HSVNPropertyMap& properties);

/// The URL and the revision that an operation on a revision property is about.
struct RevisionPropertyTarget
{
    std::string url;
    HSVNRevisionRef revision;
};

/// @throws HSVNException for more than one target, or without a revision that has such properties
RevisionPropertyTarget revisionPropertyTarget(Session& session, const std::vector<std::string>& targets);
