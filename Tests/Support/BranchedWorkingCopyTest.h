#pragma once

#include "HSVNTarget.h"
#include "WorkingCopyTest.h"

/// A working copy of trunk, up to date, beside a branch with a change that trunk does not have, in revision 3.
class BranchedWorkingCopyTest : public WorkingCopyTest
{
  protected:
    BranchedWorkingCopyTest()
    {
        repository.change({"cp", "HEAD", "trunk", "branch"});
        writeFile(repository.beside("changed"), "changed\n");
        repository.change({"put", repository.beside("changed"), "branch/a.txt"});
        mustRun({"svn", "update", "--quiet", root});
    }
    HSVNTarget branch() const { return repository.url("branch"); }
};
