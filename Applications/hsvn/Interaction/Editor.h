#pragma once

#include "CommandLine/Session.h"

#include <optional>
#include <string>

/// The user's editor, which is given a text in a temporary file.
class Editor
{
  public:
    /// @param folder    where the file is made and the editor is started, UTF-8; "" is the current folder
    /// @param baseName  the file's name without its ending ".tmp"
    Editor(Session& session, std::string folder, std::string baseName);

    /// Has a text edited.
    ///
    /// @param text  UTF-8 with "\n" at line ends; written in --encoding, or in the locale's encoding
    /// @return the text afterwards; nil when the file was left as it was
    /// @throws HSVNException when no editor is known, or when it fails
    ///
    /// The file stays.
    std::optional<std::string> edit(const std::string& text);

    /// The same for bytes that are no text, or whose encoding is nobody's business.
    std::optional<std::string> editAsBytes(const std::string& bytes);

    /// Has a file edited where it is.
    ///
    /// @param path  absolute
    /// @throws HSVNException as `edit`
    static void editFile(Session& session, const std::string& path);
    /// Has bytes edited in a temporary file.
    ///
    /// @return the bytes afterwards
    /// @throws HSVNException as `edit`
    static std::string editBytes(Session& session, const std::string& bytes);

    /// The file that was edited last, below the folder; empty before the first.
    const std::string& file() const { return _file; }
    void removeFile();

  private:
    std::string command() const;
    void run(const std::string& command, const std::string& fileName) const;

    Session& _session;
    std::string _folder;
    std::string _baseName;
    std::string _file;
};
