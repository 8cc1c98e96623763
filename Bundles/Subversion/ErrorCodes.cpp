#include "ErrorCodes.h"

#include <array>

namespace HSVNAdapter {
namespace {

/// Newer lines wrap whatever kept a session from being opened. What a prompt answered is no failure of the connection
/// and comes without the wrapping, as from the older lines.
svn_error_t* withoutWrapping(svn_error_t* error)
{
#if SVN_VER_MINOR >= 7
    if (error->apr_err == SVN_ERR_RA_CANNOT_CREATE_SESSION && error->child != nullptr &&
        (error->child->apr_err == SVN_ERR_CANCELLED || error->child->apr_err == APR_EGENERAL))
    {
        svn_error_t* cause = svn_error_dup(error->child);
        svn_error_clear(error);
        return cause;
    }
#endif
    return error;
}

} // namespace

bool hasCode(const svn_error_t* error, apr_status_t code)
{
    for (; error != nullptr; error = error->child) {
        if (error->apr_err == code) {
            return true;
        }
    }
    return false;
}

svn_error_t* withCode(apr_status_t code, svn_error_t* error)
{
    std::array<char, 1024> buffer{};
    // Newer lines take the error const, older ones do not.
    return svn_error_create(code, error, svn_err_best_message(error, buffer.data(), buffer.size()));
}

svn_error_t* smoothed(svn_error_t* error, std::initializer_list<ErrorRule> rules)
{
    if (error == nullptr) {
        return error;
    }
    error = withoutWrapping(error);
    if (hasCode(error, SVN_ERR_CANCELLED)) {
        return error;
    }
#if SVN_VER_MINOR >= 7
    if (hasCode(error, SVN_ERR_SQLITE_BUSY)) {
        return withCode(SVN_ERR_WC_LOCKED, error);
    }
    if (hasCode(error, SVN_ERR_WC_UPGRADE_REQUIRED)) {
        return withCode(SVN_ERR_WC_UNSUPPORTED_FORMAT, error);
    }
#endif
    for (const auto& rule : rules) {
        if (error->apr_err == rule.given) {
            return withCode(rule.expected, error);
        }
    }
#if SVN_VER_MINOR >= 7
    if (error->apr_err == SVN_ERR_WC_PATH_NOT_FOUND) {
        return withCode(SVN_ERR_ENTRY_NOT_FOUND, error);
    }
#endif
    return error;
}

} // namespace HSVNAdapter
