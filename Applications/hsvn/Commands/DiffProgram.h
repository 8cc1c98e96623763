#pragma once

#include "CommandLine/Session.h"

/// Takes from -x, --diff-cmd and --internal-diff who compares files and with which arguments; what they leave open is
/// what the configuration says.
void chooseDiffProgram(Session& session, HSVNDiffChoices& choices);
