#include "EntryPointTable.h"

namespace HSVNAdapter {
namespace {

void openAuthentication(svn_auth_baton_t** baton, const apr_array_header_t* providers, apr_pool_t* pool)
{
    // Older lines take the array without const; none of them writes to it.
    svn_auth_open(baton, const_cast<apr_array_header_t*>(providers), pool);
}

} // namespace

void fillAuthentication(HSVNBundleEntryPoints& table)
{
    table.client_get_simple_provider = svn_client_get_simple_provider;
    table.client_get_username_provider = svn_client_get_username_provider;
    table.client_get_ssl_server_trust_file_provider = svn_client_get_ssl_server_trust_file_provider;
    table.client_get_ssl_client_cert_file_provider = svn_client_get_ssl_client_cert_file_provider;
    table.auth_get_simple_prompt_provider = svn_auth_get_simple_prompt_provider;
    table.auth_get_ssl_server_trust_prompt_provider = svn_auth_get_ssl_server_trust_prompt_provider;
    table.auth_open = openAuthentication;
}

} // namespace HSVNAdapter
