#pragma once

#include "HSVNContext.h"
#include "HSVNRevisionSpec.h"
#include "HSVNTypes.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Properties by name; values are bytes, which for names that begin with "svn:" are UTF-8 text.
using HSVNPropertyMap = std::map<std::string, std::string>;

/// The properties of one item.
struct HSVNItemProperties
{
    std::string path;           ///< as the target was given, relative targets relative; a URL's item as a URL
    HSVNPropertyMap properties; ///< of the item itself
    /// What folders above the item set, the topmost first: each one's path or URL, and its properties.
    std::vector<std::pair<std::string, HSVNPropertyMap>> inherited;
};

/// Which items' properties are read.
struct HSVNPropertyReadingOptions
{
    HSVNDepth depth = HSVNDepthEmpty;     ///< how far below the target
    bool inherited = false;               ///< the target's inherited properties too
    std::vector<std::string> changelists; ///< only items of these; none means all
};

/// One property of several items.
struct HSVNPropertyValues
{
    std::vector<std::pair<std::string, std::string>> values;        ///< absolute path or URL and value, by path
    std::vector<std::pair<std::string, HSVNPropertyMap>> inherited; ///< as in `HSVNItemProperties`
};

using HSVNItemPropertiesReceiver = std::function<void(const HSVNItemProperties& item)>;

/// Reads all properties of items, none of those that have none.
///
/// @param target    a local path or a URL; see HSVNArguments
/// @param revision  not nil ("revision != nil")
/// @param receiver  called for each item; an exception stops the operation and reaches the caller;
///                  not nil ("receiver != nil")
/// @param context   not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_proplist4; not offered by lines before 1.8.
HSVN_EXPORT void HSVNReadProperties(const std::string& target, const HSVNRevisionSpecRef& revision,
                                    const HSVNPropertyReadingOptions& options,
                                    const HSVNItemPropertiesReceiver& receiver, const HSVNContextRef& context);

/// Reads one property of the items that have it; otherwise as `HSVNReadProperties`.
///
/// Stands for svn_client_propget5; not offered by lines before 1.8.
HSVN_EXPORT HSVNPropertyValues HSVNReadProperty(const std::string& name, const std::string& target,
                                                const HSVNRevisionSpecRef& revision,
                                                const HSVNPropertyReadingOptions& options,
                                                const HSVNContextRef& context);

/// Reads all unversioned properties of a revision.
///
/// @param url       any URL of the repository
/// @param revision  not nil ("revision != nil")
/// @param number    out: the revision's number; may be null
/// @param context   not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_revprop_list.
HSVN_EXPORT HSVNPropertyMap HSVNReadRevisionProperties(const std::string& url, const HSVNRevisionRef& revision,
                                                       HSVNRevisionNumber* number, const HSVNContextRef& context);

/// Reads one of them; nil when the revision does not have it. Stands for svn_client_revprop_get.
HSVN_EXPORT std::optional<std::string> HSVNReadRevisionProperty(const std::string& name, const std::string& url,
                                                                const HSVNRevisionRef& revision,
                                                                HSVNRevisionNumber* number,
                                                                const HSVNContextRef& context);
