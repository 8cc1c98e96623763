#include "HSVNMoveHandler.h"

HSVNMoveHandler::~HSVNMoveHandler() = default;

bool HSVNMoveHandler::respondsTo(HSVNMoveHandlerMessage /*message*/) const { return false; }

bool HSVNMoveHandler::willMoveNodeAtPath(const HSVNPathRef& /*source*/, const HSVNPathRef& /*destination*/,
                                         bool /*copy*/, const HSVNContextRef& /*context*/, void* /*contextInfo*/)
{
    return true;
}

std::int32_t HSVNMoveHandler::promptToOverwriteNodeAtPath(const HSVNPathRef& /*destination*/, bool /*copy*/,
                                                          const HSVNContextRef& /*context*/, void* /*contextInfo*/)
{
    return HSVNOverwriteCancel;
}
