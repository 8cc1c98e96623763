#pragma once

#include "StandIns.h"

#include <memory>
#include <sqlite3.h>
#include <string_view>

namespace HSVNAdapter {

struct SQLiteCloser
{
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SQLiteDatabase = std::unique_ptr<sqlite3, SQLiteCloser>;
using SQLiteStatement = std::unique_ptr<sqlite3_stmt, SQLiteCloser>;

/// Null when the database has not what the statement asks for.
inline SQLiteStatement prepareStatement(sqlite3* database, const char* text)
{
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
    return SQLiteStatement{statement};
}

/// The column's text, valid until the next step; empty for NULL.
inline std::string_view textInColumn(sqlite3_stmt* row, int column)
{
#ifdef HSVN_GUARDS_DATABASES
    const auto bytesAt = HSVN_BEHIND(sqlite3_column_blob); // the one in front looks at what Subversion reads
#else
    const auto bytesAt = sqlite3_column_blob;
#endif
    // Unlike the text, the bytes are not copied to get a zero at their end.
    const auto* text = static_cast<const char*>(bytesAt(row, column));
    return text == nullptr ? std::string_view{}
                           : std::string_view{text, static_cast<std::size_t>(sqlite3_column_bytes(row, column))};
}

} // namespace HSVNAdapter
