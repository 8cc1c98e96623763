#include "HSVNContext.h"
#include "Internal/Contents.h"
#include "Internal/ContentsStream.h"

void HSVNContext::contents(const HSVNTarget& target, const HSVNRevisionArgument& revision,
                           const HSVNContentsChoices& choices, const HSVNContentsReceiver& receiver)
{
    HSVNAssertParameter(revision.spec() != nullptr, "revision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "contents", {{"target", target.text()}, {"revision", revision.spec()}}};
    const HSVNContentsStream stream{operation, receiver};
    HSVNContents(operation, stream, target.text(), *revision.spec(), choices);
}

std::string HSVNContext::contents(const HSVNTarget& target, const HSVNRevisionArgument& revision,
                                  const HSVNContentsChoices& choices)
{
    std::string text;
    contents(target, revision, choices, [&text](std::string_view piece) { text += piece; });
    return text;
}
