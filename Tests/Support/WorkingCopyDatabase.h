#pragma once

#include <string>
#include <vector>

/// Runs SQL statements on a working copy's own records, for states that no command leaves behind.
void alterWorkingCopyDatabase(const std::string& workingCopy, const std::vector<std::string>& statements);
