#pragma once

#include "CommandLine/Options.h"

/// How the subcommands that bring a working copy to another state go about; options that one of them does not take keep
/// the library's defaults.
inline HSVNItemUpdateOptions updateWishes(const Options& options)
{
    HSVNItemUpdateOptions wishes;
    wishes.depthIsSticky = options.setDepth != HSVNDepthUnknown;
    wishes.depth = wishes.depthIsSticky ? options.setDepth : options.depth;
    wishes.processExternals = !options.ignoreExternals;
    wishes.allowObstructions = options.force;
    wishes.addsAsModification = options.addsAsModification;
    wishes.makeParents = options.parents;
    wishes.ignoreAncestry = options.ignoreAncestry;
    return wishes;
}
