#include "FuzzInput.h"

// Externals definitions. What can be read can be written, and what is written is read.
HSVN_FUZZ_TARGET
{
    FuzzLibrary::shared();
    const std::string text{reinterpret_cast<const char*>(data), size};
    passes([&] {
        const auto definitions = HSVNString::externalDefinitionListValue(text);
        for (const auto& definition : definitions) {
            HSVNString::formatVersionForExternalDefinition(definition);
            definition->description();
        }
        HSVNString::externalDefinitionListValue(HSVNString::stringFromExternalDefinitionList(definitions));
    });
    return 0;
}
