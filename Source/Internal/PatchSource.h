#pragma once

#include "HSVNReceiver.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// The bytes of a patch, read from wherever they are: in a file, which is held open, or in memory. Any thread.
class HSVNPatchSource
{
  public:
    virtual ~HSVNPatchSource() = default;
    HSVNPatchSource(const HSVNPatchSource&) = delete;
    HSVNPatchSource& operator=(const HSVNPatchSource&) = delete;

    virtual std::uint64_t size() const = 0;
    /// Reads as many bytes as there are and fit.
    ///
    /// @return how many; 0 behind the last one
    /// @throws HSVNGenericException when they cannot be read, or are no longer those that the source was made of
    virtual std::size_t read(std::uint64_t offset, char* buffer, std::size_t capacity) const = 0;

    /// Hands a stretch of bytes over, piece by piece, until the receiver stops.
    void read(std::uint64_t offset, std::uint64_t size, const HSVNContentsReceiver& receiver) const;

  protected:
    HSVNPatchSource() = default;
};

using HSVNPatchSourceRef = std::shared_ptr<const HSVNPatchSource>;

/// The bytes of a text.
HSVNPatchSourceRef HSVNPatchSourceOfText(std::string text);

/// Takes bytes into a file without a name, which nobody else can open, and which goes with the source made of it.
class HSVNPatchSpool
{
  public:
    /// @throws HSVNException with the system's code
    HSVNPatchSpool();
    ~HSVNPatchSpool();
    HSVNPatchSpool(const HSVNPatchSpool&) = delete;
    HSVNPatchSpool& operator=(const HSVNPatchSpool&) = delete;

    /// @throws HSVNException with the system's code
    void write(std::string_view bytes);
    /// A name by which this process opens the file as long as the spool is there.
    std::string path() const;
    /// What was written until now, on its own.
    HSVNPatchSourceRef source() const;

  private:
    int _descriptor;
};

/// A patch's file that is open.
struct HSVNPatchFile
{
    HSVNPatchSourceRef source;
    std::string path;                       ///< by which the same bytes can be opened again
    std::unique_ptr<HSVNPatchSpool> copy{}; ///< of what is no regular file, such as a pipe
};

/// Opens a patch's file.
///
/// @throws HSVNException with the system's code when it cannot be read
HSVNPatchFile HSVNOpenPatch(const std::string& path);
