#pragma once

#include "SubversionLine.h"

#include <initializer_list>

// The library tells failures apart by the status codes of the lines it was written for. Where a line answers another
// code for the same condition, a new error with the expected code and the same message becomes the outermost one; the
// original stays its child, so the whole chain is kept.

namespace HSVNAdapter {

/// One code that a line answers and the code that stands for it.
struct ErrorRule
{
    apr_status_t given;
    apr_status_t expected;
};

/// Whether the error or one of its causes has the code.
bool hasCode(const svn_error_t* error, apr_status_t code);

/// The error below a new one with the code and the same message.
svn_error_t* withCode(apr_status_t code, svn_error_t* error);

/// The code that stands for what an error says: a busy working-copy database is a locked working copy, and a working
/// copy that needs an upgrade has an unsupported format; then, at any of its levels, the outermost first, refusals of a
/// server, which each kind of access words in its own codes, and transports that newer lines have; then a path that is
/// not found is an entry not found. 0 when no level has another code, and for cancelled operations.
apr_status_t meaningOf(const svn_error_t* error);

/// What every operation's result passes through: the rule given for the outermost error's code holds, unless the
/// working copy's database cannot be used; then the error's meaning. Cancelled operations are left alone.
svn_error_t* smoothed(svn_error_t* error, std::initializer_list<ErrorRule> rules = {});

} // namespace HSVNAdapter
