#include "Output/Pager.h"

#include "CommandLine/Cancellation.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <optional>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

/// The pager of the process.
struct State
{
    std::string command; ///< of a shell; empty when none is used
    pid_t process = 0;   ///< 0 when none runs
    int terminal = -1;   ///< what standard output was before
};

State& state()
{
    static State theState;
    return theState;
}

std::optional<std::string_view> ofEnvironment(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody changes the environment
    return value ? std::optional<std::string_view>{value} : std::nullopt;
}

/// Whether the shell would find the program of a command line; one that is more than words is left to the shell.
bool canBeFound(std::string_view command)
{
    constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_+-./ ";
    const std::string_view program = command.substr(0, command.find(' '));
    if (program.empty() || command.find_first_not_of(plain) != std::string_view::npos) {
        return true;
    }
    if (program.find('/') != std::string_view::npos) {
        return access(std::string{program}.c_str(), X_OK) == 0;
    }
    for (std::string_view folders = ofEnvironment("PATH").value_or("/usr/bin:/bin");;) {
        const auto end = folders.find(':');
        if (access(fmt::format("{}/{}", end == 0 ? "." : folders.substr(0, end), program).c_str(), X_OK) == 0) {
            return true;
        }
        if (end == std::string_view::npos) {
            return false;
        }
        folders.remove_prefix(end + 1);
    }
}

constexpr std::string_view defaultCommand = "less";

/// The command line of the user's pager; empty for none.
std::string commandOfUser()
{
    const auto chosen = ofEnvironment("HSVN_PAGER");
    const std::string_view command = chosen ? *chosen : ofEnvironment("PAGER").value_or(defaultCommand);
    const bool isMissingDefault = command == defaultCommand && !canBeFound(command);
    return command == "cat" || isMissingDefault ? "" : std::string{command};
}

/// The environment with what pagers need to know: text that fits on the screen is left there, colours pass.
std::vector<std::string> environmentOfPager()
{
    std::vector<std::string> result;
    for (char** each = environ; *each; ++each) {
        result.emplace_back(*each);
    }
    for (const auto& [name, value] : {std::pair{"LESS", "FRX"}, std::pair{"LV", "-c"}}) {
        if (!ofEnvironment(name)) {
            result.push_back(fmt::format("{}={}", name, value));
        }
    }
    return result;
}

/// Pointers to the texts, and a null one.
std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    std::transform(texts.begin(), texts.end(), std::back_inserter(pointers),
                   [](std::string& text) { return text.data(); });
    pointers.push_back(nullptr);
    return pointers;
}

/// Starts a command line of the shell that reads from a descriptor; the system's code when it fails.
int spawn(const std::string& command, int input, pid_t& process)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    // The program itself goes on when a reader is gone; others end by it.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t broken;
    sigemptyset(&broken);
    sigaddset(&broken, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &broken);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    std::vector<std::string> words{"sh", "-c", command};
    std::vector<std::string> environment = environmentOfPager();
    const int failure = posix_spawn(&process, "/bin/sh", &actions, &attributes, pointersTo(words).data(),
                                    pointersTo(environment).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return failure;
}

/// Starts the pager in the place of standard output; the system's code when it fails.
int takeOutputOver(State& pager)
{
    if (!canBeFound(pager.command)) {
        return ENOENT;
    }
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return errno;
    }
    pid_t process = 0;
    const int failure = spawn(pager.command, ends[0], process);
    if (failure == 0) {
        pager.terminal = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
        dup2(ends[1], STDOUT_FILENO);
        pager.process = process;
    }
    close(ends[0]);
    close(ends[1]);
    return failure;
}

} // namespace

bool Pager::isBeforeTerminal(int descriptor)
{
    // As it was before a pager came between.
    static const std::array are{isatty(STDIN_FILENO) == 1, isatty(STDOUT_FILENO) == 1, isatty(STDERR_FILENO) == 1};
    return are.at(static_cast<std::size_t>(descriptor));
}

void Pager::use()
{
    const std::string_view kind = ofEnvironment("TERM").value_or("");
    if (isBeforeTerminal(STDOUT_FILENO) && !kind.empty() && kind != "dumb" && !isRunning()) {
        state().command = commandOfUser();
    }
}

bool Pager::isUsed() { return isRunning() || !state().command.empty(); }

bool Pager::showsColours()
{
    const auto options = ofEnvironment("LESS");
    return !options || options->find_first_of("rR") != std::string_view::npos;
}

std::string Pager::start()
{
    State& pager = state();
    if (isRunning() || pager.command.empty()) {
        return {};
    }
    if (const int failure = takeOutputOver(pager)) {
        return fmt::format("cannot start the pager '{}': {}", std::exchange(pager.command, {}),
                           std::generic_category().message(failure));
    }
    Cancellation::outlastInterrupts();
    return {};
}

bool Pager::isRunning() { return state().process != 0; }

void Pager::leave()
{
    if (!isRunning()) {
        return;
    }
    // An interrupt is the pager's business until then.
    auto* const atInterrupts = std::signal(SIGINT, SIG_IGN);
    const int terminal = std::exchange(state().terminal, -1);
    dup2(terminal, STDOUT_FILENO);
    close(terminal);
    const pid_t process = std::exchange(state().process, 0);
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
    static_cast<void>(std::signal(SIGINT, atInterrupts));
}

void Pager::end()
{
    leave();
    state().command.clear();
}
