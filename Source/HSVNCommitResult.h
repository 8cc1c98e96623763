#pragma once

#include "HSVNTypes.h"

#include <optional>
#include <string>

/// What came of a commit.
struct HSVNCommitResult
{
    HSVNRevisionNumber revision =
        HSVNInvalidRevision;                      ///< none when there was nothing to commit or the message was refused
    std::optional<std::string> date{};            ///< as the server writes it
    std::optional<std::string> author{};          ///< nil for none
    std::optional<std::string> postCommitError{}; ///< what the hook that ran afterwards complained of
    bool messageRefused = false;                  ///< the delegate gave no log message for what was to be committed
};
