#include "ErrorCodes.h"

#include "ExtensionTable.h"
#include "HSVNStatusCodes.h"

#include <array>
#include <cerrno>

namespace HSVNAdapter {
namespace {

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
    svn_error_t* const answer =
        error->apr_err == HSVNStatusCode::CannotCreateSession ? answerOfPrompt(error->child) : nullptr;
    if (answer == nullptr) {
        return error;
    }
    svn_error_t* const cause = svn_error_dup(answer);
    svn_error_clear(error);
    return cause;
}

// What svnserve and the older lines answer in one code, web servers and newer lines answer in several, for some of
// which older lines have no name.
constexpr std::array meanings{
    ErrorRule{HSVNStatusCode::CredentialsUnavailable, SVN_ERR_RA_NOT_AUTHORIZED},
    ErrorRule{HSVNStatusCode::NoCredentialsProvider, SVN_ERR_RA_NOT_AUTHORIZED},
    ErrorRule{HSVNStatusCode::CredentialsExhausted, SVN_ERR_RA_NOT_AUTHORIZED},
    ErrorRule{HSVNStatusCode::AuthenticationFailed, SVN_ERR_RA_NOT_AUTHORIZED},
    ErrorRule{HSVNStatusCode::RootUnreadable, SVN_ERR_RA_NOT_AUTHORIZED},
    ErrorRule{HSVNStatusCode::PathUnreadable, SVN_ERR_RA_NOT_AUTHORIZED},
    ErrorRule{HSVNStatusCode::PathUnwritable, SVN_ERR_RA_NOT_AUTHORIZED},
    ErrorRule{HSVNStatusCode::Forbidden, SVN_ERR_RA_NOT_AUTHORIZED},
    ErrorRule{HSVNStatusCode::WorkingCopyNotUpToDate, SVN_ERR_FS_TXN_OUT_OF_DATE},
    ErrorRule{HSVNStatusCode::OutOfDate, SVN_ERR_FS_TXN_OUT_OF_DATE},
    ErrorRule{HSVNStatusCode::AccessOutOfDate, SVN_ERR_FS_TXN_OUT_OF_DATE},
    ErrorRule{HSVNStatusCode::PathLocked, SVN_ERR_FS_LOCK_OWNER_MISMATCH},
    ErrorRule{HSVNStatusCode::NoLockToken, SVN_ERR_FS_BAD_LOCK_TOKEN},
    ErrorRule{HSVNStatusCode::OptionsRequestFailed, SVN_ERR_RA_SVN_REPOS_NOT_FOUND},
    ErrorRule{HSVNStatusCode::ServerPathNotFound, SVN_ERR_FS_NOT_FOUND},
    ErrorRule{HSVNStatusCode::ServerTimedOut, ETIMEDOUT},
    ErrorRule{HSVNStatusCode::CertificateUntrusted, SVN_ERR_RA_DAV_REQUEST_FAILED},
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

namespace {

/// What keeps Subversion from the working copy's database at all; 0 for nothing of the kind.
apr_status_t meaningOfDatabase([[maybe_unused]] const svn_error_t* error)
{
#if HSVN_LINE_MINOR >= 7
    if (hasCode(error, SVN_ERR_SQLITE_BUSY)) {
        return SVN_ERR_WC_LOCKED;
    }
    if (hasCode(error, SVN_ERR_WC_UPGRADE_REQUIRED)) {
        return SVN_ERR_WC_UNSUPPORTED_FORMAT;
    }
#endif
    return APR_SUCCESS;
}

} // namespace

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
    if (const apr_status_t ofDatabase = meaningOfDatabase(error)) {
        return ofDatabase;
    }
    for (const auto* level = error; level != nullptr; level = level->child) {
        if (level->apr_err >= firstOfTransport && level->apr_err <= lastOfTransport) {
            return SVN_ERR_RA_DAV_REQUEST_FAILED;
        }
        for (const auto& rule : meanings) {
            if (level->apr_err == rule.given) {
                return rule.expected;
            }
        }
    }
    return error->apr_err == SVN_ERR_WC_PATH_NOT_FOUND ? SVN_ERR_ENTRY_NOT_FOUND : APR_SUCCESS;
}

svn_error_t* smoothed(svn_error_t* error, std::initializer_list<ErrorRule> rules)
{
    if (error == nullptr) {
        return error;
    }
    error = withoutWrapping(error);
    if (meaningOfDatabase(error) == APR_SUCCESS && !hasCode(error, SVN_ERR_CANCELLED)) {
        for (const auto& rule : rules) {
            if (error->apr_err == rule.given) {
                return withCode(rule.expected, error);
            }
        }
    }
    const apr_status_t meaning = meaningOf(error);
    return meaning == APR_SUCCESS ? error : withCode(meaning, error);
}

void fillErrorCodes(HSVNLineFunctions& table) { table.error_meaning = meaningOf; }

} // namespace HSVNAdapter
