#include "DatabaseSchema.h"

#if defined(HSVN_FAST_STATUS) || defined(HSVN_GUARDS_DATABASES)

#include "SQLiteHandles.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>

namespace HSVNAdapter {
namespace {

/// Those of the formats 29 to 32, in small letters and without white space; the second is that of working copies which
/// were begun before the release of 1.7.
constexpr std::array<std::string_view, 8> knownStatements{
    "createviewnodes_currentasselect*fromnodesasnwhereop_depth=(selectmax(op_depth)fromnodesasn2"
    "wheren2.wc_id=n.wc_idandn2.local_relpath=n.local_relpath)",
    "createviewnodes_currentasselect*fromnodesjoin(selectwc_id,local_relpath,max(op_depth)asop_depthfromnodes"
    "groupbywc_id,local_relpath)asfilteronnodes.wc_id=filter.wc_idandnodes.local_relpath=filter.local_relpath"
    "andnodes.op_depth=filter.op_depth",
    "createviewnodes_baseasselect*fromnodeswhereop_depth=0",
    "createtriggernodes_insert_triggerafterinsertonnodeswhennew.checksumisnotnullbegin"
    "updatepristinesetrefcount=refcount+1wherechecksum=new.checksum;end",
    "createtriggernodes_delete_triggerafterdeleteonnodeswhenold.checksumisnotnullbegin"
    "updatepristinesetrefcount=refcount-1wherechecksum=old.checksum;end",
    "createtriggernodes_update_checksum_triggerafterupdateofchecksumonnodeswhennew.checksumisnotold.checksumbegin"
    "updatepristinesetrefcount=refcount+1wherechecksum=new.checksum;"
    "updatepristinesetrefcount=refcount-1wherechecksum=old.checksum;end",
    "createtriggernodes_delete_triggerafterdeleteonnodeswhenold.checksumisnotnullbegin"
    "updatepristinesetrefcount=refcount-1wherechecksum=old.checksum;"
    "deletefromtextbase_refswherewc_id=old.wc_idandlocal_relpath=old.local_relpathandop_depth=old.op_depth;end",
    "createtriggernodes_update_checksum_triggerafterupdateofchecksumonnodeswhennew.checksumisnotold.checksumbegin"
    "updatepristinesetrefcount=refcount+1wherechecksum=new.checksum;"
    "updatepristinesetrefcount=refcount-1wherechecksum=old.checksum;"
    "deletefromtextbase_refswherewc_id=old.wc_idandlocal_relpath=old.local_relpathandop_depth=old.op_depth;end"};

/// Whether a table or an index has what none of Subversion's has: an expression that is computed for each row, as
/// slowly as who wrote it likes.
bool hasExpression(std::string_view text)
{
    constexpr std::array<std::string_view, 5> signs{"as(", "check(", "default(", "/*", "--"};
    return std::ranges::any_of(signs, [&](auto sign) { return text.find(sign) != std::string_view::npos; }) ||
           (!text.starts_with("createtable") && std::ranges::count(text, '(') > 1);
}

/// By its text alone: what the rows call their kind SQLite does not look at.
bool isForeign(std::string_view text)
{
    constexpr std::array<std::string_view, 3> stored{"createtable", "createindex", "createuniqueindex"};
    return std::ranges::any_of(stored, [&](auto beginning) { return text.starts_with(beginning); })
               ? hasExpression(text)
               : std::ranges::find(knownStatements, text) == knownStatements.end();
}

std::string withoutSpace(std::string_view text)
{
    std::string rest;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (std::isspace(byte) == 0) {
            rest += static_cast<char>(std::tolower(byte));
        }
    }
    return rest;
}

} // namespace

bool hasForeignSchema(sqlite3* database)
{
    const auto rows = prepareStatement(database, "SELECT sql FROM sqlite_master WHERE sql IS NOT NULL");
    while (rows && sqlite3_step(rows.get()) == SQLITE_ROW) {
        if (isForeign(withoutSpace(textInColumn(rows.get(), 0)))) {
            return true;
        }
    }
    return false;
}

} // namespace HSVNAdapter

#endif
