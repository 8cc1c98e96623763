#pragma once

#include <string>
#include <string_view>

/// Refuses a text that Subversion does not accept as the name of a property.
///
/// @throws HSVNException
void requirePropertyName(const std::string& name);

/// Refuses a name that is reserved without being known, or that is close to a known one, and tells which was meant.
///
/// @param isOfRevision  whether revisions, not files and folders, are to have the property
/// @param verb          what is to be done to the property
/// @throws HSVNException
void requireKnownPropertyName(const std::string& name, bool isOfRevision, const char* verb = "set");

/// Whether it is a property of Subversion's own: its value is text.
bool isOwnProperty(std::string_view name);
/// Whether the property holds by being there, whatever its value.
bool isBooleanProperty(std::string_view name);
/// Whether someone who sets such a property to the value seems to want it off.
bool looksLikeOff(std::string_view value);
