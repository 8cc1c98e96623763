// Batches of moves and copies with one log message: HSVNNode (Services).

#include "HSVNClient.h"
#include "HSVNCommitItem.h"
#include "HSVNCopyOptions.h"
#include "HSVNDebug.h"
#include "HSVNException.h"
#include "HSVNMoveHandler.h"
#include "HSVNMoveOptions.h"
#include "HSVNNode.h"
#include "Internal/Client.h"
#include "Internal/Operation.h"
#include "Internal/PathKind.h"
#include "Internal/ReplacedItem.h"

#include <algorithm>
#include <fmt/format.h>
#include <optional>

namespace {

struct MoveBatch
{
    const std::vector<HSVNPathRef>& sourcePaths;
    const std::vector<HSVNPathRef>& destPaths;
    bool copy;
    const HSVNOptionsRef& options;
    HSVNMoveHandler* handler;
    void* contextInfo;
    const HSVNContextRef& context;

    bool asks(HSVNMoveHandlerMessage message) const { return handler && handler->respondsTo(message); }
};

/// Gives a batch into a repository one log message: asks for it once, and has every further question answered with it.
///
/// The destructor puts the application's delegate back; a client that had none keeps the log-message delegate.
class OneLogMessage
{
  public:
    explicit OneLogMessage(const MoveBatch& batch)
    {
        const auto target = std::find_if(batch.destPaths.begin(), batch.destPaths.end(), HSVNIsURL);
        if (target == batch.destPaths.end()) {
            return;
        }
        std::string message;
        const auto items = HSVNNode::commitItemsForMoveOfNodes(batch.sourcePaths, batch.destPaths, batch.copy);
        if (!HSVNNode::promptForLogMessage(message, items, *target, batch.context)) {
            throw HSVNOperationCancelledException("Move was canceled by user");
        }
        if (auto* client = dynamic_cast<HSVNClient*>(batch.context.get())) {
            _client = client;
            _savedDelegate = client->delegate();
            HSVNClientInternals::installLogMessageDelegate(
                *client, HSVNLogMessageDelegate::delegateWithMessage(message, _savedDelegate));
        }
    }
    ~OneLogMessage()
    {
        if (_client && _savedDelegate) {
            _client->setDelegate(_savedDelegate);
        }
    }
    OneLogMessage(const OneLogMessage&) = delete;
    OneLogMessage& operator=(const OneLogMessage&) = delete;

