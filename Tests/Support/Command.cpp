#include "Command.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File scratchFile(const std::string& contents = {})
{
    File file{std::tmpfile(), &std::fclose};
    if (!file || std::fwrite(contents.data(), 1, contents.size(), file.get()) != contents.size()) {
        throw std::system_error(errno, std::generic_category(), "scratch file");
    }
    std::rewind(file.get());
    return file;
}

std::string contentsOf(std::FILE* file)
{
    std::string contents;
    std::array<char, 4096> buffer{};
    std::rewind(file);
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file)) {
        contents.append(buffer.data(), count);
    }
    return contents;
}

/// What the new process does, in the memory of the tests: only calls that change nothing there.
[[noreturn]] void becomeProgram(char* const* arguments, const std::array<int, 3>& streams, bool isApart, pid_t tests)
{
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != tests || (isApart && setpgid(0, 0) != 0)) {
        _exit(126);
    }
    for (int target = 0; target < 3; ++target) {
        const int source = streams[static_cast<std::size_t>(target)];
        if (source >= 0 && dup2(source, target) < 0) {
            _exit(126);
        }
    }
    execvp(*arguments, arguments);
    _exit(127);
}

/// Starts a program on the given descriptors, which stand for its standard streams; -1 keeps the tests' own.
///
/// @param isApart  whether it leads a group of processes of its own: some servers end their whole group
pid_t start(const std::vector<std::string>& arguments, const std::array<int, 3>& streams, bool isApart = false)
{
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const auto& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    const pid_t tests = getpid();
    // Not fork: under a sanitizer, copying the tables of its memory takes longer than most programs run.
    const pid_t child = vfork();
    if (child == 0) {
        becomeProgram(pointers.data(), streams, isApart, tests);
    }
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "vfork");
    }
    return child;
}

int waitFor(pid_t process)
{
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "waitpid");
        }
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

CommandResult runCommand(const std::vector<std::string>& arguments, const std::string& input)
{
    const File in = scratchFile(input);
    const File out = scratchFile();
    const File err = scratchFile();
    const int exitCode = waitFor(start(arguments, {fileno(in.get()), fileno(out.get()), fileno(err.get())}));
    return {exitCode, contentsOf(out.get()), contentsOf(err.get())};
}

std::string mustRun(const std::vector<std::string>& arguments, const std::string& input)
{
    CommandResult result = runCommand(arguments, input);
    if (result.exitCode != 0) {
        std::string message;
        for (const auto& argument : arguments) {
            message += argument + ' ';
        }
        throw std::runtime_error(message + "ended with " + std::to_string(result.exitCode) + ": " + result.errors);
    }
    return result.output;
}

BackgroundCommand::BackgroundCommand(const std::vector<std::string>& arguments)
    : _process{start(arguments, {-1, -1, -1}, true)}
{
}

BackgroundCommand::~BackgroundCommand()
{
    if (isRunning()) {
        kill(_process, SIGTERM);
        waitFor(_process);
    }
}

bool BackgroundCommand::isRunning()
{
    if (_process > 0 && waitpid(_process, nullptr, WNOHANG) != 0) {
        _process = -1;
    }
    return _process > 0;
}
