#include "HSVNContext.h"
#include "HSVNException.h"
#include "HSVNStringProperties.h"
#include "Internal/CString.h"
#include "Internal/Characters.h"
#include "Internal/ContextUse.h"
#include "Internal/Pool.h"

#include <fmt/format.h>

namespace {

constexpr const char* defaultGlobalIgnores =
    "*.o *.lo *.la *.al .libs *.so *.so.[0-9]* *.a *.pyc *.pyo *.rej *~ #*# .#* .*.swp .DS_Store";

/// A category of the client context's configuration; null when it is missing or no configuration is loaded.
svn_config_t* configuration(const svn_client_ctx_t* ctx, const std::string& category)
{
    if (!ctx || !ctx->config) {
        return nullptr;
    }
    return static_cast<svn_config_t*>(
        HSVNCurrentEntryPoints().apr_hash_get(ctx->config, HSVNCString(category), APR_HASH_KEY_STRING));
}

/// Options on their way out of Subversion's enumeration.
struct OptionList
{
    std::map<std::string, std::string> options;
    std::exception_ptr failure;
};

svn_boolean_t collectOption(const char* name, const char* value, void* baton)
{
    auto& list = *static_cast<OptionList*>(baton);
    try {
        list.options.insert_or_assign(HSVNText::decoded(name), HSVNText::decoded(value));
        return true;
    } catch (...) {
        list.failure = std::current_exception();
        return false;
    }
}

} // namespace

std::optional<std::string> HSVNContext::optionForName(const std::string& name, const std::string& category,
                                                      const std::string& section,
                                                      const std::optional<std::string>& defaultValue) const
{
    const HSVNContextUse use{*this};
    const HSVNBundleScope scope{_bundle};
    svn_config_t* const config = configuration(_ctx, category);
    if (!config) {
        return defaultValue;
    }
    const char* value = nullptr;
    HSVNCurrentEntryPoints().config_get(config, &value, HSVNCString(section), HSVNCString(name),
                                        defaultValue ? HSVNCString(*defaultValue) : nullptr);
    return value ? std::optional{HSVNText::decoded(value)} : std::nullopt;
}

void HSVNContext::setOption(const std::string& value, const std::string& name, const std::string& category,
                            const std::string& section)
{
    const HSVNContextUse use{*this};
    const HSVNBundleScope scope{_bundle};
    svn_config_t* const config = configuration(_ctx, category);
    if (!config) {
        HSVNException::exceptionWithReason(fmt::format("Couldn't find configuration category '{}'", category))->raise();
    }
    HSVNCurrentEntryPoints().config_set(config, HSVNCString(section), HSVNCString(name), HSVNCString(value));
}

std::map<std::string, std::string> HSVNContext::optionsForCategory(const std::string& category,
                                                                   const std::string& section) const
{
    const HSVNContextUse use{*this};
    const HSVNBundleScope scope{_bundle};
    OptionList list;
    if (svn_config_t* const config = configuration(_ctx, category)) {
        HSVNCurrentEntryPoints().config_enumerate(config, HSVNCString(section), collectOption, &list);
    }
    if (list.failure) {
        std::rethrow_exception(list.failure);
    }
    return std::move(list.options);
}

std::optional<std::string> HSVNContext::globalIgnoreString() const
{
    return optionForName(HSVNConfigOptionGlobalIgnores, HSVNConfigCategoryConfig, HSVNConfigSectionMiscellany,
                         defaultGlobalIgnores);
}

std::vector<std::string> HSVNContext::globalIgnoreList() const
{
    const auto text = globalIgnoreString();
    return text ? HSVNString::ignoreListValue(*text) : std::vector<std::string>{};
}
