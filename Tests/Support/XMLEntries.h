#pragma once

#include <map>
#include <string>
#include <vector>

/// One "entry" element of what svn prints with --xml.
class XMLEntry
{
  public:
    static std::vector<XMLEntry> entriesIn(const std::string& xml);

    /// The text of an element in the entry, such as "commit/author", or of an attribute, such as "@path" and
    /// "commit@revision"; empty when there is none. Of several elements the last one counts.
    std::string text(const std::string& key) const;

  private:
    std::map<std::string, std::string> _texts;
};