  private:
    HSVNClient* _client = nullptr;
    HSVNClientDelegateRef _savedDelegate;
};

/// The batch's options as those of its operation, which refuses nil ones itself.
template <class Options>
std::shared_ptr<const Options> optionsOf(const MoveBatch& batch, const char* condition)
{
    auto options = std::dynamic_pointer_cast<const Options>(batch.options);
    HSVNAssertParameter(options || !batch.options, condition);
    return options;
}

HSVNRevisionNumber moveOne(const MoveBatch& batch, std::size_t index)
{
    const HSVNPathRef& source = batch.sourcePaths[index];
    const HSVNPathRef& destination = batch.destPaths[index];
    if (batch.copy) {
        return HSVNNode::copyNodeAtPath(
            source, destination, optionsOf<HSVNCopyOptions>(batch, "[options isKindOfClass:[HSVNCopyOptions class]]"),
            batch.context);
    }
    return HSVNNode::moveNodeAtPath(
        source, destination, optionsOf<HSVNMoveOptions>(batch, "[options isKindOfClass:[HSVNMoveOptions class]]"),
        batch.context);
}

void askWhetherToMove(const MoveBatch& batch, std::size_t index)
{
    if (batch.asks(HSVNMoveHandlerMessage::willMoveNodeAtPath) &&
        !batch.handler->willMoveNodeAtPath(batch.sourcePaths[index], batch.destPaths[index], batch.copy, batch.context,
                                           batch.contextInfo))
    {
        throw HSVNOperationCancelledException("Move was canceled by user");
    }
}

/// Tells what failed and where the item is that was to be replaced. The exception's class and all else stay.
void raiseNaming(const HSVNException& failure, const HSVNPath& destination, const std::string& place)
{
    const auto* const exceptionClass = HSVNExceptionClass::named(failure.className());
    if (!exceptionClass) {
        return;
    }
    const auto reason =
        fmt::format("{}. What was at '{}' is kept at '{}'", failure.reason(), destination.string(), place);
    auto userInfo = failure.userInfo();
    userInfo.insert_or_assign(HSVNExceptionMessageKey, reason);
    exceptionClass->make(reason, std::move(userInfo))->raise();
}

/// Brings the old destination back in a handler of what kept the new one from its place, and throws that again.
[[noreturn]] void restoreAndRethrow(HSVNReplacedItem& replaced, HSVNReplacementFailure failure,
                                    const HSVNPath& destination)
{
    const auto place = replaced.restore(failure);
    if (!place) {
        throw;
    }
    HSVNDebug::logAtLevel(HSVNDebugLevelNormal, "What was at '%@' is kept at '%@'", destination.string(), *place);
    try {
        throw;
    } catch (const HSVNException& exception) {
        raiseNaming(exception, destination, *place);
        throw;
    }
}

/// Clears the destination and tries the index again from its start. The old destination comes back when that fails.
HSVNRevisionNumber replaceAndMove(const MoveBatch& batch, std::size_t index)
{
    const HSVNPathRef& source = batch.sourcePaths[index];
    const HSVNPathRef& destination = batch.destPaths[index];
    HSVNCheckReplacement(destination, source, batch.context);
    HSVNReplacedItem replaced{destination, batch.context};
    auto failure = HSVNReplacementFailure::Deletion;
    bool wasEmpty = false;
    try {
        if (replaced.needsDeletion()) {
            HSVNNode::deleteNodeAtPath(destination, source, batch.context);
        }
        failure = HSVNReplacementFailure::Refused;
        askWhetherToMove(batch, index);
        wasEmpty = HSVNIsLocal(destination) && !HSVNFileManager::itemExists(destination->string());
        failure = HSVNReplacementFailure::Operation;
        const auto revision = moveOne(batch, index);
        replaced.discard();
        return revision;
    } catch (const HSVNWorkingCopyLockedException&) { // held by another program, and nothing was done
        restoreAndRethrow(replaced, HSVNReplacementFailure::Refused, *destination);
    } catch (...) {
        // A move takes away what it brings: that is the only one left.
        if (wasEmpty && !batch.copy && HSVNFileManager::itemExists(destination->string())) {
            failure = HSVNReplacementFailure::Arrived;
        }
        restoreAndRethrow(replaced, failure, *destination);
    }
}

/// Moves one item, asking the handler when its destination exists.
///
/// @return nil for an item that was skipped
std::optional<HSVNRevisionNumber> moveOrAsk(const MoveBatch& batch, std::size_t index)
{
    askWhetherToMove(batch, index);
    try {
        return moveOne(batch, index);
    } catch (const HSVNEntryExistsException&) {
        if (!batch.asks(HSVNMoveHandlerMessage::promptToOverwriteNodeAtPath)) {
            throw;
        }
    }
    switch (batch.handler->promptToOverwriteNodeAtPath(batch.destPaths[index], batch.copy, batch.context,
                                                       batch.contextInfo))
    {
    case HSVNOverwriteReplace:
        return replaceAndMove(batch, index);
    case HSVNOverwriteSkip:
        return std::nullopt;
    case HSVNOverwriteCancel:
        throw HSVNOperationCancelledException("Operation canceled by user");
    default:
        throw HSVNInternalInconsistencyException("Unrecognised overwrite result");
    }
}

HSVNRevisionNumber runBatch(const MoveBatch& batch)
{
    HSVNRevisionNumber result = HSVNInvalidRevision;
    for (std::size_t index = 0; index < batch.sourcePaths.size(); ++index) {
        result = moveOrAsk(batch, index).value_or(result);
    }
    return result;
}

} // namespace

HSVNRevisionNumber HSVNNode::moveNodes(const std::vector<HSVNPathRef>& sourcePaths,
                                       const std::vector<HSVNPathRef>& destPaths, bool copy,
                                       const HSVNOptionsRef& options, const HSVNMoveHandlerRef& handler,
                                       void* contextInfo, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNAssertParameter(sourcePaths.size() == destPaths.size(), "[sourcePaths count] == [destPaths count]");
    HSVNLogCall("HSVNNode", "moveNodes:toPaths:copy:withOptions:handler:contextInfo:withContext:",
                {{"sourcePaths", sourcePaths}, {"destPaths", destPaths}, {"options", options}, {"context", context}});
    const MoveBatch batch{sourcePaths, destPaths, copy, options, handler.get(), contextInfo, context};
    const OneLogMessage message{batch};
    const HSVNBundleScope bundle{context->bundle()};
    return runBatch(batch);
}
