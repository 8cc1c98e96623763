// Format, administrative area, clean-up and upgrade of working copies: HSVNDirectory (WorkingCopy).

#include "HSVNBundleLoader.h"
#include "HSVNClient.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNPackage.h"
#include "Internal/CanonicalPath.h"
#include "Internal/CleanUp.h"
#include "Internal/FileManager.h"
#include "Internal/Operation.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // NOLINT(readability-redundant-declaration): POSIX declares it nowhere

namespace {

constexpr apr_status_t fileNotFound = 2; // ENOENT, which APR passes through

/// Throws unless the error means that the format was read, if not served.
void checkFormatError(svn_error_t* error)
{
    if (!error) {
        return;
    }
    if (error->apr_err == SVN_ERR_WC_UNSUPPORTED_FORMAT) {
        HSVNCurrentEntryPoints().error_clear(error);
        return;
    }
    const bool isMissing = error->apr_err == fileNotFound;
    const auto exception = HSVNException::exceptionWithError(error);
    if (isMissing) {
        throw HSVNNoSuchEntryException(exception->reason(), exception->userInfo());
    }
    exception->raise();
}

} // namespace

std::int32_t HSVNDirectory::formatVersionForWorkingCopyAtPath(const HSVNPathRef& path)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNLogCall("HSVNDirectory", "formatVersionForWorkingCopyAtPath:", {{"path", path}});
    const HSVNBundleScope bundle{HSVNBundleLoader::sharedInstance().defaultBundle()};
    const HSVNPool pool;
    int format = 0;
    checkFormatError(HSVNCurrentEntryPoints().wc_check_wc(path->string().c_str(), &format, pool));
    return format;
}

namespace {

std::int64_t formatServedByBundle(const HSVNBundleLoader& loader, const HSVNVersion& version)
{
    const HSVNUserInfo& information = loader.infoDictionaryForBundle(loader.bundleForVersion(version));
    const auto found = information.find("HSVNWorkingCopyFormatVersion");
    const std::int64_t* number = found == information.end() ? nullptr : found->second.number();
    if (!number || *number <= 0) {
        throw HSVNAssertionException(
            fmt::format("Bundle (version {}) does not provide working copy format version in infoDictionary",
                        version.versionString()));
    }
    return *number;
}

} // namespace

HSVNVersion HSVNDirectory::versionForWorkingCopyAtPath(const HSVNPathRef& path)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    const std::int32_t format = formatVersionForWorkingCopyAtPath(path);
    if (format == 0) {
        // The message has never named the path, and applications compare it.
        throw HSVNNotWorkingCopyException("\"%\" is not a working copy");
    }
    const HSVNBundleLoader& loader = HSVNBundleLoader::sharedInstance();
    const auto versions = loader.loadedVersions();
    const auto serving = std::find_if(versions.rbegin(), versions.rend(), [&](const HSVNVersion& version) {
        return formatServedByBundle(loader, version) >= format;
    });
    return serving == versions.rend() ? loader.newestVersion().value() : serving->versionWithMajorAndMinorComponents();
}

bool HSVNDirectory::isWorkingCopyAtPath(const HSVNPathRef& path)
{
    return formatVersionForWorkingCopyAtPath(path) != 0;
}

HSVNLocalPathRef HSVNDirectory::adminAreaInWorkingCopyAtPath(const HSVNPathRef& path)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNLogCall("HSVNDirectory", "adminAreaInWorkingCopyAtPath:", {{"path", path}});
    const HSVNBundleScope bundle{HSVNBundleLoader::sharedInstance().defaultBundle()};
    const HSVNPool pool;
    const char* name = HSVNCurrentEntryPoints().wc_get_adm_dir(pool);
    if (!name) {
        throw HSVNException("Failed to get name used for svn admin directories");
    }
    return HSVNLocalPath::pathWithString((std::filesystem::path{path->string()} / name).string());
}

HSVNPathRef HSVNDirectory::parentDirectoryInRoot(const HSVNPathRef& root, const HSVNPathRef& path)
{
    HSVNAssertParameter(root != nullptr, "root != nil");
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNPathRef child = path;
    for (HSVNPathRef parent = path->parent(); parent && !parent->isEqualToPath(root); parent = parent->parent()) {
        child = parent;
    }
    return child;
}

