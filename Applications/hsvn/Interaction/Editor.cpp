#include "Interaction/Editor.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Targets.h"
#include "CommandLine/TextFiles.h"
#include "Output/Output.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

[[noreturn]] void failWith(int code, const std::string& what, const std::string& path)
{
    fail(code, fmt::format("Can't {} '{}': {}", what, path, std::generic_category().message(code)));
}

/// Makes a file that was not there: "name.tmp", "name.2.tmp" and so on.
std::pair<std::string, int> makeFile(const std::string& folder, const std::string& baseName)
{
    for (int number = 1;; ++number) {
        const std::string name = number == 1 ? baseName + ".tmp" : fmt::format("{}.{}.tmp", baseName, number);
        const std::string path = joined(folder, name);
        const int descriptor =
            open(NativeText::fromUTF8(path).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666); // NOLINT: mode
        if (descriptor >= 0) {
            return {name, descriptor};
        }
        if (errno != EEXIST) {
            failWith(errno, "create temporary file in", localStyle(folder));
        }
    }
}

/// Makes a file of a random name that only its owner may read: what is edited may be nobody else's business.
std::pair<std::string, int> makePrivateFile(const std::string& folder)
{
    std::string path = NativeText::fromUTF8(joined(folder, "svn-XXXXXX.tmp"));
    constexpr int suffixLength = 4;
    const int descriptor = mkostemps(path.data(), suffixLength, O_CLOEXEC);
    if (descriptor < 0) {
        failWith(errno, "create temporary file in", localStyle(folder));
    }
    return {baseName(NativeText::toUTF8(path)), descriptor};
}

/// A file's name as one word of a shell's command line, quoted as Subversion does: a plain name is put between
/// quotation marks, in any other each character that a shell or white space gives a meaning gets a backslash. A line
/// end, which a shell takes away with its backslash, is put between apostrophes. A name that an editor would take for
/// an option or a command of its own gets its folder.
std::string shellWord(const std::string& name)
{
    constexpr std::string_view special = "&;`'\"|*?~<>^()[]{}$\\\n";
    constexpr std::string_view escaped = "&;`'\"|*?~<>^()[]{}$\\# \t\r";
    const std::string file = name.starts_with('-') || name.starts_with('+') ? "./" + name : name;
    if (file.find_first_of(special) == std::string::npos) {
        return '"' + file + '"';
    }
    std::string word;
    for (const char letter : file) {
        if (letter == '\n') {
            word += "'\n'";
            continue;
        }
        if (escaped.find(letter) != std::string_view::npos) {
            word += '\\';
        }
        word += letter;
    }
    return word;
}

/// Stands in a folder while it lives.
class WorkingFolder
{
  public:
    explicit WorkingFolder(const std::string& folder)
    {
        std::error_code failure;
        _former = std::filesystem::current_path(failure);
        failure.clear(); // one that is gone is no place to go back to
        if (!folder.empty()) {
            std::filesystem::current_path(NativeText::fromUTF8(folder), failure);
        }
        if (failure) {
            failWith(failure.value(), "change working directory to", localStyle(folder));
        }
    }
    ~WorkingFolder()
    {
        std::error_code ignored;
        std::filesystem::current_path(_former, ignored);
    }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

  private:
    std::filesystem::path _former;
};

} // namespace

Editor::Editor(Session& session, std::string folder, std::string baseName)
    : _session{session}, _folder{std::move(folder)}, _baseName{std::move(baseName)}
{
}

std::optional<std::string> Editor::edit(const std::string& text)
{
    const auto& encoding = _session.options.encoding;
    const auto edited = editAsBytes(NativeText::fromUTF8(text, encoding));
    try {
        return edited ? std::optional{withUnixLineEnds(NativeText::toUTF8(*edited, encoding))} : std::nullopt;
    } catch (const HSVNException& exception) {
        throw wrapped(exception, "Error normalizing edited contents to internal format");
    }
}

std::optional<std::string> Editor::editAsBytes(const std::string& bytes)
{
    using namespace std::chrono_literals;
    const std::string program = command();
    {
        const WorkingFolder reachable{_folder};
    }
    const auto [name, descriptor] = makeFile(_folder, _baseName);
    _file = joined(_folder, name);
    const std::filesystem::path native = NativeText::fromUTF8(_file);
    writeAndClose(descriptor, bytes, _file);
    // A file that is saved within the clock's tick, at the same size, is still seen to have changed.
    std::filesystem::last_write_time(native, std::filesystem::last_write_time(native) - 2000s);
    const auto time = std::filesystem::last_write_time(native);
    run(program, name);
    if (std::filesystem::last_write_time(native) == time && std::filesystem::file_size(native) == bytes.size()) {
        return std::nullopt;
    }
    return contentsOfFile(_file);
}

void Editor::editFile(Session& session, const std::string& path)
{
    const Editor editor{session, path.substr(0, path.rfind('/')), ""};
    editor.run(editor.command(), baseName(path));
}

std::string Editor::editBytes(Session& session, const std::string& bytes)
{
    const std::string folder = temporaryFolder();
    Editor editor{session, folder, ""};
    const auto [name, descriptor] = makePrivateFile(folder);
    editor._file = joined(folder, name);
    try {
        writeAndClose(descriptor, bytes, editor._file);
        editFile(session, editor._file);
        std::string edited = contentsOfFile(editor._file);
        editor.removeFile();
        return edited;
    } catch (const HSVNException&) {
        editor.removeFile();
        throw;
    }
}

void Editor::removeFile()
{
    std::error_code ignored;
    std::filesystem::remove(NativeText::fromUTF8(std::exchange(_file, "")), ignored);
}

std::string Editor::command() const
{
    const auto ofEnvironment = [](const char* name) {
        const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody changes the environment
        return value && *value != '\0' ? std::optional<std::string>{value} : std::nullopt;
    };
    auto found = _session.options.editorCommand;
    found = found ? found : ofEnvironment("SVN_EDITOR");
    if (!found) {
        const auto configured = _session.client()->optionForName("editor-cmd", HSVNConfigCategoryConfig,
                                                                 HSVNConfigSectionHelpers, std::nullopt);
        found = configured ? std::optional{NativeText::fromUTF8(*configured)} : std::nullopt;
    }
    found = found ? found : ofEnvironment("VISUAL");
    found = found ? found : ofEnvironment("EDITOR");
    // The link by which Debian names its users' choice.
    std::string program = found.value_or("/usr/bin/editor");
    if (program.find_first_not_of(" \t\n\v\f\r") == std::string::npos) {
        fail(NoEditor, "The EDITOR, SVN_EDITOR or VISUAL environment variable or 'editor-cmd' run-time configuration "
                       "option is empty or consists solely of whitespace. Expected a shell command.");
    }
    return program;
}

void Editor::run(const std::string& command, const std::string& fileName) const
{
    Output::flush();
    const WorkingFolder folder{_folder};
    const std::string line = fmt::format("{} {}", command, shellWord(fileName));
    const int result = std::system(line.c_str()); // NOLINT: the user's own command line
    if (result != 0) {
        fail(ExternalProgram, fmt::format("system('{}') returned {}", NativeText::toUTF8(line), result));
    }
}
