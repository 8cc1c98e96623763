#include "HSVNBundle.h"

#include "HSVNBundleLoader.h"
#include "HSVNPlatformException.h"
#include "Internal/Initialize.h"
#include "Internal/Pool.h"

#include <fmt/format.h>
#include <memory>
#include <vector>

namespace {

/// The calling thread's stack, made on first use. A client that outlives the thread's storage, as a static one does
/// when the process ends, still finds one: nothing has to be destroyed for the pointer itself.
std::vector<HSVNBundleRef>& bundleStack()
{
    using Stack = std::vector<HSVNBundleRef>;
    thread_local Stack* stack = nullptr;
    struct Owner
    {
        std::unique_ptr<Stack> owned = std::make_unique<Stack>();
        Owner() { stack = owned.get(); }
        ~Owner() { stack = nullptr; }
    };
    thread_local const Owner owner;
    if (!stack) {
        stack = std::make_unique<Stack>().release();
    }
    return *stack;
}

/// Why there is no bundle to be made current.
std::string reasonForNil()
{
    if (HSVNBundleLoader::sharedInstance().newestVersion()) {
        return "A nil bundle cannot be made current";
    }
    return HSVNIsInitialized()
               ? fmt::format("There is no bundle of Subversion in '{}'", HSVNBundleLoader::defaultBundleDirectory())
               : "No bundle of Subversion is loaded: HSVNInitialize has not been called";
}

} // namespace

void HSVNBundlePush(const HSVNBundleRef& bundle)
{
    if (!bundle) {
        throw HSVNInvalidArgumentException(reasonForNil());
    }
    bundleStack().push_back(bundle);
}

HSVNBundleRef HSVNBundlePop()
{
    auto& stack = bundleStack();
    if (stack.empty()) {
        throw HSVNGenericException("Unbalanced bundle stack pop");
    }
    HSVNBundleRef top = std::move(stack.back());
    stack.pop_back();
    return top;
}

HSVNBundleRef HSVNBundleCurrent()
{
    const auto& stack = bundleStack();
    if (stack.empty()) {
        throw HSVNGenericException("Bundle stack is empty");
    }
    return stack.back();
}

bool HSVNBundleIsCurrent(const HSVNBundleRef& bundle)
{
    const auto& stack = bundleStack();
    return bundle && !stack.empty() && stack.back() == bundle;
}
