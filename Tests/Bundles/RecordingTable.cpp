#include "RecordingTable.h"

#include "CallRecorder.h"
#include "EntryPointTable.h"

namespace HSVNTestBundle {
namespace {

template <auto Place>
struct Recorded;

template <class Result, class... Arguments, Result (*HSVNBundleEntryPoints::*Place)(Arguments...)>
struct Recorded<Place>
{
    static inline const char* name = nullptr;

    static Result call(Arguments... arguments)
    {
        std::vector<std::string> texts;
        (appendText(texts, arguments), ...);
        record(name, texts);
        return (HSVNAdapter::entryPointTable().*Place)(arguments...);
    }
};

template <auto Place>
void recordPlace(HSVNBundleEntryPoints& table, const char* name)
{
    Recorded<Place>::name = name;
    table.*Place = Recorded<Place>::call;
}

} // namespace

#define HSVN_RECORD(place) recordPlace<&HSVNBundleEntryPoints::place>(table, "svn_" #place)

HSVNBundleEntryPoints recordingTable()
{
    HSVNBundleEntryPoints table = HSVNAdapter::entryPointTable();
    HSVN_RECORD(client_add3);
    HSVN_RECORD(client_cat2);
    HSVN_RECORD(client_checkout2);
    HSVN_RECORD(client_checkout3);
    HSVN_RECORD(client_cleanup);
    HSVN_RECORD(client_commit3);
    HSVN_RECORD(client_commit4);
    HSVN_RECORD(client_copy3);
    HSVN_RECORD(client_create_context);
    HSVN_RECORD(client_delete2);
    HSVN_RECORD(client_diff_peg3);
    HSVN_RECORD(client_export3);
    HSVN_RECORD(client_export4);
    HSVN_RECORD(client_import2);
    HSVN_RECORD(client_info);
    HSVN_RECORD(client_list);
    HSVN_RECORD(client_lock);
    HSVN_RECORD(client_log3);
    HSVN_RECORD(client_mkdir2);
    HSVN_RECORD(client_move4);
    HSVN_RECORD(client_propget2);
    HSVN_RECORD(client_proplist2);
    HSVN_RECORD(client_propset2);
    HSVN_RECORD(client_resolved);
    HSVN_RECORD(client_revert);
    HSVN_RECORD(client_status2);
    HSVN_RECORD(client_unlock);
    HSVN_RECORD(client_update3);
    HSVN_RECORD(client_update2);
    HSVN_RECORD(client_merge2);
    HSVN_RECORD(client_merge3);
    HSVN_RECORD(wc_check_wc);
    HSVN_RECORD(wc_get_adm_dir);
    HSVN_RECORD(wc_parse_externals_description3);
    HSVN_RECORD(wc_get_pristine_copy_path);
    HSVN_RECORD(repos_open);
    HSVN_RECORD(repos_create);
    HSVN_RECORD(repos_delete);
    return table;
}

} // namespace HSVNTestBundle
