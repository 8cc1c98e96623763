#pragma once

#include "Internal/Subversion.h"

#include <string>
#include <type_traits>
#include <vector>

// Texts of the arguments that Subversion is called with. Results, receivers, batons, contexts, pools and streams have
// no text and are left out.

namespace HSVNTestBundle {

/// Adds a call to the bundle's record.
void record(const char* name, const std::vector<std::string>& arguments);

std::string textOf(const char* text);
std::string textOf(const svn_string_t* text);
std::string textOf(const svn_opt_revision_t* revision);
std::string textOf(svn_depth_t depth);
/// Of an array of C strings: "[a, b]".
std::string textOf(const apr_array_header_t* texts);
/// Of a hash of names and svn_string_t: "{name: value}", by name.
std::string textOf(const apr_hash_t* properties);
/// Hashes of configurations hold other values.
std::string textOf(apr_hash_t* configuration) = delete;

template <class Argument>
concept HasText = requires(Argument argument)
{
    textOf(argument);
}
&&!std::is_arithmetic_v<Argument>;

/// Appends the argument's text when it has one.
template <class Argument>
void appendText(std::vector<std::string>& texts, Argument argument)
{
    if constexpr (std::is_integral_v<Argument>) {
        texts.push_back(std::to_string(argument));
    } else if constexpr (HasText<Argument>) {
        texts.push_back(textOf(argument));
    }
}

} // namespace HSVNTestBundle
