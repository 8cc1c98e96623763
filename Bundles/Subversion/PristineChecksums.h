#pragma once

#include "SubversionLine.h"

#ifdef HSVN_FAST_STATUS

#include "SQLiteHandles.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace HSVNAdapter {

using SHA1Digest = std::array<std::uint8_t, 20>;
using MD5Digest = std::array<std::uint8_t, 16>;

/// The digest in a text such as "$sha1$..."; none for any other text.
std::optional<SHA1Digest> sha1DigestFromText(std::string_view text);

/// Answers the MD5 of pristine texts by their SHA-1.
///
/// Looked up one by one at first. Once many are asked for, every answer pays for reading a few rows of the table ahead,
/// so that most are known before long and no one of them takes the time of the whole table.
class PristineChecksums
{
  public:
    /// Whether the database has the table.
    bool open(sqlite3* database);
    /// Most texts will be asked for: rows are read ahead from the start.
    void expectAll() { _asked = _rows; }
    std::optional<MD5Digest> md5(const SHA1Digest& sha1);

  private:
    struct Slot
    {
        SHA1Digest sha1;
        MD5Digest md5;
        bool isTaken;
    };

    std::optional<MD5Digest> lookUp(const SHA1Digest& sha1);
    void readAhead();
    /// Whether there was a row.
    bool takeNextRow();
    Slot& slotFor(const SHA1Digest& sha1);

    SQLiteStatement _one;
    SQLiteStatement _further;
    std::size_t _rows = 0;
    std::size_t _asked = 0;
    std::int64_t _lastRow = 0; ///< that was read ahead
    std::size_t _taken = 0;
    bool _isRead = false;     ///< the table, to its end
    std::vector<Slot> _slots; ///< open addressing, at most half full; empty until rows are read ahead
};

} // namespace HSVNAdapter

#endif
