#include "CallRecorder.h"

#include <map>
#include <mutex>
#include <nlohmann/json.hpp>

namespace HSVNTestBundle {
namespace {

struct Record
{
    std::mutex lock;
    nlohmann::json calls = nlohmann::json::array();
};

Record& theRecord()
{
    static Record record;
    return record;
}

} // namespace

void record(const char* name, const std::vector<std::string>& arguments)
{
    const std::lock_guard guard{theRecord().lock};
    theRecord().calls.push_back({{"name", name}, {"arguments", arguments}});
}

std::string textOf(const char* text) { return text == nullptr ? "null" : text; }

std::string textOf(const svn_string_t* text) { return text == nullptr ? "null" : std::string{text->data, text->len}; }

std::string textOf(const svn_opt_revision_t* revision)
{
    switch (revision->kind) {
    case svn_opt_revision_unspecified:
        return "UNSPECIFIED";
    case svn_opt_revision_number:
        return std::to_string(revision->value.number);
    case svn_opt_revision_date:
        return "{" + std::to_string(revision->value.date) + "}";
    case svn_opt_revision_committed:
        return "COMMITTED";
    case svn_opt_revision_previous:
        return "PREV";
    case svn_opt_revision_base:
        return "BASE";
    case svn_opt_revision_working:
        return "WORKING";
    case svn_opt_revision_head:
        return "HEAD";
    }
    return "kind " + std::to_string(revision->kind);
}

std::string textOf(svn_depth_t depth) { return svn_depth_to_word(depth); }

std::string textOf(const apr_array_header_t* texts)
{
    if (texts == nullptr) {
        return "null";
    }
    std::string joined = "[";
    for (int index = 0; index < texts->nelts; ++index) {
        joined += (index > 0 ? ", " : "") + textOf(APR_ARRAY_IDX(texts, index, const char*));
    }
    return joined + "]";
}

std::string textOf(const apr_hash_t* properties)
{
    if (properties == nullptr) {
        return "null";
    }
    std::map<std::string, std::string> sorted;
    auto* hash = const_cast<apr_hash_t*>(properties);
    for (auto* entry = apr_hash_first(nullptr, hash); entry != nullptr; entry = apr_hash_next(entry)) {
        const void* key = nullptr;
        void* value = nullptr;
        apr_hash_this(entry, &key, nullptr, &value);
        sorted[static_cast<const char*>(key)] = textOf(static_cast<const svn_string_t*>(value));
    }
    std::string joined = "{";
    for (const auto& [name, value] : sorted) {
        joined += (joined.size() > 1 ? ", " : "") + name + ": " + value;
    }
    return joined + "}";
}

} // namespace HSVNTestBundle

extern "C" {

/// The calls since the last clearing as JSON: an array of objects with "name" and "arguments". The text stays valid
/// until the same thread asks again.
__attribute__((visibility("default"))) const char* HSVNTestBundleCalls()
{
    thread_local std::string text;
    const std::lock_guard guard{HSVNTestBundle::theRecord().lock};
    text = HSVNTestBundle::theRecord().calls.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return text.c_str();
}

__attribute__((visibility("default"))) void HSVNTestBundleClear()
{
    const std::lock_guard guard{HSVNTestBundle::theRecord().lock};
    HSVNTestBundle::theRecord().calls.clear();
}
}
