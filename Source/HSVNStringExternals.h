#pragma once

#include "HSVNExport.h"
#include "HSVNExternalDefinition.h"
#include "HSVNTextTable.h"
#include "HSVNVersion.h"

#include <memory>
#include <string>
#include <vector>

/// Conversions between the text of an externals property and its definitions.
namespace HSVNString {

/// The definitions of an externals text, in order, in any of Subversion's spellings.
///
/// @throws HSVNInvalidExternalsDescriptionException for a text that Subversion cannot parse
/// Stands for svn_wc_parse_externals_description3 of the newest loaded bundle.
HSVN_EXPORT std::vector<HSVNExternalDefinitionRef> externalDefinitionListValue(const std::string& text);

/// The text of a list, as an aligned table in the oldest format that can express it. Names and URLs with blanks are
/// quoted, and dates are written in braces, so that the text reads back as the same list but for two things: a revision
/// that is unspecified reads back as what Subversion takes for it, and the format of 1.4 takes the operative revision
/// of a definition without a peg revision for both.
///
/// @param definitions  none of them nil
HSVN_EXPORT std::string stringFromExternalDefinitionList(const std::vector<HSVNExternalDefinitionRef>& definitions);
/// The same in the oldest format that keeps the meaning of every definition: that of 1.5, too, where an item is to be
/// found in HEAD and fetched as it was in another revision.
HSVN_EXPORT std::string
exactStringFromExternalDefinitionList(const std::vector<HSVNExternalDefinitionRef>& definitions);

/// The oldest line whose format can express a definition: 1.5 for a relative URL or a peg revision of its own,
/// else 1.4.
///
/// @param definition  must not be nil ("definition != nil")
HSVN_EXPORT HSVNVersion formatVersionForExternalDefinition(const HSVNExternalDefinitionRef& definition);
/// The oldest line whose format can express all of them; 1.4 for none.
HSVN_EXPORT HSVNVersion formatVersionForExternalDefinitions(const std::vector<HSVNExternalDefinitionRef>& definitions);

/// The table that `stringFromExternalDefinitionList` prints: one row a definition, in the format of a line.
HSVN_EXPORT std::shared_ptr<HSVNTextTable>
textTableFromExternalDefinitions(const std::vector<HSVNExternalDefinitionRef>& definitions, const HSVNVersion& format);
/// Appends a definition's row; neither may be nil ("definition != nil", "table != nil").
HSVN_EXPORT void addExternalDefinition(const HSVNExternalDefinitionRef& definition,
                                       const std::shared_ptr<HSVNTextTable>& table, const HSVNVersion& format);

} // namespace HSVNString
