#include "HSVNSubversionDetails.h"

#include "Internal/ExtensionCall.h"
#include "Internal/Text.h"

HSVNSubversionDetails HSVNReadSubversionDetails(const std::optional<std::string>& configurationFolder, bool withSystem,
                                                const HSVNContextRef& context)
{
    HSVNOperation operation{context, "HSVNSubversionDetails", "readWithContext:", {{"context", context}}};
    HSVNLineFunctions::VersionDetails found{};
    operation.call(&HSVNLineFunctions::version_details, &found,
                   configurationFolder ? operation.cString(*configurationFolder) : nullptr, withSystem ? 1 : 0,
                   operation.pool());
    HSVNSubversionDetails details{found.number,
                                  HSVNTextOrNil(found.buildDate).value_or(""),
                                  HSVNTextOrNil(found.buildTime).value_or(""),
                                  HSVNTextOrNil(found.buildHost).value_or(""),
                                  HSVNTextOrNil(found.copyright).value_or(""),
                                  found.accessModules,
                                  HSVNTextOrNil(found.configurationFolder),
                                  {},
                                  HSVNTextOrNil(found.host).value_or(""),
                                  HSVNTextOrNil(found.operatingSystem),
                                  {}};
    for (int index = 0; index < found.keyrings->nelts; ++index) {
        details.keyrings.emplace_back(APR_ARRAY_IDX(found.keyrings, index, const char*));
    }
    for (int index = 0; index < found.libraries->nelts; ++index) {
        const auto& library = APR_ARRAY_IDX(found.libraries, index, HSVNLineFunctions::LinkedLibrary);
        details.libraries.push_back({library.name, library.compiledVersion, HSVNTextOrNil(library.runtimeVersion)});
    }
    return details;
}
