#include "HSVNContext.h"
#include "HSVNException.h"
#include "Internal/BundleExtensions.h"
#include "Internal/ContextUse.h"
#include "Internal/Pool.h"

void HSVNContext::setBundle(const HSVNBundleRef& bundle)
{
    const HSVNContextUse use{*this};
    use.requireOutermost("bundle");
    changeBundle(bundle);
}

void HSVNContext::closeWorkingCopies()
{
    const HSVNContextUse use{*this};
    use.requireOutermost("open working copies");
    const auto close =
        _bundle ? HSVNExtensionOrNull(_bundle->extensions(), &HSVNDatabaseFunctions::close_working_copies) : nullptr;
    if (!close) {
        return;
    }
    const HSVNBundleScope scope{_bundle};
    const HSVNPool scratch{pool()};
    if (svn_error_t* const error = close(_ctx, pool(), scratch)) {
        HSVNException::exceptionWithError(error)->raise();
    }
}
