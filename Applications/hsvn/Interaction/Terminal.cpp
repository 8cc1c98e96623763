#include "Interaction/Terminal.h"

#include "CommandLine/Cancellation.h"
#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "Output/Output.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace {

/// The controlling terminal; without one, standard input and standard error.
class Device
{
  public:
    Device() : _descriptor{open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY)} {}
    ~Device()
    {
        if (_descriptor >= 0) {
            close(_descriptor);
        }
    }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    void write(const std::string& text) const
    {
        if (_descriptor < 0) {
            Output::writeError(text);
            return;
        }
        Output::flush();
        Output::makeWayForQuestion();
        const std::string native = Output::shownOnTerminal(NativeText::fromUTF8(text));
        static_cast<void>(::write(_descriptor, native.data(), native.size()));
    }

    /// One byte; read as soon as it is there, so that nothing of the next line is taken.
    char read() const
    {
        const int input = _descriptor < 0 ? STDIN_FILENO : _descriptor;
        char byte = 0;
        for (;;) {
            // Unlike a read, waiting is never resumed after a signal; one that came just before is seen at its end.
            pollfd waiting{input, POLLIN, 0};
            const int ready = poll(&waiting, 1, 100); // milliseconds
            if (Cancellation::isAsked()) {
                Cancellation::forget();
                fail(Cancelled, "The operation was interrupted");
            }
            if (ready == 0) {
                continue;
            }
            const ssize_t count = ready > 0 ? ::read(input, &byte, 1) : -1;
            if (count == 1) {
                return byte;
            }
            if (count == 0) {
                if (_descriptor >= 0) {
                    write("^D"); // the one control character that a terminal does not show itself
                }
                fail(EndOfFile, "End of file while reading from terminal");
            }
            if (errno != EINTR) {
                const int code = errno;
                fail(code, "Can't read from terminal: " + std::generic_category().message(code));
            }
        }
    }

  private:
    int _descriptor;
};

} // namespace

std::string Terminal::ask(const std::string& question)
{
    const Device device;
    device.write(question);
    std::string answer;
    for (char byte = device.read(); byte != '\n'; byte = device.read()) {
        answer += byte;
    }
    return NativeText::toUTF8(answer);
}