void HSVNDirectory::cleanUpWorkingCopyAtPath(const HSVNPathRef& path, const HSVNContextRef& context)
{
    HSVNOperation operation{
        context, "HSVNDirectory", "cleanUpWorkingCopyAtPath:withContext:", {{"path", path}, {"context", context}}};
    HSVNCleanUp(operation, path->string(), {});
    HSVNTellOfItemsSetAside(path->string());
}

void HSVNDirectory::purgeAdminDirectoriesInPath(const HSVNPathRef& path)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNLogCall("HSVNDirectory", "purgeAdminDirectoriesInPath:", {{"path", path}});
    HSVNRequireLocalPath(path);
    const std::string adminArea = adminAreaInWorkingCopyAtPath(path)->string();
    std::error_code error;
    std::filesystem::remove_all(adminArea, error);
    if (error) {
        HSVNException::exceptionWithReason(fmt::format("Failed to delete working copy admin area at '{}'", adminArea),
                                           error.value())
            ->raise();
    }
    if (!std::filesystem::is_directory(path->string(), error)) {
        return;
    }
    for (const auto& name : HSVNFileManager::sortedNamesIn(path->string())) {
        const auto child = path->pathByNormalizingAndAddingComponent(name);
        if (HSVNFileManager::isFolder(child->string())) {
            purgeAdminDirectoriesInPath(child);
        }
    }
}

namespace {

constexpr const char* interpreter = "/usr/bin/python";

/// What a child process begins with: its standard output goes nowhere, for the caller's is the application's own.
class SilentOutput
{
  public:
    SilentOutput()
    {
        ::posix_spawn_file_actions_init(&_actions);
        ::posix_spawn_file_actions_addopen(&_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    }
    ~SilentOutput() { ::posix_spawn_file_actions_destroy(&_actions); }
    SilentOutput(const SilentOutput&) = delete;
    SilentOutput& operator=(const SilentOutput&) = delete;
    const posix_spawn_file_actions_t* get() const { return &_actions; }

  private:
    posix_spawn_file_actions_t _actions{};
};

/// Runs a program without its standard output and waits for its end.
///
/// @param arguments  without the program's own name
/// @return false when it could not be started
bool runProgram(const char* program, const std::vector<std::string>& arguments)
{
    std::vector<char*> texts{const_cast<char*>(program)}; // NOLINT: posix_spawn changes none of them
    for (const auto& argument : arguments) {
        texts.push_back(const_cast<char*>(argument.c_str())); // NOLINT
    }
    texts.push_back(nullptr);
    pid_t child = 0;
    const SilentOutput output;
    if (::posix_spawn(&child, program, output.get(), nullptr, texts.data(), environ) != 0) {
        return false;
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return true;
}

} // namespace

void HSVNDirectory::runUpgradeScriptForWorkingCopyAtPath(const HSVNPathRef& path,
                                                         const std::optional<HSVNVersion>& version, bool force)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(version.has_value(), "version != nil");
    HSVNLogCall("HSVNDirectory", "runUpgradeScriptForWorkingCopyAtPath:version:force:",
                {{"path", path}, {"version", version->versionString()}});
    const std::string script = HSVNPackage::libraryPath() + "/Versions/A/Resources/Scripts/change-svn-wc-format.py";
    std::vector<std::string> arguments{script, path->string(),
                                       version->versionWithMajorAndMinorComponents().versionString()};
    if (force) {
        arguments.emplace_back("--force");
    }
    if (!runProgram(interpreter, arguments)) {
        throw HSVNException("Failed to start upgrade script");
    }
}

void HSVNDirectory::upgradeWorkingCopyAtPath(const HSVNPathRef& path, const std::optional<HSVNVersion>& version,
                                             bool force)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(version.has_value(), "version != nil");
    runUpgradeScriptForWorkingCopyAtPath(path, version, force);
    const auto bundle = HSVNBundleLoader::sharedInstance().bundleForVersion(version);
    const auto client = std::make_shared<HSVNClient>(bundle, nullptr);
    for (const auto& external : externalsInDirectoryAtPath(path, client)) {
        upgradeWorkingCopyAtPath(external, version, force);
    }
}
