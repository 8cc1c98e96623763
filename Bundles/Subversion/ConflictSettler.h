#pragma once

#include "Internal/BundleExtensions.h"
#include "SubversionLine.h"

#if HSVN_LINE_MINOR >= 7

namespace HSVNAdapter {

/// Has conflicts settled as the caller chooses while it lives; those that nobody is asked about stay.
class ConflictSettler
{
  public:
    /// @param choosing  null asks nobody
    ConflictSettler(svn_client_ctx_t* ctx, const HSVNConflictFunctions::Choosing* choosing);
    ~ConflictSettler();
    ConflictSettler(const ConflictSettler&) = delete;
    ConflictSettler& operator=(const ConflictSettler&) = delete;

  private:
    svn_client_ctx_t* _ctx;
    svn_wc_conflict_resolver_func2_t _function;
    void* _baton;
};

} // namespace HSVNAdapter

#endif
