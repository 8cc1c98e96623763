#include "ExtensionTable.h"

#include <svn_ra.h>
#include <svn_string.h>
#include <svn_version.h>

#if HSVN_LINE_MINOR >= 8
#include <dlfcn.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <svn_auth.h>
#include <svn_config.h>
#include <svn_dirent_uri.h>
#endif

namespace HSVNAdapter {
namespace {

/// The number with its tag; only the headers know the tag of a release.
const char* versionNumber(apr_pool_t* pool)
{
    const svn_version_t* const loaded = svn_subr_version();
    if (loaded->major == SVN_VER_MAJOR && loaded->minor == SVN_VER_MINOR && loaded->patch == SVN_VER_PATCH) {
        return SVN_VERSION;
    }
    return apr_psprintf(pool, "%d.%d.%d%s", loaded->major, loaded->minor, loaded->patch, loaded->tag);
}

#if HSVN_LINE_MINOR >= 8
/// Whether Subversion's library for a keyring stands beside its others, under a name of the same form. It is not
/// loaded: the libraries of whole desktops would come with it.
bool hasKeyringLibrary(const std::string& name)
{
    Dl_info place{};
    if (dladdr(reinterpret_cast<void*>(svn_subr_version), &place) == 0) {
        return false;
    }
    const std::string_view ours = "libsvn_subr";
    std::filesystem::path path = place.dli_fname;
    std::string file = path.filename().string();
    if (!file.starts_with(ours)) {
        return false;
    }
    std::error_code unreadable;
    return std::filesystem::exists(path.replace_filename(file.replace(0, ours.size(), "libsvn_auth_" + name)),
                                   unreadable);
}

apr_array_header_t* availableKeyrings(apr_pool_t* pool)
{
    auto* const keyrings = apr_array_make(pool, 3, sizeof(const char*));
    if (hasKeyringLibrary("gnome_keyring")) {
        APR_ARRAY_PUSH(keyrings, const char*) = "Gnome Keyring";
    }
    svn_auth_provider_object_t* agent = nullptr;
    svn_error_clear(svn_auth_get_platform_specific_provider(&agent, "gpg_agent", "simple", pool));
    if (agent) {
        APR_ARRAY_PUSH(keyrings, const char*) = "GPG-Agent";
    }
    if (hasKeyringLibrary("kwallet")) {
        APR_ARRAY_PUSH(keyrings, const char*) = "KWallet (KDE)";
    }
    return keyrings;
}

apr_array_header_t* linkedLibraries(const svn_version_extended_t* version, apr_pool_t* pool)
{
    auto* const result = apr_array_make(pool, 8, sizeof(HSVNLineFunctions::LinkedLibrary));
    const apr_array_header_t* const libraries = svn_version_ext_linked_libs(version);
    for (int index = 0; libraries && index < libraries->nelts; ++index) {
        const auto& library = APR_ARRAY_IDX(libraries, index, svn_version_ext_linked_lib_t);
        APR_ARRAY_PUSH(result, HSVNLineFunctions::LinkedLibrary) = {library.name, library.compiled_version,
                                                                    library.runtime_version};
    }
    return result;
}

svn_error_t* versionDetails(HSVNLineFunctions::VersionDetails* details, const char* configFolder,
                            svn_boolean_t withSystem, apr_pool_t* pool)
{
    const svn_version_extended_t* const version = svn_version_extended(withSystem, pool);
    auto* const modules = svn_stringbuf_create("", pool);
    SVN_ERR(svn_ra_print_modules(modules, pool));
    const char* folder = nullptr;
    SVN_ERR(svn_config_get_user_config_path(
        &folder, configFolder ? svn_dirent_internal_style(configFolder, pool) : nullptr, nullptr, pool));
    *details = {versionNumber(pool),
                svn_version_ext_build_date(version),
                svn_version_ext_build_time(version),
                svn_version_ext_build_host(version),
                svn_version_ext_copyright(version),
                modules->data,
                folder ? svn_dirent_local_style(folder, pool) : nullptr,
                availableKeyrings(pool),
                withSystem ? svn_version_ext_runtime_host(version) : nullptr,
                withSystem ? svn_version_ext_runtime_osname(version) : nullptr,
                linkedLibraries(version, pool)};
    return SVN_NO_ERROR;
}
#else
/// These lines know their number and modules.
svn_error_t* versionDetails(HSVNLineFunctions::VersionDetails* details, const char* /*configFolder*/,
                            svn_boolean_t /*withSystem*/, apr_pool_t* pool)
{
    auto* const modules = svn_stringbuf_create("", pool);
    SVN_ERR(svn_ra_print_modules(modules, pool));
    *details = {};
    details->number = versionNumber(pool);
    details->accessModules = modules->data;
    details->keyrings = apr_array_make(pool, 0, sizeof(const char*));
    details->libraries = apr_array_make(pool, 0, sizeof(HSVNLineFunctions::LinkedLibrary));
    return SVN_NO_ERROR;
}
#endif

} // namespace

void fillVersionDetails(HSVNLineFunctions& table) { table.version_details = versionDetails; }

} // namespace HSVNAdapter
