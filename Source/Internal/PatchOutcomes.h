#pragma once

#include "HSVNPatchedItem.h"
#include "Internal/Operation.h"

#include <vector>

/// Records what Subversion tells of a patch while it applies one. Notifications go on to whoever was told of them
/// before; as long as the object is there.
class HSVNPatchOutcomes
{
  public:
    explicit HSVNPatchOutcomes(HSVNOperation& operation);
    ~HSVNPatchOutcomes();
    HSVNPatchOutcomes(const HSVNPatchOutcomes&) = delete;
    HSVNPatchOutcomes& operator=(const HSVNPatchOutcomes&) = delete;

    std::vector<HSVNPatchedItem> take() { return std::move(_items); }

  private:
    static void notify(void* baton, const svn_wc_notify_t* record, apr_pool_t* pool);
    void record(const svn_wc_notify_t& record);

    HSVNOperation& _operation;
    svn_wc_notify_func2_t _function;
    void* _baton;
    std::vector<HSVNPatchedItem> _items;
};
