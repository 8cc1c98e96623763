#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// Makes one meaning of "nothing was committed": no information.
///
/// Older lines leave the pointer as it was, newer ones hand out a record with revision -1.
class CommitInformation
{
  public:
    explicit CommitInformation(svn_commit_info_t** info) : _info{info} { *_info = nullptr; }
    ~CommitInformation()
    {
        if (*_info != nullptr && !SVN_IS_VALID_REVNUM((*_info)->revision)) {
            *_info = nullptr;
        }
    }
    CommitInformation(const CommitInformation&) = delete;
    CommitInformation& operator=(const CommitInformation&) = delete;

  private:
    svn_commit_info_t** _info;
};

} // namespace HSVNAdapter
