#include "Internal/Unicode.h"
#include "HSVNException.h"
#include "HSVNPackage.h"

#include <filesystem>
#include <fmt/format.h>
#include <svn_error_codes.h>

namespace {

[[noreturn]] void failToLoad(const std::string& path, const std::string& cause)
{
    const std::string message =
        fmt::format("'{}', which characters outside ASCII and dates in words need, can't be loaded: {}", path, cause);
    throw HSVNException(message,
                        {{HSVNExceptionStatusKey, std::int64_t{APR_EDSOOPEN}}, {HSVNExceptionMessageKey, message}});
}

const HSVNUnicode& loadedModule()
{
    const std::string path = HSVNPackage::libraryPath() + "/Versions/A/Unicode.bundle";
    std::error_code error;
    if (!std::filesystem::exists(path, error)) {
        failToLoad(path, "There is no such folder");
    }
    try {
        const auto package = HSVNPackage::packageAtPath(path);
        const auto entry = reinterpret_cast<HSVNUnicodeEntryFunction>(package->symbol("HSVNUnicodeModule"));
        return *entry();
    } catch (const HSVNException& exception) {
        failToLoad(path, exception.reason());
    }
}

} // namespace

const HSVNUnicode& HSVNUnicode::shared()
{
    static const HSVNUnicode& module = loadedModule();
    return module;
}
