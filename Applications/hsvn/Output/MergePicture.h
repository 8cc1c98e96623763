#pragma once

#include <HSVN/HSVN.h>

#include <string>

/// Two branches as a picture of characters: where they part, the last full merge between them, and their tips.
///
/// @param isWorkingCopy  whether the branch that is merged into is that of a working copy
std::string mergePicture(const HSVNMergingSummary& summary, bool isWorkingCopy);
