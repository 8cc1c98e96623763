#include "Internal/ReservedName.h"

#include "HSVNException.h"
#include "HSVNStatusCodes.h"
#include "Internal/Pool.h"

#include <filesystem>
#include <fmt/format.h>

namespace {

namespace files = std::filesystem;

/// Whether a folder holds what Subversion keeps of a working copy, and not just bears the name.
bool isAdministrativeArea(const files::path& folder)
{
    std::error_code ignored;
    return files::exists(folder / "wc.db", ignored) || files::exists(folder / "entries", ignored);
}

/// The reserved name that a path ends in, or that its way through an administrative area has; empty for none.
files::path reservedNameIn(const files::path& path)
{
    files::path walked;
    for (auto name = path.begin(); name != path.end(); ++name) {
        walked /= *name;
        if (HSVNIsReservedName(*name) && (std::next(name) == path.end() || isAdministrativeArea(walked))) {
            return *name;
        }
    }
    return {};
}

files::path withoutTrailingSlash(const files::path& path)
{
    return path.has_filename() || !path.has_relative_path() ? path : path.parent_path();
}

bool isURL(const std::string& target)
{
    const auto separator = target.find("://");
    return separator != std::string::npos && target.find('/') == separator + 1;
}

} // namespace

bool HSVNIsReservedName(const std::string& name)
{
    // Subversion knows two names: its own, and one that a program can choose in its place.
    if (name == ".svn") {
        return true;
    }
    if (name != "_svn") {
        return false;
    }
    const HSVNPool pool;
    const char* const chosen = HSVNCurrentEntryPoints().wc_get_adm_dir(pool);
    return chosen && name == chosen;
}

void HSVNRequireUnreserved(const std::string& target)
{
    if (isURL(target)) {
        return;
    }
    std::error_code error;
    const auto written = files::absolute(target.empty() ? "." : target, error).lexically_normal();
    const auto path = withoutTrailingSlash(written);
    auto name = reservedNameIn(path);
    if (name.empty() && !error) {
        // Links on the way lead there, too; the item itself may be one.
        const auto folder = files::weakly_canonical(path.parent_path(), error);
        name = error ? name : reservedNameIn(folder / path.filename());
    }
    if (!name.empty()) {
        HSVNException::exceptionWithReason(
            fmt::format("'{}' is reserved: '{}' is Subversion's administrative directory", target, name.string()),
            HSVNStatusCode::ReservedFileName)
            ->raise();
    }
}
