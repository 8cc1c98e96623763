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
    fillCheckOut(table);
    fillCommit(table);
    fillCopyAndMove(table);
    fillExport(table);
    fillImport(table);
    fillMakeDirectories(table);
    fillMerge(table);
    fillRemove(table);
    fillUpdate(table);
    fillReadingOperations(table);
    fillList(table);
    fillLog(table);
    fillProperties(table);
    fillLock(table);
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
