#include "Interaction/MergeTool.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "Output/Output.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fmt/format.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

/// The program of the environment, else of the configuration, in the locale's encoding.
std::optional<std::string> mergeTool(Session& session)
{
    const char* const named = std::getenv("SVN_MERGE"); // NOLINT(concurrency-mt-unsafe): nobody changes it
    if (named) {
        return named;
    }
    const auto configured = session.client()->optionForName("merge-tool-cmd", HSVNConfigCategoryConfig,
                                                            HSVNConfigSectionHelpers, std::nullopt);
    return configured ? std::optional{NativeText::fromUTF8(*configured)} : std::nullopt;
}

/// Runs a program and waits for it.
///
/// @return its exit code, 255 when it cannot be started
int run(const std::string& program, const std::vector<std::string>& arguments)
{
    std::vector<char*> words{const_cast<char*>(program.c_str())};
    for (const auto& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    Output::flush();
    const pid_t child = fork();
    if (child == 0) {
        execvp(words.front(), words.data());
        _exit(255); // NOLINT: the exit code of a program that cannot be started
    }
    int status = 0;
    while (child > 0 && waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            break;
        }
    }
    if (child < 0 || !WIFEXITED(status)) {
        fail(ExternalProgram,
             fmt::format("Process '{}' failed (exitwhy {})", NativeText::toUTF8(program), child < 0 ? 1 : 2));
    }
    return WEXITSTATUS(status);
}

} // namespace

bool hasMergeTool(Session& session) { return mergeTool(session).has_value(); }

bool launchMergeTool(Session& session, const HSVNConflictSides& files, const std::string& path)
{
    const auto tool = mergeTool(session);
    if (!tool) {
        fail(NoMergeTool, "The environment variable SVN_MERGE and the merge-tool-cmd run-time configuration option "
                          "were not set.\n");
    }
    std::vector<std::string> arguments;
    for (const auto& file : {files.base, files.theirNew, files.mine, std::optional{path}, std::optional{path}}) {
        arguments.push_back(NativeText::fromUTF8(file.value_or("")));
    }
    const int code = run(*tool, arguments);
    if (code > 1) {
        fail(ExternalProgram,
             fmt::format("The external merge tool '{}' exited with exit code {}.", NativeText::toUTF8(*tool), code));
    }
    return code == 0;
}
