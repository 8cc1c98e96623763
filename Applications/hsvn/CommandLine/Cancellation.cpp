#include "CommandLine/Cancellation.h"

#include <csignal>
#include <initializer_list>

namespace {

// NOLINTBEGIN: the one kind of thing that a signal handler may read and write
volatile std::sig_atomic_t arrivedSignal = 0;
volatile std::sig_atomic_t outlastsInterrupts = 0;
// NOLINTEND

extern "C" void rememberSignal(int number)
{
    // A second one ends the program at once.
    static_cast<void>(std::signal(number, number == SIGINT && outlastsInterrupts != 0 ? rememberSignal : SIG_DFL));
    arrivedSignal = number;
}

} // namespace

void Cancellation::catchSignals()
{
    for (const int number : {SIGINT, SIGHUP, SIGTERM}) {
        // One that was ignored from the start stays ignored, as under nohup.
        if (std::signal(number, rememberSignal) == SIG_IGN) {
            static_cast<void>(std::signal(number, SIG_IGN));
        }
    }
    // Writing to a closed pipe, or beyond the limit of a file's size, fails and is told as any other failure.
    for (const int number : {SIGPIPE, SIGXFSZ}) {
        static_cast<void>(std::signal(number, SIG_IGN));
    }
}

void Cancellation::outlastInterrupts() { outlastsInterrupts = 1; }

bool Cancellation::isAsked() { return arrivedSignal != 0; }

void Cancellation::forget()
{
    static_cast<void>(std::signal(arrivedSignal, rememberSignal));
    arrivedSignal = 0;
}

void Cancellation::endBySignal()
{
    if (arrivedSignal != 0) {
        static_cast<void>(std::signal(arrivedSignal, SIG_DFL));
        static_cast<void>(std::raise(arrivedSignal));
    }
}
