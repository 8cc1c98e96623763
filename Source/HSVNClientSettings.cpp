#include "HSVNClientSettings.h"

#include "HSVNClient.h"
#include "Internal/CString.h"
#include "Internal/Client.h"
#include "Internal/ExtensionCall.h"

namespace {

const char* textOrNull(const HSVNOperation& operation, const std::optional<std::string>& text)
{
    return text ? operation->apr_pstrdup(operation.context()->pool(), HSVNCString(*text)) : nullptr;
}

/// Whether it is the system that keeps the configuration area from being used: the client can do without one then.
bool isRefusedBySystem(const svn_error_t* error)
{
    return APR_STATUS_IS_EACCES(error->apr_err) || APR_STATUS_IS_ENOTDIR(error->apr_err);
}

HSVNExceptionRef readConfiguration(const HSVNOperation& operation, HSVNClient& client, const char* folder)
{
    if (svn_error_t* const error = operation->config_ensure(folder, operation.pool())) {
        operation->error_clear(error); // an area that cannot be made is no failure
    }
    svn_error_t* const error = HSVNClientInternals::readConfiguration(client, folder);
    if (!error) {
        return nullptr;
    }
    const bool refused = isRefusedBySystem(error);
    auto exception = HSVNException::exceptionWithError(error);
    if (!refused) {
        exception->raise();
    }
    HSVNClientInternals::clearConfiguration(client);
    return exception;
}

/// The configuration's part of a category; null when there is none.
svn_config_t* configOf(const HSVNOperation& operation, const std::string& category)
{
    return static_cast<svn_config_t*>(
        operation->apr_hash_get(operation.ctx()->config, HSVNCString(category), APR_HASH_KEY_STRING));
}

void apply(const HSVNConfigurationOption& option, const HSVNOperation& operation)
{
    if (option.value) {
        operation.context()->setOption(*option.value, option.name, option.category, option.section);
    } else if (svn_config_t* const config = configOf(operation, option.category)) {
        operation->config_set(config, HSVNCString(option.section), HSVNCString(option.name), nullptr);
    }
}

HSVNAuthenticationFunctions::Authentication authenticationOf(const HSVNOperation& operation,
                                                             const HSVNClientSettings& settings, const char* directory)
{
    return {settings.prompts != HSVNPrompts::Terminal,
            textOrNull(operation, settings.username),
            textOrNull(operation, settings.password),
            directory,
            settings.noAuthCache,
            settings.trustUnknownAuthority,
            settings.trustHostnameMismatch,
            settings.trustExpired,
            settings.trustNotYetValid,
            settings.trustOtherFailures,
            settings.beforePrompt};
}

/// Older lines trust no certificate that fails for a reason which they have no choice for.
void refuseTrust(const HSVNOperation& operation, const HSVNClientSettings& settings)
{
    operation.refuse(settings.trustUnknownAuthority && !operation.isAtLeast({1, 6}), "trustUnknownAuthority");
    const bool isAtLeast1_9 = operation.isAtLeast({1, 9});
    operation.refuse(settings.trustHostnameMismatch && !isAtLeast1_9, "trustHostnameMismatch");
    operation.refuse(settings.trustExpired && !isAtLeast1_9, "trustExpired");
    operation.refuse(settings.trustNotYetValid && !isAtLeast1_9, "trustNotYetValid");
    operation.refuse(settings.trustOtherFailures && !isAtLeast1_9, "trustOtherFailures");
}

} // namespace

void HSVNClient::applySettings(const HSVNClientSettings& settings)
{
    HSVNOperation operation{*this, "applySettings", {}};
    operation.requireOutermost("settings");
    const bool asksDelegate = settings.prompts == HSVNPrompts::Delegate;
    const auto setDefaults =
        asksDelegate ? operation.extension(&HSVNAuthenticationFunctions::auth_set_defaults) : nullptr;
    const auto openForTerminal =
        asksDelegate ? nullptr : operation.extension(&HSVNAuthenticationFunctions::cmdline_create_auth_baton);
    if (settings.prompts == HSVNPrompts::Nobody) {
        refuseTrust(operation, settings);
    }
    const char* const directory = textOrNull(operation, settings.configurationDirectory);
    const auto refused = readConfiguration(operation, *this, directory);
    if (asksDelegate && !refused) {
        ignoreIcons();
    }
    for (const auto& option : settings.options) {
        if (!refused) {
            apply(option, operation);
        }
    }
    const auto authentication = authenticationOf(operation, settings, directory);
    if (asksDelegate) {
        setupAuthentication();
        operation.check(setDefaults(ctx()->auth_baton, &authentication, pool()));
    } else {
        operation.check(openForTerminal(&ctx()->auth_baton, &authentication,
                                        configOf(operation, HSVNConfigCategoryConfig), ctx()->cancel_func,
                                        ctx()->cancel_baton, pool()));
    }
    if (refused) {
        refused->raise();
    }
}
