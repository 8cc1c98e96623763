#pragma once

#include <string_view>

class HSVNContext;

/// A call on a context under way, for as long as the object lives.
///
/// Whatever touches a context's pool or client context makes one first. Calls from the callbacks of a call, on its
/// thread, nest. Another thread is refused: its call would change pools and databases under the first one's feet.
class HSVNContextUse
{
  public:
    /// @throws HSVNGenericException naming both threads when a call of another thread is under way
    explicit HSVNContextUse(const HSVNContext& context);
    ~HSVNContextUse();
    HSVNContextUse(const HSVNContextUse&) = delete;
    HSVNContextUse& operator=(const HSVNContextUse&) = delete;

    /// Whether no call lies around this one.
    bool isOutermost() const { return _isOutermost; }
    /// For what takes the ground from under any call around it.
    ///
    /// @param subject  what is to be changed, such as "bundle"
    /// @throws HSVNGenericException unless the call is the outermost one
    void requireOutermost(std::string_view subject) const;

  private:
    const HSVNContext& _context;
    bool _isOutermost;
};
