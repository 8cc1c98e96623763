#include "HSVNPackage.h"

#include "HSVNException.h"
#include "Internal/Everlasting.h"

#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <limits>
#include <link.h>
#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

/// No record comes near this; a longer one is not read into memory.
constexpr std::uintmax_t maximumRecordSize = 1U << 20U;

[[noreturn]] void failToOpen(const std::string& path, const std::string& cause = {})
{
    throw HSVNException(fmt::format("Failed to load svn bundle at {}{}{}", path, cause.empty() ? "" : ": ", cause),
                        HSVNUserInfo{});
}

[[noreturn]] void failToLoadCode(const std::string& path, const std::string& cause)
{
    throw HSVNException(fmt::format("Failed to load the code of the bundle at {}: {}", path, cause), HSVNUserInfo{});
}

/// Whether an open module was linked so that the functions it calls are bound when it is opened.
bool isBoundAtOnce(void* code)
{
    link_map* map = nullptr;
    if (dlinfo(code, RTLD_DI_LINKMAP, &map) != 0) {
        return false;
    }
    const ElfW(Dyn)* entry = map->l_ld;
    while (entry->d_tag != DT_NULL && entry->d_tag != DT_BIND_NOW &&
           !(entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_BIND_NOW) != 0) &&
           !(entry->d_tag == DT_FLAGS_1 && (entry->d_un.d_val & DF_1_NOW) != 0))
    {
        ++entry;
    }
    return entry->d_tag != DT_NULL;
}

/// Opens a module for itself: several Subversion lines live in one process, each seeing its own functions only.
///
/// A module that calls a function which none of its libraries has is refused here, not at that call. What the libraries
/// call of each other is bound as they were linked, mostly when it is first called: thousands of functions that few
/// programs come to, and a sixth of the time that a program takes to start.
/// @returns the code, or nil with the loader's reason in `dlerror`
void* openCode(const std::string& file)
{
    void* const code = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (!code || isBoundAtOnce(code)) {
        return code;
    }
    dlclose(code); // opened a second time it would stay as it is
    return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

Json parsedRecord(const std::string& path)
{
    const fs::path file = fs::path{path} / "Info.json";
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    if (error == std::errc::no_such_file_or_directory) {
        return Json::object();
    }
    if (error) {
        failToOpen(path, "Info.json: " + error.message());
    }
    if (size > maximumRecordSize) {
        failToOpen(path, "Info.json is too long");
    }
    std::ifstream stream{file, std::ios::binary};
    Json record = Json::parse(stream, nullptr, false);
    if (!record.is_object()) {
        failToOpen(path, "Info.json is not a JSON object");
    }
    return record;
}

bool isWholeNumber(const Json& value)
{
    return value.is_number_integer() &&
           (!value.is_number_unsigned() ||
            value.get<std::uint64_t>() <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()));
}

HSVNUserInfo infoDictionaryOf(const Json& record)
{
    HSVNUserInfo info;
    for (const auto& [key, value] : record.items()) {
        if (value.is_string()) {
            info.emplace(key, value.get<std::string>());
        } else if (isWholeNumber(value)) {
            info.emplace(key, value.get<std::int64_t>());
        }
    }
    return info;
}

void checkKinds(const std::string& path, const Json& record)
{
    for (const char* key : {HSVNInfoVersionKey, HSVNInfoExecutableKey}) {
        if (record.contains(key) && !record[key].is_string()) {
            failToOpen(path, fmt::format("Info.json: \"{}\" is not a text", key));
        }
    }
    if (record.contains(HSVNInfoWorkingCopyFormatKey) && !isWholeNumber(record[HSVNInfoWorkingCopyFormatKey])) {
        failToOpen(path, fmt::format("Info.json: \"{}\" is not a whole number", HSVNInfoWorkingCopyFormatKey));
    }
}

/// Path of the package's shared object, which lies in the package's own folder whatever the record says.
std::string executablePath(const HSVNPackage& package)
{
    const fs::path name = package.infoText(HSVNInfoExecutableKey);
    if (name.empty() || name != name.filename() || name == "." || name == "..") {
        failToLoadCode(package.path(),
                       fmt::format("Info.json: \"{}\" is not the name of a file", HSVNInfoExecutableKey));
    }
    return fs::path{package.path()} / name;
}

std::string lastLoaderError()
{
    const char* const text = dlerror();
    return text ? text : "unknown error";
}

/// Where the library's own file lies.
struct LibraryFile
{
    fs::path path;
    std::string failure; ///< why the path is not known
};

LibraryFile findLibraryFile()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&HSVNPackage::libraryPath), &info) == 0) {
        return {{}, "it is not loaded from a file"};
    }
    std::error_code error;
    fs::path path = fs::canonical(info.dli_fname, error);
    return {std::move(path), error ? fmt::format("{}: {}", info.dli_fname, error.message()) : std::string{}};
}

/// Found when the library is loaded: the loader may know it by a path relative to the folder that is current then.
const HSVNEverlasting<LibraryFile> libraryFile{findLibraryFile()};

/// <prefix>/lib/HSVN of <prefix>/lib/HSVN/Versions/A/libHSVN.so.
std::string findLibraryPath()
{
    if (!(*libraryFile).failure.empty()) {
        throw HSVNException("Failed to find the library's own package: " + (*libraryFile).failure, HSVNUserInfo{});
    }
    return (*libraryFile).path.parent_path().parent_path().parent_path();
}

} // namespace

HSVNPackage::HSVNPackage(std::string path, HSVNUserInfo infoDictionary)
    : _path{std::move(path)}, _infoDictionary{std::move(infoDictionary)}
{
}

HSVNPackageRef HSVNPackage::packageAtPath(const std::string& path)
{
    std::error_code error;
    const std::string absolute = fs::absolute(path, error);
    if (error || !fs::is_directory(absolute, error)) {
        failToOpen(path);
    }
    const Json record = parsedRecord(absolute);
    checkKinds(absolute, record);
    return HSVNPackageRef{new HSVNPackage{absolute, infoDictionaryOf(record)}};
}

const std::string& HSVNPackage::libraryPath()
{
    static const HSVNEverlasting<std::string> path{findLibraryPath()};
    return *path;
}

std::string HSVNPackage::infoText(const char* key) const
{
    const auto entry = _infoDictionary.find(key);
    const std::string* const text = entry == _infoDictionary.end() ? nullptr : entry->second.text();
    return text ? *text : std::string{};
}

void* HSVNPackage::symbol(const char* name) const
{
    void* const found = optionalSymbol(name);
    if (!found) {
        failToLoadCode(_path, lastLoaderError());
    }
    return found;
}

void* HSVNPackage::optionalSymbol(const char* name) const
{
    void* const code = openCode(executablePath(*this));
    if (!code) {
        failToLoadCode(_path, lastLoaderError());
    }
    return dlsym(code, name);
}
