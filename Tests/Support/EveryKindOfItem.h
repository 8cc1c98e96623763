#pragma once

#include "TestRepository.h"

#include <string>
#include <vector>

/// A working copy with every kind of item, beside its repository; made with the installed tools.
class EveryKindOfItem : public TestRepository
{
  public:
    /// Makes it, unless it is there.
    void make() const;

    std::string workingCopy() const { return beside("wc"); }
    std::string item(const std::string& name) const { return workingCopy() + "/" + name; }

    static void svn(std::vector<std::string> arguments);

  private:
    void makeRepository() const;
    void makeChanges() const;
    void makeReplacementsAndCopies() const;
    void makeDeletionsAndAdditions() const;
};
