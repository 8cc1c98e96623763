#pragma once

#include <cstdint>

/// Status codes of Subversion, as `HSVNException::status` answers them and user information holds them under "status".
/// They are the same in every line; a code that a later line brought is answered by none before it.
///
/// Those that the library, its bundles and its program name; others may be answered, too.
struct HSVNStatusCode
{
    /// A code by its name.
    enum Value : std::int32_t
    {
        EndOfFile = 70014,                     ///< APR_EOF
        BadFileName = 125001,                  ///< SVN_ERR_BAD_FILENAME
        BadURL = 125002,                       ///< SVN_ERR_BAD_URL
        BadDate = 125003,                      ///< SVN_ERR_BAD_DATE
        BadPropertyValue = 125005,             ///< SVN_ERR_BAD_PROPERTY_VALUE
        InconsistentLineEnds = 135000,         ///< SVN_ERR_IO_INCONSISTENT_EOL
        PipeWrite = 135007,                    ///< SVN_ERR_IO_PIPE_WRITE_ERROR
        UnknownNodeKind = 145000,              ///< SVN_ERR_NODE_UNKNOWN_KIND
        EntryNotFound = 150000,                ///< SVN_ERR_ENTRY_NOT_FOUND
        EntryExists = 150002,                  ///< SVN_ERR_ENTRY_EXISTS
        ObstructedUpdate = 155000,             ///< SVN_ERR_WC_OBSTRUCTED_UPDATE
        WorkingCopyLocked = 155004,            ///< SVN_ERR_WC_LOCKED
        WorkingCopyNotLocked = 155005,         ///< SVN_ERR_WC_NOT_LOCKED
        WorkingCopyNotDirectory = 155007,      ///< SVN_ERR_WC_NOT_WORKING_COPY
        WorkingCopyPathNotFound = 155010,      ///< SVN_ERR_WC_PATH_NOT_FOUND
        WorkingCopyNotUpToDate = 155011,       ///< SVN_ERR_WC_NOT_UP_TO_DATE
        LeftLocalModifications = 155012,       ///< SVN_ERR_WC_LEFT_LOCAL_MOD
        FoundConflict = 155015,                ///< SVN_ERR_WC_FOUND_CONFLICT
        UnsupportedWorkingCopyFormat = 155021, ///< SVN_ERR_WC_UNSUPPORTED_FORMAT
        InvalidSchedule = 155023,              ///< SVN_ERR_WC_INVALID_SCHEDULE
        InvalidSwitch = 155025,                ///< SVN_ERR_WC_INVALID_SWITCH
        ConflictResolverFailure = 155027,      ///< SVN_ERR_WC_CONFLICT_RESOLVER_FAILURE
        WorkingCopyUpgradeRequired = 155036,   ///< SVN_ERR_WC_UPGRADE_REQUIRED
        InvalidOperationDepth = 155038,        ///< SVN_ERR_WC_INVALID_OPERATION_DEPTH
        NoSuchEntry = 160008,                  ///< SVN_ERR_FS_NO_SUCH_ENTRY
        NodeNotFound = 160013,                 ///< SVN_ERR_FS_NOT_FOUND
        NotDirectory = 160016,                 ///< SVN_ERR_FS_NOT_DIRECTORY
        NotFile = 160017,                      ///< SVN_ERR_FS_NOT_FILE
        NodeExists = 160020,                   ///< SVN_ERR_FS_ALREADY_EXISTS
        VersionConflict = 160024,              ///< SVN_ERR_FS_CONFLICT
        TransactionOutOfDate = 160028,         ///< SVN_ERR_FS_TXN_OUT_OF_DATE
        BerkeleyDB = 160029,                   ///< SVN_ERR_FS_BERKELEY_DB
        PathLocked = 160035,                   ///< SVN_ERR_FS_PATH_ALREADY_LOCKED
        BadLockToken = 160037,                 ///< SVN_ERR_FS_BAD_LOCK_TOKEN
        NoLockToken = 160038,                  ///< SVN_ERR_FS_NO_LOCK_TOKEN
        LockOwnerMismatch = 160039,            ///< SVN_ERR_FS_LOCK_OWNER_MISMATCH
        LockExpired = 160041,                  ///< SVN_ERR_FS_LOCK_EXPIRED
        OutOfDate = 160042,                    ///< SVN_ERR_FS_OUT_OF_DATE
        UnsupportedRepositoryFormat = 160043,  ///< SVN_ERR_FS_UNSUPPORTED_FORMAT
        HookFailure = 165001,                  ///< SVN_ERR_REPOS_HOOK_FAILURE: a hook refused what was to be done
        DisabledFeature = 165006,              ///< SVN_ERR_REPOS_DISABLED_FEATURE: no hook allows revision properties
        IllegalURL = 170000,                   ///< SVN_ERR_RA_ILLEGAL_URL
        NotAuthorized = 170001,                ///< SVN_ERR_RA_NOT_AUTHORIZED
        AccessOutOfDate = 170004,              ///< SVN_ERR_RA_OUT_OF_DATE
        OtherRepository = 170009,              ///< SVN_ERR_RA_UUID_MISMATCH
        CannotCreateSession = 170013,          ///< SVN_ERR_RA_CANNOT_CREATE_SESSION
        RequestFailed = 175002,                ///< SVN_ERR_RA_DAV_REQUEST_FAILED
        OptionsRequestFailed = 175003,         ///< SVN_ERR_RA_DAV_OPTIONS_REQ_FAILED
        ServerPathNotFound = 175007,           ///< SVN_ERR_RA_DAV_PATH_NOT_FOUND
        ServerTimedOut = 175012,               ///< SVN_ERR_RA_DAV_CONN_TIMEOUT
        Forbidden = 175013,                    ///< SVN_ERR_RA_DAV_FORBIDDEN
        RepositoryOpenFailed = 180001,         ///< SVN_ERR_RA_LOCAL_REPOS_OPEN_FAILED
        BadRevision = 195002,                  ///< SVN_ERR_CLIENT_BAD_REVISION
        ClientIsBinaryFile = 195004,           ///< SVN_ERR_CLIENT_IS_BINARY_FILE
        InvalidExternals = 195005,             ///< SVN_ERR_CLIENT_INVALID_EXTERNALS_DESCRIPTION
        ClientModified = 195006,               ///< SVN_ERR_CLIENT_MODIFIED
        ClientIsDirectory = 195007,            ///< SVN_ERR_CLIENT_IS_DIRECTORY
        RevisionRange = 195008,                ///< SVN_ERR_CLIENT_REVISION_RANGE
        PropertyName = 195011,                 ///< SVN_ERR_CLIENT_PROPERTY_NAME
        UnrelatedResources = 195012,           ///< SVN_ERR_CLIENT_UNRELATED_RESOURCES
        InvalidMergeInfo = 195021,             ///< SVN_ERR_CLIENT_INVALID_MERGEINFO_NO_MERGETRACKING
        ConflictOptionNotApplicable = 195024,  ///< SVN_ERR_CLIENT_CONFLICT_OPTION_NOT_APPLICABLE
        General = 200000,                      ///< SVN_ERR_BASE
        IncorrectParameters = 200004,          ///< SVN_ERR_INCORRECT_PARAMS
        UnversionedResource = 200005,          ///< SVN_ERR_UNVERSIONED_RESOURCE
        UnsupportedFeature = 200007,           ///< SVN_ERR_UNSUPPORTED_FEATURE
        IllegalTarget = 200009,                ///< SVN_ERR_ILLEGAL_TARGET
        ExternalProgram = 200012,              ///< SVN_ERR_EXTERNAL_PROGRAM
        Cancelled = 200015,                    ///< SVN_ERR_CANCELLED
        PropertyNotFound = 200017,             ///< SVN_ERR_PROPERTY_NOT_FOUND
        ReservedFileName = 200025,             ///< SVN_ERR_RESERVED_FILENAME_SPECIFIED
        DatabaseBusy = 200033,                 ///< SVN_ERR_SQLITE_BUSY
        MalformedVersion = 200037,             ///< SVN_ERR_MALFORMED_VERSION_STRING
        ArgumentParsing = 205000,              ///< SVN_ERR_CL_ARG_PARSING_ERROR
        InsufficientArguments = 205001,        ///< SVN_ERR_CL_INSUFFICIENT_ARGS
        MutuallyExclusiveArguments = 205002,   ///< SVN_ERR_CL_MUTUALLY_EXCLUSIVE_ARGS
        LogMessageIsVersionedFile = 205004,    ///< SVN_ERR_CL_LOG_MESSAGE_IS_VERSIONED_FILE
        LogMessageIsPath = 205005,             ///< SVN_ERR_CL_LOG_MESSAGE_IS_PATHNAME
        NoEditor = 205007,                     ///< SVN_ERR_CL_NO_EXTERNAL_EDITOR
        BadLogMessage = 205008,                ///< SVN_ERR_CL_BAD_LOG_MESSAGE
        UnnecessaryLogMessage = 205009,        ///< SVN_ERR_CL_UNNECESSARY_LOG_MESSAGE
        NoMergeTool = 205010,                  ///< SVN_ERR_CL_NO_EXTERNAL_MERGE_TOOL
        ExternalsProcessing = 205011,          ///< SVN_ERR_CL_ERROR_PROCESSING_EXTERNALS
        ConnectionClosed = 210002,             ///< SVN_ERR_RA_SVN_CONNECTION_CLOSED
        RepositoryNotFound = 210005,           ///< SVN_ERR_RA_SVN_REPOS_NOT_FOUND
        CredentialsUnavailable = 215000,       ///< SVN_ERR_AUTHN_CREDS_UNAVAILABLE
        NoCredentialsProvider = 215001,        ///< SVN_ERR_AUTHN_NO_PROVIDER
        CredentialsExhausted = 215002,         ///< SVN_ERR_AUTHN_PROVIDERS_EXHAUSTED
        AuthenticationFailed = 215004,         ///< SVN_ERR_AUTHN_FAILED
        RootUnreadable = 220000,               ///< SVN_ERR_AUTHZ_ROOT_UNREADABLE
        PathUnreadable = 220001,               ///< SVN_ERR_AUTHZ_UNREADABLE
        PathUnwritable = 220004,               ///< SVN_ERR_AUTHZ_UNWRITABLE
        DiffSourceModified = 225000,           ///< SVN_ERR_DIFF_DATASOURCE_MODIFIED
        CertificateUntrusted = 230001          ///< SVN_ERR_RA_SERF_SSL_CERT_UNTRUSTED
    };
};
