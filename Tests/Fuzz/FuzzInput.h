#pragma once

#include <HSVN/HSVN.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

/// A function that libFuzzer, or what replays the seeds, calls once for every input.
///
/// What a target may do with its input is to throw one of the library's exceptions. Anything else that is thrown, a
/// sanitizer's report, `require` and an input that takes too long end the run.
#ifdef HSVN_REPLAY_SEEDS
#include "SeedReplay.h"
#define HSVN_FUZZ_TARGET                                                                                               \
    static int runTarget(const std::uint8_t* data, std::size_t size);                                                  \
    static const EnteredFuzzTarget enteredTarget{__FILE__, runTarget};                                                 \
    static int runTarget(const std::uint8_t* data, std::size_t size)
#else
#define HSVN_FUZZ_TARGET extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
#endif

/// The bytes of one run, taken piece by piece.
class FuzzInput
{
  public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : _rest{reinterpret_cast<const char*>(data), size} {}

    bool isEmpty() const { return _rest.empty(); }
    std::uint8_t byte()
    {
        const auto bytes = take(1);
        return bytes.empty() ? 0 : static_cast<std::uint8_t>(bytes.front());
    }
    /// Up to so many bytes.
    std::string take(std::size_t length)
    {
        const std::string taken{_rest.substr(0, length)};
        _rest.remove_prefix(taken.size());
        return taken;
    }
    /// Up to the next line feed, without it.
    std::string line()
    {
        auto taken = take(std::min(_rest.find('\n'), _rest.size()));
        take(1);
        return taken;
    }
    std::string rest() { return take(_rest.size()); }

  private:
    std::string_view _rest;
};

/// Ends the run when what must hold for every input does not.
inline void require(bool holds, const char* what)
{
    if (!holds) {
        std::cerr << "not so: " << what << '\n';
        std::abort();
    }
}

/// Calls what may throw an exception of the library and nothing else.
///
/// @return whether it did not
template <class Body>
bool passes(Body body)
{
    try {
        body();
        return true;
    } catch (const HSVNPlatformException& exception) {
        require(exception.what() != nullptr, "an exception has a reason");
        return false;
    }
}

/// The library, started once, in a home of its own that lasts as long as the run.
class FuzzLibrary
{
  public:
    static FuzzLibrary& shared()
    {
        static FuzzLibrary library;
        return library;
    }
    FuzzLibrary(const FuzzLibrary&) = delete;
    FuzzLibrary& operator=(const FuzzLibrary&) = delete;

    /// A directory that a target may fill.
    const std::filesystem::path& directory() const { return _directory; }
    const HSVNClientRef& client() const { return _client; }
    static void write(const std::filesystem::path& file, std::string_view bytes)
    {
        std::ofstream{file, std::ios::binary}.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

  private:
    FuzzLibrary()
    {
        std::string made = (std::filesystem::temp_directory_path() / "hsvn-fuzz-XXXXXX").string();
        require(::mkdtemp(made.data()) != nullptr, "a directory can be made");
        _directory = made;
        ::setenv("HOME", made.c_str(), 1);
        HSVNInitialize();
        _client = std::make_shared<HSVNClient>(HSVNBundleLoader::sharedInstance().newestBundle(), nullptr);
    }
    ~FuzzLibrary()
    {
        std::error_code ignored;
        std::filesystem::remove_all(_directory, ignored);
    }

    std::filesystem::path _directory;
    HSVNClientRef _client;
};
