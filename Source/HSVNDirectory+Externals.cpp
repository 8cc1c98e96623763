// Where the externals definitions of a working copy place their working copies: HSVNDirectory (WorkingCopy).

#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNPropertyNames.h"
#include "HSVNStringExternals.h"
#include "HSVNStringPaths.h"
#include "Internal/Operation.h"
#include "Internal/StatusScan.h"

#include <filesystem>
#include <set>

namespace {

/// Puts the paths that one folder's definitions name into the set.
void collectExternals(const std::string& folder, const std::string& definitions, std::set<std::string>& paths)
{
    for (const auto& definition : HSVNString::externalDefinitionListValue(definitions)) {
        const auto placed = (std::filesystem::path{folder} / definition->targetDirectory()).lexically_normal();
        paths.insert(HSVNLocalPath::pathWithString(placed.string())->string());
    }
}

} // namespace

std::set<std::string> HSVNExternalPathsBelow(HSVNOperation& operation, const std::string& path,
                                             HSVNBrokenExternals broken)
{
    const svn_opt_revision_t unspecified{svn_opt_revision_unspecified, {0}};
    const svn_opt_revision_t working{svn_opt_revision_working, {0}};
    apr_hash_t* values = nullptr;
    operation.check(operation->client_propget2(&values, HSVNPropertyExternals, operation.cString(path), &unspecified,
                                               &working, TRUE, operation.ctx(), operation.pool()));
    std::set<std::string> paths;
    for (apr_hash_index_t* index = values ? operation->apr_hash_first(operation.pool(), values) : nullptr; index;
         index = operation->apr_hash_next(index))
    {
        const void* folder = nullptr;
        void* value = nullptr;
        operation->apr_hash_this(index, &folder, nullptr, &value);
        try {
            collectExternals(static_cast<const char*>(folder),
                             HSVNString::stringWithSVNString(static_cast<const svn_string_t*>(value)), paths);
        } catch (const HSVNException&) {
            if (broken == HSVNBrokenExternals::Refused) {
                throw;
            }
        }
    }
    return paths;
}

std::vector<HSVNLocalPathRef> HSVNDirectory::externalsForPath(const HSVNPathRef& path, const HSVNContextRef& context)
{
    HSVNOperation operation{
        context, "HSVNDirectory", "externalsForPath:withContext:", {{"path", path}, {"context", context}}};
    std::vector<HSVNLocalPathRef> externals;
    for (const auto& external : HSVNExternalPathsBelow(operation, path->string(), HSVNBrokenExternals::Refused)) {
        externals.push_back(HSVNLocalPath::pathWithString(external));
    }
    return externals;
}

std::vector<HSVNLocalPathRef> HSVNDirectory::externalsInDirectoryAtPath(const HSVNPathRef& path,
                                                                        const HSVNContextRef& context)
{
    auto externals = externalsForPath(path, context);
    std::erase_if(externals, [](const HSVNLocalPathRef& external) {
        std::error_code error;
        return !std::filesystem::is_directory(external->string(), error) || !isWorkingCopyAtPath(external);
    });
    return externals;
}
