#include "HSVNBundle.h"

#include "HSVNPlatformException.h"

#include <vector>

namespace {

std::vector<HSVNBundleRef>& bundleStack()
{
    thread_local std::vector<HSVNBundleRef> stack;
    return stack;
}

} // namespace

void HSVNBundlePush(const HSVNBundleRef& bundle)
{
    if (!bundle) {
        throw HSVNInvalidArgumentException("A nil bundle cannot be made current");
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
