#pragma once

/// Interrupts (Ctrl-C and the like) end the running operation at the next point where that leaves everything usable.
namespace Cancellation {

/// Catches the signals that ask the program to end; from then on a first one cancels.
void catchSignals();
/// From now on no further interrupt ends the program either: somebody else has the terminal, who must be waited for.
void outlastInterrupts();
/// Whether a signal arrived.
bool isAsked();
/// Takes the signal that arrived as answered; a further one cancels again.
void forget();
/// Ends the process by the signal that arrived, as it would have ended without having been caught; returns when none
/// did.
void endBySignal();

} // namespace Cancellation
