#include "Output/Output.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "Output/Pager.h"
#include "Output/TerminalText.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <fmt/format.h>
#include <string>
#include <system_error>
#include <unistd.h>

namespace {

/// What is known of standard output beside its buffer.
struct Held
{
    TerminalText text; ///< of what goes to a terminal
    bool isTransientShown = false;
    bool hasFailed = false;
};

Held& held()
{
    static Held theHeld; // standard output is one for the process as well
    return theHeld;
}

[[noreturn]] void failToWrite(int code)
{
    held().hasFailed = true;
    fail(code == EPIPE ? PipeWrite : code, "Write error: " + std::generic_category().message(code));
}

void put(std::string_view bytes)
{
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) < bytes.size()) {
        failToWrite(errno);
    }
}

void eraseTransient()
{
    if (held().isTransientShown) {
        held().isTransientShown = false;
        static_cast<void>(std::fputs("\x1b[K", stdout));
    }
}

/// Makes way for text.
void prepare()
{
    eraseTransient();
    if (Pager::isUsed() && !Pager::isRunning()) {
        static_cast<void>(std::fflush(stdout));
        const std::string failure = Pager::start();
        if (!failure.empty()) {
            Output::writeError(fmt::format("{}: warning: {}\n", programName(), failure));
        } else {
            // Whoever waits for the first lines sees them.
            static_cast<void>(std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ));
        }
    }
}

/// Standard error; while a pager shows the output, what would disturb it goes there as well.
std::FILE* errorStream() { return Pager::isRunning() && Pager::isBeforeTerminal(STDERR_FILENO) ? stdout : stderr; }

} // namespace

void Output::reserveStandardStreams()
{
    // A closed input is empty, as in Subversion. Outputs are open for the direction that nobody uses: writing fails.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            static_cast<void>(open("/dev/null", O_RDONLY));
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
    if (bytes.empty()) {
        return;
    }
    prepare();
    TerminalText& text = held().text;
    if (!Pager::isBeforeTerminal(STDOUT_FILENO) || (!text.hasRest() && TerminalText::isPlain(bytes))) {
        put(bytes);
    } else {
        put(text.shown(bytes));
    }
}

void Output::writeControl(std::string_view sequence)
{
    prepare();
    put(held().text.rest());
    put(sequence);
}

void Output::flush()
{
    eraseTransient();
    put(held().text.rest());
    errno = 0;
    if (std::fflush(stdout) != 0) {
        failToWrite(errno);
    }
}

bool Output::hasFailed() { return held().hasFailed; }

void Output::end()
{
    static_cast<void>(std::fflush(stdout)); // what failed was told when it was flushed first
    Pager::end();
}

void Output::makeWayForQuestion() noexcept
{
    eraseTransient();
    static_cast<void>(std::fflush(stdout)); // a failure is met again when the output ends
    Pager::leave();
}

void Output::writeError(std::string_view text) { writeErrorBytes(NativeText::fromUTF8(text)); }

void Output::writeErrorBytes(std::string_view bytes)
{
    eraseTransient();
    static_cast<void>(std::fflush(stdout)); // a failure is met again when the output ends
    const std::string shown = Pager::isBeforeTerminal(STDERR_FILENO) ? shownOnTerminal(bytes) : std::string{bytes};
    static_cast<void>(std::fwrite(shown.data(), 1, shown.size(), errorStream())); // there is nowhere to tell it
}

std::string Output::shownOnTerminal(std::string_view bytes)
{
    TerminalText text;
    const std::string shown = text.shown(bytes);
    return shown + text.rest();
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
    held().isTransientShown = true;
}
