#include "HSVNPackage.h"
#include "HSVNUnicodePrivate.h"

namespace {

const HSVNUnicode& loadedModule()
{
    const auto package = HSVNPackage::packageAtPath(HSVNPackage::libraryPath() + "/Versions/A/Unicode.bundle");
    const auto entry = reinterpret_cast<HSVNUnicodeEntryFunction>(package->symbol("HSVNUnicodeModule"));
    return *entry();
}

} // namespace

const HSVNUnicode& HSVNUnicode::shared()
{
    static const HSVNUnicode& module = loadedModule();
    return module;
}
