#pragma once

#include "CommandLine/LogSearch.h"
#include "CommandLine/Options.h"
#include "Output/JSON.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

/// Prints the items of a log, those that a merge brought in marked as such.
class LogPrinter
{
  public:
    /// @param follow  prints what follows the text of a revision; may be null
    explicit LogPrinter(const Options& options, std::function<void(HSVNRevisionNumber)> follow = {})
        : _options{options}, _search{options.search}, _follow{std::move(follow)}
    {
    }

    void print(const HSVNLogItem& item);
    /// Whether there is something to tell of a revision, and a search finds it.
    bool isWanted(const HSVNLogItem& item) const;
    /// The text of a revision as people read it.
    std::string textOf(const HSVNLogItem& item) const;
    /// What follows the last item.
    void finish();

  private:
    void printText(const HSVNLogItem& item) const;
    void printXML(const HSVNLogItem& item) const;
    nlohmann::ordered_json record(const HSVNLogItem& item) const;

    /// What a search looks at.
    std::vector<std::string> textsOf(const HSVNLogItem& item) const;

    const Options& _options;
    LogSearch _search;
    std::function<void(HSVNRevisionNumber)> _follow;
    std::vector<HSVNRevisionNumber> _mergedBy; ///< the revisions that the next one was merged by, the outermost first
    JSONArray _records;
};
