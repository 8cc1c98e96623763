#pragma once

#include "HSVNSubversionPrivate.h"

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
/// Looked up one by one at first; once that is to be done for a fair part of the table, the table is read whole.
class PristineChecksums
{
  public:
    /// Whether the database has the table.
    bool open(sqlite3* database);
    /// Tells that so many texts will be asked for.
    void expect(std::size_t texts);
    std::optional<MD5Digest> md5(const SHA1Digest& sha1);

  private:
    struct Slot
    {
        SHA1Digest sha1;
        MD5Digest md5;
        bool isTaken;
    };

    std::optional<MD5Digest> lookUp(const SHA1Digest& sha1);
    void readAll();
    Slot& slotFor(const SHA1Digest& sha1);

    SQLiteStatement _one;
    SQLiteStatement _all;
    std::size_t _rows = 0;
    std::size_t _expected = 0;
    std::vector<Slot> _slots; ///< open addressing, at most half full; empty until the table is read
};

} // namespace HSVNAdapter

#endif
