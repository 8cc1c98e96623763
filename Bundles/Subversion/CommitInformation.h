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

/// Tells a receiver of what a function of the older kind, which answers the record, committed, even where it failed
/// afterwards.
///
/// @param commit  is given where the record goes
template <class Commit>
svn_error_t* tellCommit(svn_commit_callback2_t receiver, void* baton, apr_pool_t* pool, Commit commit)
{
    svn_commit_info_t* info = nullptr;
    svn_error_t* const error = commit(&info);
    if (info == nullptr || !SVN_IS_VALID_REVNUM(info->revision)) {
        return error;
    }
    svn_error_t* const refused = receiver(info, baton, pool);
    if (error == nullptr) {
        return refused;
    }
    svn_error_clear(refused);
    return error;
}

} // namespace HSVNAdapter
