#include "HSVNLogOptions.h"
#include "HSVNNode.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Log.h"

std::vector<HSVNLogItemRef> HSVNNode::readLogForNodeAtPath(const HSVNPathRef& path, HSVNLogDelegate* delegate,
                                                           const std::shared_ptr<const HSVNLogOptions>& options,
                                                           const HSVNContextRef& context)
{
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(options->pegRevision() != nullptr, "[options pegRevision] != nil");
    HSVNAssertParameter(options->fromRevision() != nullptr, "[options fromRevision] != nil");
    HSVNAssertParameter(options->toRevision() != nullptr, "[options toRevision] != nil");
    HSVNOperation operation{context,
                            "HSVNNode",
                            "readLogForNodeAtPath:delegate:options:withContext:",
                            {{"path", path}, {"options", options}, {"context", context}}};
    HSVNLogReceiver receiver{*context, delegate};
    HSVNLogMessages(operation, HSVNTextArray(operation, {path->string()}), options->choices(), HSVNLogReceiver::receive,
                    &receiver);
    return std::move(receiver.items);
}
