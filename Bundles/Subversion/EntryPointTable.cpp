#include "EntryPointTable.h"

namespace HSVNAdapter {
namespace {

HSVNBundleEntryPoints makeTable()
{
    HSVNBundleEntryPoints table{};
    fillRuntimeServices(table);
    fillAuthentication(table);
    fillDiffServices(table);
    fillStreams(table);
    fillWorkingCopyOperations(table);
    fillCommitOperations(table);
    fillChangeOperations(table);
    fillReadingOperations(table);
    fillPropertyOperations(table);
    fillLocking(table);
    fillStatus(table);
    fillWorkingCopyFormat(table);
    fillExternals(table);
    fillRepositoryAdministration(table);
    return table;
}

} // namespace

const HSVNBundleEntryPoints& entryPointTable()
{
    static const HSVNBundleEntryPoints table = makeTable();
    return table;
}

} // namespace HSVNAdapter
