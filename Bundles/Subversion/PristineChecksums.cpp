#include "PristineChecksums.h"

#ifdef HSVN_FAST_STATUS

#include "Internal/Hexadecimal.h"

#include <bit>
#include <cstring>
#include <string>

namespace HSVNAdapter {
namespace {

/// Rows are read ahead once a text of so many in the table has been asked for.
constexpr std::size_t readAheadShare = 64;
/// After so many answers rows are read ahead, four for each of them: together they take the time of one look-up.
constexpr std::size_t answersPerPortion = 32;
constexpr int rowsPerPortion = 4 * answersPerPortion;

constexpr std::string_view sha1Mark = "$sha1$";
constexpr std::string_view md5Mark = "$md5 $";

template <class Digest>
std::optional<Digest> digestFromText(std::string_view text, std::string_view mark)
{
    Digest digest{};
    const bool isDigest = text.starts_with(mark) && HSVNHexadecimal::read(text.substr(mark.size()), digest);
    return isDigest ? std::optional{digest} : std::nullopt;
}

std::string textFromSHA1Digest(const SHA1Digest& digest)
{
    return std::string{sha1Mark} + HSVNHexadecimal::textOf(digest);
}

} // namespace

std::optional<SHA1Digest> sha1DigestFromText(std::string_view text)
{
    return digestFromText<SHA1Digest>(text, sha1Mark);
}

bool PristineChecksums::open(sqlite3* database)
{
    _one = prepareStatement(database, "SELECT md5_checksum FROM pristine WHERE checksum = ?1");
    _further = prepareStatement(
        database, "SELECT rowid, checksum, md5_checksum FROM pristine WHERE rowid > ?1 ORDER BY rowid LIMIT ?2");
    const auto size = prepareStatement(database, "SELECT max(rowid) FROM pristine");
    if (!_one || !_further || !size || sqlite3_step(size.get()) != SQLITE_ROW) {
        return false;
    }
    _rows = static_cast<std::size_t>(sqlite3_column_int64(size.get(), 0));
    return true;
}

std::optional<MD5Digest> PristineChecksums::md5(const SHA1Digest& sha1)
{
    ++_asked;
    if (!_isRead && _asked % answersPerPortion == 0 && _asked * readAheadShare > _rows) {
        readAhead();
    }
    if (!_slots.empty()) {
        if (const auto& slot = slotFor(sha1); slot.isTaken) {
            return slot.md5;
        }
    }
    return lookUp(sha1);
}

/// The digest's slot, or the free one where it belongs.
PristineChecksums::Slot& PristineChecksums::slotFor(const SHA1Digest& sha1)
{
    std::size_t index = 0; // a digest's bytes are as good as any hash of them
    std::memcpy(&index, sha1.data(), sizeof index);
    for (;; ++index) {
        auto& slot = _slots[index & (_slots.size() - 1)];
        if (!slot.isTaken || slot.sha1 == sha1) {
            return slot;
        }
    }
}

std::optional<MD5Digest> PristineChecksums::lookUp(const SHA1Digest& sha1)
{
    const auto text = textFromSHA1Digest(sha1);
    sqlite3_bind_text(_one.get(), 1, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    std::optional<MD5Digest> result;
    if (sqlite3_step(_one.get()) == SQLITE_ROW) {
        result = digestFromText<MD5Digest>(textInColumn(_one.get(), 0), md5Mark);
    }
    sqlite3_reset(_one.get());
    return result;
}

void PristineChecksums::readAhead()
{
    if (_slots.empty()) {
        _slots.resize(std::bit_ceil(2 * (_rows + 1)));
    }
    // In portions, so that no writer has to wait for the whole table.
    sqlite3_bind_int64(_further.get(), 1, _lastRow);
    sqlite3_bind_int(_further.get(), 2, rowsPerPortion);
    int rows = 0;
    while (takeNextRow()) {
        ++rows;
    }
    sqlite3_reset(_further.get());
    _isRead = rows < rowsPerPortion;
}

bool PristineChecksums::takeNextRow()
{
    if (2 * (_taken + 1) >= _slots.size() || sqlite3_step(_further.get()) != SQLITE_ROW) {
        return false;
    }
    _lastRow = sqlite3_column_int64(_further.get(), 0);
    const auto sha1 = sha1DigestFromText(textInColumn(_further.get(), 1));
    const auto md5 = digestFromText<MD5Digest>(textInColumn(_further.get(), 2), md5Mark);
    if (sha1 && md5) {
        slotFor(*sha1) = {*sha1, *md5, true};
        ++_taken;
    }
    return true;
}

} // namespace HSVNAdapter

#endif
