#include "Output/Output.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <system_error>
#include <unistd.h>

namespace {

[[noreturn]] void failToWrite(int code)
{
    fail(code == EPIPE ? PipeWrite : code, "Write error: " + std::generic_category().message(code));
}

bool isTransientShown = false; // NOLINT: standard output is one for the process as well

void eraseTransient()
{
    if (isTransientShown) {
        isTransientShown = false;
        static_cast<void>(std::fputs("\x1b[K", stdout));
    }
}

} // namespace

void Output::reserveStandardStreams()
{
    // Open for the direction that nobody uses: reading from a closed input, writing to a closed output still fails.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            static_cast<void>(open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
}

void Output::write(std::string_view text)
{
    if (NativeText::isASCII(text)) {
        writeBytes(text);
    } else {
        writeBytes(NativeText::fromUTF8(text));
    }
}

void Output::writeBytes(std::string_view bytes)
{
    eraseTransient();
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) < bytes.size()) {
        failToWrite(errno);
    }
}

void Output::flush()
{
    eraseTransient();
    errno = 0;
    if (std::fflush(stdout) != 0) {
        failToWrite(errno);
    }
}

void Output::writeError(std::string_view text) { writeErrorBytes(NativeText::fromUTF8(text)); }

void Output::writeErrorBytes(std::string_view bytes)
{
    eraseTransient();
    static_cast<void>(std::fflush(stdout)); // a failure is met again when the output ends
    static_cast<void>(std::fwrite(bytes.data(), 1, bytes.size(), stderr)); // there is nowhere to tell it
}

void Output::showTransient(std::string_view text)
{
    // The cursor is kept where it is, and a text that is too long is cut off at the margin.
    const std::string sequence = "\x1b[K\x1b"
                                 "7\x1b[?7l" +
                                 std::string{text} +
                                 "\x1b[?7h\x1b"
                                 "8";
    static_cast<void>(std::fwrite(sequence.data(), 1, sequence.size(), stdout));
    static_cast<void>(std::fflush(stdout));
    isTransientShown = true;
}
