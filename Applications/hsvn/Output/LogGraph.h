#pragma once

#include "Output/LogPrinter.h"
#include "Output/RevisionGraph.h"

/// Prints the items of a log beside a graph of what they go on from, the youngest first.
class LogGraph
{
  public:
    explicit LogGraph(const Options& options) : _options{options}, _printer{options} {}

    /// Takes the next item of the log, to be printed in the end.
    void add(const HSVNLogItemRef& item) { _graph.add(item); }
    /// As `RevisionGraph` does.
    void settleMerges(const std::function<std::string(const std::string&, HSVNRevisionNumber)>& mergeInformation)
    {
        _graph.settleMerges(mergeInformation);
    }
    void print();

  private:
    const Options& _options;
    LogPrinter _printer;
    RevisionGraph _graph;
};
