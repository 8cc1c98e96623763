#pragma once

#include <HSVN/HSVN.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Builds XML in the layout of Subversion's command line.
class XML
{
  public:
    using Attributes = std::vector<std::pair<const char*, std::string>>;

    XML& open(const char* name, const Attributes& attributes = {});
    XML& close(const char* name);
    /// An element without contents.
    XML& empty(const char* name, const Attributes& attributes);
    /// An element with text, on one line. What XML cannot hold becomes ?\NNN for each of its bytes, here and in
    /// attributes.
    XML& element(const char* name, std::string_view text, const Attributes& attributes = {});
    /// The same when there is a text, else nothing.
    XML& element(const char* name, const std::optional<std::string>& text);
    /// A property's value: text, or base64 with an attribute that says so when XML cannot hold it.
    XML& property(const char* name, const std::string& propertyName, std::string_view value,
                  const Attributes& attributes = {});

    const std::string& text() const { return _text; }
    /// Writes what was built to standard output and starts anew.
    void write();

    /// The document's first lines; nothing of it with --incremental.
    static void writeHeader(const char* root);
    static void writeFooter(const char* root);

    /// Whether XML can hold the bytes as text: UTF-8 without control characters other than white space and DEL, and
    /// without U+FFFE and U+FFFF.
    static bool isSafe(std::string_view bytes);
    /// In lines of 76 characters, each ended.
    static std::string base64(std::string_view bytes);

  private:
    void tag(const char* name, const Attributes& attributes, const char* end);

    std::string _text;
};

/// A <commit> element: revision, author and date of a change.
void addCommit(XML& xml, HSVNRevisionNumber revision, const std::optional<std::string>& author,
               const std::optional<HSVNDate>& date);
/// A <lock> element.
void addLock(XML& xml, const HSVNLock& lock);
