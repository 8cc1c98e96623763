#pragma once

#include "HSVNStreams.h"

#include <iosfwd>
#include <string>

/// Reads from a stream of the C++ library, which must outlive it.
class HSVN_EXPORT HSVNStandardInputStream : public HSVNInputStream
{
  public:
    /// @param stream  must outlive this object
    explicit HSVNStandardInputStream(std::istream& stream) : _stream{stream} {}
    std::int64_t read(char* buffer, std::size_t maxLength) override;
    std::string className() const override { return "HSVNStandardInputStream"; }

  private:
    std::istream& _stream;
};

/// Writes to a stream of the C++ library, which must outlive it.
class HSVN_EXPORT HSVNStandardOutputStream : public HSVNOutputStream
{
  public:
    /// @param stream  must outlive this object
    explicit HSVNStandardOutputStream(std::ostream& stream) : _stream{stream} {}
    std::int64_t write(const char* buffer, std::size_t maxLength) override;
    std::string className() const override { return "HSVNStandardOutputStream"; }

  private:
    std::ostream& _stream;
};

/// Reads bytes held in memory.
class HSVN_EXPORT HSVNMemoryInputStream : public HSVNInputStream
{
  public:
    /// @param bytes  what is read, from the first byte on
    explicit HSVNMemoryInputStream(std::string bytes);
    std::int64_t read(char* buffer, std::size_t maxLength) override;
    std::string className() const override { return "HSVNMemoryInputStream"; }

  private:
    std::string _bytes;
    std::size_t _position = 0;
};

/// Gathers the bytes in memory.
class HSVN_EXPORT HSVNMemoryOutputStream : public HSVNOutputStream
{
  public:
    std::int64_t write(const char* buffer, std::size_t maxLength) override;
    std::string className() const override { return "HSVNMemoryOutputStream"; }
    /// All bytes written so far.
    const std::string& bytes() const { return _bytes; }
    /// Hands the bytes over and starts again with none.
    std::string takeBytes();

  private:
    std::string _bytes;
};

/// An open file of the operating system, closed when the object goes.
class HSVN_EXPORT HSVNFileDescriptor
{
  public:
    /// @param flags  as open(2) takes them
    /// @throws HSVNException with the status of the operating system when the file cannot be opened
    HSVNFileDescriptor(const std::string& path, int flags);
    ~HSVNFileDescriptor();
    HSVNFileDescriptor(const HSVNFileDescriptor&) = delete;
    HSVNFileDescriptor& operator=(const HSVNFileDescriptor&) = delete;

    /// The number; -1 once closed.
    int number() const { return _number; }
    /// Closes the file early; a second call does nothing.
    ///
    /// @throws HSVNException when bytes written before could not be stored after all
    void close();

  private:
    std::string _path;
    int _number;
};

/// Reads a local file.
class HSVN_EXPORT HSVNFileInputStream : public HSVNInputStream
{
  public:
    /// @throws HSVNException, of the class that the status maps to, when the file cannot be opened
    explicit HSVNFileInputStream(const std::string& path);
    std::int64_t read(char* buffer, std::size_t maxLength) override;
    std::string className() const override { return "HSVNFileInputStream"; }

  private:
    HSVNFileDescriptor _file;
};

/// Writes a local file, new or in place of an old one's contents.
class HSVN_EXPORT HSVNFileOutputStream : public HSVNOutputStream
{
  public:
    /// @throws HSVNException, of the class that the status maps to, when the file cannot be opened or made
    explicit HSVNFileOutputStream(const std::string& path);
    std::int64_t write(const char* buffer, std::size_t maxLength) override;
    /// Ends the file; what is written after it fails.
    ///
    /// @throws HSVNException when bytes written before could not be stored after all
    void close() { _file.close(); }
    std::string className() const override { return "HSVNFileOutputStream"; }

  private:
    HSVNFileDescriptor _file;
};
