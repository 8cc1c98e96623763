#pragma once

#include <HSVN/HSVN.h>

#include <cstddef>
#include <memory>
#include <string>

/// What an operation reported.
struct LibraryOutcome
{
    std::size_t items;                   ///< how many items; for "cat" bytes
    std::shared_ptr<const void> objects; ///< all of the operation's results, freed with the last reference
};

/// The library under measurement: the same operations as `PlainClient`, with the objects that the library makes of
/// them.
class LibraryClient
{
  public:
    /// Starts the library.
    LibraryClient();

    /// @param operation  its name
    /// @param target     a local path or a URL
    /// @throws std::invalid_argument for an unknown operation; HSVNException for every Subversion error
    LibraryOutcome run(const std::string& operation, const std::string& target) const;

  private:
    HSVNContextRef _context;
};
