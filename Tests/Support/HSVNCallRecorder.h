#pragma once

#include <dlfcn.h>
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

/// One call that a test bundle saw: the Subversion function's name and its arguments as text.
///
/// Arguments keep their order; results, receivers, batons, contexts, pools, files and streams are left out. Flags and
/// numbers are decimal, depths are words such as "infinity", revisions are a number, a date in microseconds in braces,
/// "HEAD", "BASE", "WORKING", "COMMITTED", "PREV" or "UNSPECIFIED", arrays of paths are "[a, b]", tables of properties
/// "{name: value}", and what is not given is "null".
struct HSVNRecordedCall
{
    std::string name;
    std::vector<std::string> arguments;

    bool operator==(const HSVNRecordedCall&) const = default;
};

/// For a failed test's message.
inline void PrintTo(const HSVNRecordedCall& call, std::ostream* stream)
{
    *stream << call.name;
    for (const auto& argument : call.arguments) {
        *stream << ", " << argument;
    }
}

/// Reads the calls of one of the test bundles.
class HSVNCallRecorder
{
  public:
    /// Begins with an empty record.
    ///
    /// @param line  "1.4", "1.5" or "1.6"
    explicit HSVNCallRecorder(const std::string& line)
        : _library{dlopen((HSVN_TEST_BUNDLES "/Subversion-" + line + ".bundle/HSVNBundle.so").c_str(),
                          RTLD_NOW | RTLD_LOCAL)}
    {
        if (_library == nullptr) {
            throw std::runtime_error{dlerror()};
        }
        clear();
    }
    ~HSVNCallRecorder() { dlclose(_library); }
    HSVNCallRecorder(const HSVNCallRecorder&) = delete;
    HSVNCallRecorder& operator=(const HSVNCallRecorder&) = delete;

    void clear() { function<void (*)()>("HSVNTestBundleClear")(); }

    /// All calls since the recorder was made or cleared, on every thread.
    std::vector<HSVNRecordedCall> calls() const
    {
        std::vector<HSVNRecordedCall> result;
        for (const auto& call : nlohmann::json::parse(function<const char* (*)()>("HSVNTestBundleCalls")())) {
            result.push_back({call["name"], call["arguments"]});
        }
        return result;
    }

    /// The calls of one function, such as "svn_client_update2".
    std::vector<HSVNRecordedCall> calls(const std::string& name) const
    {
        auto result = calls();
        std::erase_if(result, [&](const HSVNRecordedCall& call) { return call.name != name; });
        return result;
    }

  private:
    template <class Function>
    Function function(const char* name) const
    {
        return reinterpret_cast<Function>(dlsym(_library, name));
    }

    void* _library;
};
