#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// What a finished program left behind.
struct CommandResult
{
    int exitCode; ///< 128 plus the signal's number when a signal ended it
    std::string output;
    std::string errors;
};

/// Runs an installed program, found along PATH, to its end.
///
/// @param arguments  the program's name and its arguments
/// @param input      what it reads from its standard input
CommandResult runCommand(const std::vector<std::string>& arguments, const std::string& input = {});

/// The same for a program that must succeed: its output.
///
/// @throws std::runtime_error with the program's errors when it does not
std::string mustRun(const std::vector<std::string>& arguments, const std::string& input = {});

/// A program that runs in the background; ended by its process id when the object goes, or when the tests die.
class BackgroundCommand
{
  public:
    explicit BackgroundCommand(const std::vector<std::string>& arguments);
    ~BackgroundCommand();
    BackgroundCommand(const BackgroundCommand&) = delete;
    BackgroundCommand& operator=(const BackgroundCommand&) = delete;

    bool isRunning();

  private:
    pid_t _process;
};
