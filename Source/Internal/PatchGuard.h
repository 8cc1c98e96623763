#pragma once

#include "HSVNTarget.h"
#include "HSVNWorkingCopyChoices.h"
#include "Internal/PatchSource.h"

/// Refuses a patch that would change what is not the working copy's own, of which Subversion sees a part only: items in
/// an administrative area, moves by way of a symbolic link, whether it is there or made by the patch, names that a NUL
/// cuts short, and, what ends the process, changes of a property without a name or of lines that it cannot have.
///
/// What Subversion skips by itself is not refused: names outside of the directory, and items below links. Of links in
/// the place of versioned directories the adapter knows.
///
/// @param directory  the working copy's directory that the patch's names are relative to; "" is the current one
/// @return whether one of its names leads through a symbolic link: only the adapter knows what the link's place is
/// @throws HSVNException that names the item, `HSVNStatusCode::ReservedFileName` or `IllegalTarget`
bool HSVNRequireHarmlessPatch(const HSVNPatchSource& source, const std::string& directory,
                              const HSVNPatchChoices& choices);
