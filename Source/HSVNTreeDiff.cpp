#include "HSVNTreeDiff.h"

#include <utility>

HSVNTreeDiff::HSVNTreeDiff(std::shared_ptr<const HSVNPatchSource> source, bool knowsCopySources)
    : HSVNPatch{std::move(source)}, _knowsCopySources{knowsCopySources}
{
}
