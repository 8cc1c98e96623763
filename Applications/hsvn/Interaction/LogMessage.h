#pragma once

#include "CommandLine/Session.h"
#include "Interaction/Editor.h"

#include <optional>
#include <string>
#include <vector>

/// The log message of a commit: of -m or -F, else from the user's editor.
///
/// The client asks for it while the commit runs; what goes wrong then is thrown by the operation.
class LogMessage
{
  public:
    /// @param folder  the folder from which items are named and where the editor's file is made, absolute; "" for
    ///                items by their whole names
    /// @throws HSVNException for a message with a zero byte
    explicit LogMessage(Session& session, std::string folder = {});

    /// Answers the client's question.
    ///
    /// @return false when the user aborts the commit
    bool answer(std::string& message, const std::vector<HSVNCommitItemRef>& items);
    /// Whether the last question could not be answered.
    bool hasFailed() const { return _hasFailed; }

    /// Removes the editor's file, after the commit.
    void discardFile() { _editor.removeFile(); }
    /// A failure of the commit, which says in the end where the message was left when there is an edited one.
    HSVNException withLeftFile(const HSVNException& exception) const;

  private:
    bool answerOrThrow(std::string& message, const std::vector<HSVNCommitItemRef>& items);
    bool edit(std::string& message, const std::vector<HSVNCommitItemRef>& items);
    std::string proposal(const std::vector<HSVNCommitItemRef>& items) const;
    std::string lineOf(const HSVNCommitItem& item) const;

    Session& _session;
    std::string _folder;
    std::optional<std::string> _given; // of -m or -F, in its encoding
    Editor _editor;
    bool _hasFailed = false;
};

/// Fails for a local operation that is given a log message or revision properties.
void refuseLogMessage(const Options& options);

/// The revision properties of --with-revprop, the empty text where no value was given.
HSVNPropertyMap revisionPropertiesOf(const Options& options);
