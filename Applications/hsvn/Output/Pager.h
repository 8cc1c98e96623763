#pragma once

#include <string>

/// The user's pager, a program that long output to a terminal goes through: HSVN_PAGER or PAGER, a command line of the
/// shell, or else `less`. An empty one, and `cat`, means none.
namespace Pager {

/// Whether what is written to one of the standard streams comes to a terminal, by the pager or at once.
bool isBeforeTerminal(int descriptor);

/// Says that what comes is long. Does nothing where standard output is no terminal that a pager could use.
void use();
/// Whether the pager takes standard output over, now or with the first text.
bool isUsed();
/// Whether the pager shows colours, as far as can be known.
bool showsColours();

/// Starts the pager that is used, if it does not run yet, in the place of standard output, whose buffer is empty.
///
/// @return why it could not be started, as a text for the user; empty when there is nothing to tell
std::string start();
bool isRunning();
/// Gives standard output back and waits until the user leaves the pager; what was written is no longer in a buffer. The
/// next text starts it again.
void leave();
/// The same for good.
void end();

} // namespace Pager
