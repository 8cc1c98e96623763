#include "CanonicalPaths.h"
#include "ExtensionTable.h"

#include <svn_auth.h>
#include <svn_config.h>
#if HSVN_LINE_MINOR >= 9
#include <svn_base64.h>
#include <svn_checksum.h>
#include <svn_time.h>
#include <svn_x509.h>
#endif

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 8
svn_error_t* walkCredentials(HSVNAuthenticationFunctions::CredentialReceiver receiver, void* baton,
                             svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const void* const given =
        ctx->auth_baton ? svn_auth_get_parameter(ctx->auth_baton, SVN_AUTH_PARAM_CONFIG_DIR) : nullptr;
    const char* folder = nullptr;
    SVN_ERR(svn_config_get_user_config_path(&folder, static_cast<const char*>(given), nullptr, pool));
    if (folder == nullptr) { // no home, so nothing is stored
        return nullptr;
    }
    return svn_config_walk_auth_data(folder, receiver, baton, pool);
}
#endif

#if HSVN_LINE_MINOR >= 9
svn_error_t* certificateDetails(HSVNAuthenticationFunctions::CertificateDetails* details, const svn_string_t* text,
                                apr_pool_t* pool)
{
    const svn_string_t* const bytes = svn_base64_decode_string(text, pool);
    svn_x509_certinfo_t* certificate = nullptr;
    SVN_ERR(svn_x509_parse_cert(&certificate, bytes->data, bytes->len, pool, pool));
    *details = {.subject = svn_x509_certinfo_get_subject(certificate, pool),
                .issuer = svn_x509_certinfo_get_issuer(certificate, pool),
                .validFrom = svn_time_to_human_cstring(svn_x509_certinfo_get_valid_from(certificate), pool),
                .validTo = svn_time_to_human_cstring(svn_x509_certinfo_get_valid_to(certificate), pool),
                .fingerprint = svn_checksum_to_cstring_display(svn_x509_certinfo_get_digest(certificate), pool),
                .hostnames = svn_x509_certinfo_get_hostnames(certificate)};
    return nullptr;
}
#endif

} // namespace

void fillStoredCredentials([[maybe_unused]] HSVNAuthenticationFunctions& table)
{
#if HSVN_LINE_MINOR >= 8
    table.config_walk_credentials = walkCredentials;
#endif
#if HSVN_LINE_MINOR >= 9
    table.certificate_details = certificateDetails;
#endif
}

} // namespace HSVNAdapter
