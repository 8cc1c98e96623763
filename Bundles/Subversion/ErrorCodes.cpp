#include "ErrorCodes.h"

#include <array>
#include <cerrno>

namespace HSVNAdapter {
namespace {

/// SVN_ERR_RA_CANNOT_CREATE_SESSION, which lines before 1.9 do not name.
constexpr apr_status_t cannotCreateSession = 170013;

/// The cause that a prompt answered; null when no level of the error is one.
svn_error_t* answerOfPrompt(svn_error_t* error)
{
    while (error != nullptr && error->apr_err != SVN_ERR_CANCELLED && error->apr_err != APR_EGENERAL) {
        error = error->child;
    }
    return error;
}

/// Newer lines wrap whatever kept a session from being opened, once or twice. What a prompt answered is no failure of
/// the connection and comes without the wrapping, as from the older lines.
svn_error_t* withoutWrapping(svn_error_t* error)
{
    svn_error_t* const answer = error->apr_err == cannotCreateSession ? answerOfPrompt(error->child) : nullptr;
    if (answer == nullptr) {
        return error;
    }
    svn_error_t* const cause = svn_error_dup(answer);
    svn_error_clear(error);
    return cause;
}

// What svnserve and the older lines answer in one code, web servers and newer lines answer in several. Numbers, for
// some names are younger than others.
constexpr std::array meanings{
    ErrorRule{215000, SVN_ERR_RA_NOT_AUTHORIZED},      // SVN_ERR_AUTHN_CREDS_UNAVAILABLE
    ErrorRule{215001, SVN_ERR_RA_NOT_AUTHORIZED},      // SVN_ERR_AUTHN_NO_PROVIDER
    ErrorRule{215002, SVN_ERR_RA_NOT_AUTHORIZED},      // SVN_ERR_AUTHN_PROVIDERS_EXHAUSTED
    ErrorRule{215004, SVN_ERR_RA_NOT_AUTHORIZED},      // SVN_ERR_AUTHN_FAILED
    ErrorRule{220000, SVN_ERR_RA_NOT_AUTHORIZED},      // SVN_ERR_AUTHZ_ROOT_UNREADABLE
    ErrorRule{220001, SVN_ERR_RA_NOT_AUTHORIZED},      // SVN_ERR_AUTHZ_UNREADABLE
    ErrorRule{220004, SVN_ERR_RA_NOT_AUTHORIZED},      // SVN_ERR_AUTHZ_UNWRITABLE
    ErrorRule{175013, SVN_ERR_RA_NOT_AUTHORIZED},      // SVN_ERR_RA_DAV_FORBIDDEN
    ErrorRule{155011, SVN_ERR_FS_TXN_OUT_OF_DATE},     // SVN_ERR_WC_NOT_UP_TO_DATE
    ErrorRule{160042, SVN_ERR_FS_TXN_OUT_OF_DATE},     // SVN_ERR_FS_OUT_OF_DATE
    ErrorRule{170004, SVN_ERR_FS_TXN_OUT_OF_DATE},     // SVN_ERR_RA_OUT_OF_DATE
    ErrorRule{160035, SVN_ERR_FS_LOCK_OWNER_MISMATCH}, // SVN_ERR_FS_PATH_ALREADY_LOCKED
    ErrorRule{160038, SVN_ERR_FS_BAD_LOCK_TOKEN},      // SVN_ERR_FS_NO_LOCK_TOKEN
    ErrorRule{175003, SVN_ERR_RA_SVN_REPOS_NOT_FOUND}, // SVN_ERR_RA_DAV_OPTIONS_REQ_FAILED
    ErrorRule{175007, SVN_ERR_FS_NOT_FOUND},           // SVN_ERR_RA_DAV_PATH_NOT_FOUND
    ErrorRule{175012, ETIMEDOUT},                      // SVN_ERR_RA_DAV_CONN_TIMEOUT
    ErrorRule{230001, SVN_ERR_RA_DAV_REQUEST_FAILED},  // SVN_ERR_RA_SERF_SSL_CERT_UNTRUSTED
};

/// The codes of the library that speaks HTTP for the newer lines.
constexpr apr_status_t firstOfTransport = 120100;
constexpr apr_status_t lastOfTransport = 120199;

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

apr_status_t meaningOf(const svn_error_t* error)
{
    if (hasCode(error, SVN_ERR_CANCELLED)) {
        return APR_SUCCESS;
    }
    for (; error != nullptr; error = error->child) {
        if (error->apr_err >= firstOfTransport && error->apr_err <= lastOfTransport) {
            return SVN_ERR_RA_DAV_REQUEST_FAILED;
        }
        for (const auto& rule : meanings) {
            if (error->apr_err == rule.given) {
                return rule.expected;
            }
        }
    }
    return APR_SUCCESS;
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
#if HSVN_LINE_MINOR >= 7
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
    if (const apr_status_t meaning = meaningOf(error)) {
        return withCode(meaning, error);
    }
    return error->apr_err == SVN_ERR_WC_PATH_NOT_FOUND ? withCode(SVN_ERR_ENTRY_NOT_FOUND, error) : error;
}

} // namespace HSVNAdapter
