#include "FakeBundle.h"

#include "TemporaryFolder.h"

#include <dlfcn.h>
#include <filesystem>
#include <stdexcept>

namespace {

constexpr const char* executable = "/FakeBundle.so";

} // namespace

FakeBundle::FakeBundle(const std::string& folder, const std::string& name, const std::string& version)
    : _path{folder + '/' + name}, _version{version}
{
    writeFile(_path + "/Info.json",
              R"({"CFBundleVersion": ")" + version +
                  R"(", "HSVNWorkingCopyFormatVersion": 99, "CFBundleExecutable": "FakeBundle.so"})");
    std::filesystem::copy_file(HSVN_TEST_FAKE_BUNDLE, _path + executable);
}

bool FakeBundle::isLoaded() const { return dlopen((_path + executable).c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr; }

FakeBundleState& FakeBundle::state() const
{
    void* const code = dlopen((_path + executable).c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const state = code ? dlsym(code, "HSVNFakeBundleState") : nullptr;
    if (!state) {
        throw std::runtime_error("no fake bundle at " + _path);
    }
    auto& found = *static_cast<FakeBundleState*>(state);
    found.version = _version.c_str();
    return found;
}
