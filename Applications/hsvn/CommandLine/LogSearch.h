#pragma once

#include <string>
#include <vector>

/// What the options --search and --search-and look for.
class LogSearch
{
  public:
    /// @param groups  patterns in glob syntax, UTF-8; those of a group go together
    explicit LogSearch(std::vector<std::vector<std::string>> groups);

    /// Whether each pattern of some group is found in one of the texts, case and accents aside.
    bool finds(const std::vector<std::string>& texts) const;

  private:
    std::vector<std::vector<std::string>> _groups;
};
