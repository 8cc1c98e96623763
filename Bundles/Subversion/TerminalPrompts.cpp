#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "StandIns.h"

#include <algorithm>
#include <string_view>
#include <svn_cmdline.h>

namespace HSVNAdapter {
namespace {

/// What the prompts of an authentication baton are given.
struct Prompting
{
    HSVNAuthenticationFunctions::CancelFunction cancel;
    void* baton;
    void (*before)() noexcept;
};

/// Cancels for the prompts; they are known by it.
svn_error_t* cancelPrompt(void* baton)
{
    const auto& prompting = *static_cast<const Prompting*>(baton);
    return prompting.cancel == nullptr ? SVN_NO_ERROR : prompting.cancel(prompting.baton);
}

svn_error_t* createAuthBaton(svn_auth_baton_t** baton, const HSVNAuthenticationFunctions::Authentication* choices,
                             svn_config_t* config, HSVNAuthenticationFunctions::CancelFunction cancel,
                             void* cancelBaton, apr_pool_t* pool)
{
    const char* folder = choices->configFolder;
    SVN_ERR(checkConfigurationFolder(&folder, pool));
    auto* const prompting = static_cast<Prompting*>(apr_palloc(pool, sizeof(Prompting)));
    *prompting = {cancel, cancelBaton, choices->beforePrompt};
#if HSVN_LINE_MINOR >= 9
    return svn_cmdline_create_auth_baton2(
        baton, choices->nonInteractive, choices->username, choices->password, folder, choices->noAuthCache,
        choices->trustUnknownAuthority, choices->trustHostnameMismatch, choices->trustExpired,
        choices->trustNotYetValid, choices->trustOther, config, cancelPrompt, prompting, pool);
#elif HSVN_LINE_MINOR >= 6
    return svn_cmdline_create_auth_baton(baton, choices->nonInteractive, choices->username, choices->password, folder,
                                         choices->noAuthCache, choices->trustUnknownAuthority, config, cancelPrompt,
                                         prompting, pool);
#else
    return svn_cmdline_setup_auth_baton(baton, choices->nonInteractive, choices->username, choices->password, folder,
                                        choices->noAuthCache, config, cancelPrompt, prompting, pool);
#endif
}

} // namespace
} // namespace HSVNAdapter

void HSVNAdapter::fillTerminalPrompts(HSVNAuthenticationFunctions& table)
{
    table.cmdline_create_auth_baton = createAuthBaton;
}

#ifdef HSVN_STANDS_IN_FRONT

// Subversion's own questions on the terminal hold what a server says of itself: nothing of that controls the terminal
// or reads as another question.

namespace {

using namespace HSVNAdapter;

void prepare(void* baton)
{
    const auto* const prompt = static_cast<const svn_cmdline_prompt_baton2_t*>(baton);
    if (prompt != nullptr && prompt->cancel_func == cancelPrompt) {
        if (const auto before = static_cast<const Prompting*>(prompt->cancel_baton)->before) {
            before();
        }
    }
}

/// How a character at the start of a UTF-8 text is shown, and its size; of one that is shown as it is, nothing.
struct Shown
{
    const char* text = nullptr;
    std::size_t size = 1;
};

Shown firstShown(std::string_view text, apr_pool_t* pool)
{
    const auto at = [&](std::size_t index) {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
    };
    constexpr unsigned rest = 0x3f; // the bits of a byte that goes on
    const unsigned first = at(0);
    const unsigned ofTwo = (first & 0x1f) << 6 | (at(1) & rest);
    const unsigned ofThree = (first & 0x0f) << 12 | (at(1) & rest) << 6 | (at(2) & rest);
    if (first < ' ' || first == 0x7f) {
        return {apr_psprintf(pool, "?\\%03u", first)};
    }
    if (first == 0xc2 && ofTwo < 0xa0) {
        return {apr_psprintf(pool, "?\\%03u?\\%03u", first, at(1)), 2};
    }
    if (first == 0xd8 && ofTwo == 0x061c) {
        return {apr_psprintf(pool, "{U+%04X}", ofTwo), 2};
    }
    const bool isDeceptive = ofThree == 0x200e || ofThree == 0x200f || (ofThree >= 0x2028 && ofThree <= 0x202e) ||
                             (ofThree >= 0x2066 && ofThree <= 0x2069);
    return first == 0xe2 && isDeceptive ? Shown{apr_psprintf(pool, "{U+%04X}", ofThree), 3} : Shown{};
}

/// A text without what controls a terminal, ends a line or turns its direction: control characters become ?\NNN, as
/// Subversion writes what it cannot show, the others {U+NNNN}.
const char* shown(const char* text, apr_pool_t* pool)
{
    if (text == nullptr) {
        return nullptr;
    }
    auto* const result = svn_stringbuf_create_empty(pool);
    for (std::string_view left{text}; !left.empty();) {
        const Shown first = firstShown(left, pool);
        if (first.text != nullptr) {
            svn_stringbuf_appendcstr(result, first.text);
        } else {
            svn_stringbuf_appendbyte(result, left[0]);
        }
        left.remove_prefix(std::min(first.size, left.size()));
    }
    return result->data;
}

} // namespace

