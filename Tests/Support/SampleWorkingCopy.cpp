#include "SampleWorkingCopy.h"

#include "Command.h"

#include <filesystem>

SampleWorkingCopy::SampleWorkingCopy(const std::string& line) : _line{line}
{
    mustRun(
        {"tar", "-xzf", HSVN_TEST_SAMPLES "/" + line + ".tar.gz", "-C", _folder.path().string(), "--no-same-owner"});
}

void SampleWorkingCopy::relocate() const
{
    const std::string from = "file:///srv/hsvn-samples/" + _line;
    const std::string to = "file://" + (_folder / _line);
    if (std::filesystem::exists(path("wc/.svn/wc.db"))) {
        mustRun({"svn", "relocate", from, to, path()});
        return;
    }
    mustRun({"find", path(), "-path", "*/.svn/entries", "-exec", "chmod", "u+w", "{}", "+", "-exec", "sed", "-i",
             "s|" + from + "|" + to + "|g", "{}", "+"});
}
