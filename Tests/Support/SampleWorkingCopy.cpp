#include "SampleWorkingCopy.h"

#include "Command.h"

SampleWorkingCopy::SampleWorkingCopy(const std::string& line) : _line{line}
{
    mustRun(
        {"tar", "-xzf", HSVN_TEST_SAMPLES "/" + line + ".tar.gz", "-C", _folder.path().string(), "--no-same-owner"});
}

void SampleWorkingCopy::relocate() const
{
    mustRun({"svn", "relocate", "file:///srv/hsvn-samples/" + _line, "file://" + (_folder / _line), path()});
}
