// The code of a bundle that calls a function which no library has.

struct HSVNBundleEntryPoints;

extern "C" {
void HSVNFunctionOfNoLibrary();
__attribute__((visibility("default"))) const HSVNBundleEntryPoints* HSVNBundlePrincipalObject(const char** version);
}

const HSVNBundleEntryPoints* HSVNBundlePrincipalObject(const char** /*version*/)
{
    HSVNFunctionOfNoLibrary();
    return nullptr;
}
