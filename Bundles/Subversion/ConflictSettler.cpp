#include "ConflictSettler.h"

#if HSVN_LINE_MINOR >= 7

namespace HSVNAdapter {
namespace {

svn_error_t* choose(svn_wc_conflict_result_t** result, const svn_wc_conflict_description2_t* conflict, void* baton,
                    apr_pool_t* resultPool, apr_pool_t* /*scratchPool*/)
{
    const auto& choosing = *static_cast<const HSVNConflictFunctions::Choosing*>(baton);
    int choice = svn_wc_conflict_choose_postpone;
    SVN_ERR(choosing.choose(choosing.baton, &choice, conflict));
    *result = svn_wc_create_conflict_result(static_cast<svn_wc_conflict_choice_t>(choice), nullptr, resultPool);
    return SVN_NO_ERROR;
}

} // namespace

ConflictSettler::ConflictSettler(svn_client_ctx_t* ctx, const HSVNConflictFunctions::Choosing* choosing)
    : _ctx{ctx}, _function{ctx->conflict_func2}, _baton{ctx->conflict_baton2}
{
    if (choosing != nullptr) {
        ctx->conflict_func2 = choose;
        ctx->conflict_baton2 = const_cast<HSVNConflictFunctions::Choosing*>(choosing);
    }
}

ConflictSettler::~ConflictSettler()
{
    _ctx->conflict_func2 = _function;
    _ctx->conflict_baton2 = _baton;
}

} // namespace HSVNAdapter

#endif