HSVN_STAND_IN(svn_error_t*, svn_cmdline_auth_simple_prompt)
(svn_auth_cred_simple_t** credentials, void* baton, const char* realm, const char* username, svn_boolean_t maySave,
 apr_pool_t* pool)
{
    prepare(baton);
    return HSVN_BEHIND(svn_cmdline_auth_simple_prompt)(credentials, baton, shown(realm, pool), username, maySave, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_cmdline_auth_username_prompt)
(svn_auth_cred_username_t** credentials, void* baton, const char* realm, svn_boolean_t maySave, apr_pool_t* pool)
{
    prepare(baton);
    return HSVN_BEHIND(svn_cmdline_auth_username_prompt)(credentials, baton, shown(realm, pool), maySave, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_cmdline_auth_ssl_server_trust_prompt)
(svn_auth_cred_ssl_server_trust_t** credentials, void* baton, const char* realm, apr_uint32_t failures,
 const svn_auth_ssl_server_cert_info_t* certificate, svn_boolean_t maySave, apr_pool_t* pool)
{
    prepare(baton);
    svn_auth_ssl_server_cert_info_t told = *certificate;
    for (auto field : {&svn_auth_ssl_server_cert_info_t::hostname, &svn_auth_ssl_server_cert_info_t::issuer_dname,
                       &svn_auth_ssl_server_cert_info_t::valid_from, &svn_auth_ssl_server_cert_info_t::valid_until})
    {
        told.*field = shown(told.*field, pool);
    }
    return HSVN_BEHIND(svn_cmdline_auth_ssl_server_trust_prompt)(credentials, baton, shown(realm, pool), failures,
                                                                 &told, maySave, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_cmdline_auth_ssl_client_cert_prompt)
(svn_auth_cred_ssl_client_cert_t** credentials, void* baton, const char* realm, svn_boolean_t maySave, apr_pool_t* pool)
{
    prepare(baton);
    return HSVN_BEHIND(svn_cmdline_auth_ssl_client_cert_prompt)(credentials, baton, shown(realm, pool), maySave, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_cmdline_auth_ssl_client_cert_pw_prompt)
(svn_auth_cred_ssl_client_cert_pw_t** credentials, void* baton, const char* realm, svn_boolean_t maySave,
 apr_pool_t* pool)
{
    prepare(baton);
    return HSVN_BEHIND(svn_cmdline_auth_ssl_client_cert_pw_prompt)(credentials, baton, shown(realm, pool), maySave,
                                                                   pool);
}

HSVN_STAND_IN(svn_error_t*, svn_cmdline_auth_plaintext_prompt)
(svn_boolean_t* mayStore, const char* realm, void* baton, apr_pool_t* pool)
{
    prepare(baton);
    return HSVN_BEHIND(svn_cmdline_auth_plaintext_prompt)(mayStore, shown(realm, pool), baton, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_cmdline_auth_plaintext_passphrase_prompt)
(svn_boolean_t* mayStore, const char* realm, void* baton, apr_pool_t* pool)
{
    prepare(baton);
    return HSVN_BEHIND(svn_cmdline_auth_plaintext_passphrase_prompt)(mayStore, shown(realm, pool), baton, pool);
}

#endif
