#pragma once

#include "HSVNContext.h"

#include <optional>
#include <string>
#include <vector>

/// A library that Subversion is linked to.
struct HSVNLinkedLibrary
{
    std::string name{};                          ///< such as "APR"
    std::string compiledVersion{};               ///< that it was compiled with
    std::optional<std::string> runtimeVersion{}; ///< that is in use; nil for a library linked statically
};

/// What a loaded Subversion says of itself. All texts are UTF-8. Lines before 1.8 tell their version and how they reach
/// repositories; the rest is empty.
struct HSVNSubversionDetails
{
    std::string version{};                            ///< such as "1.14.2 (r1899510)"
    std::string buildDate{};                          ///< when it was built, as the compiler writes dates
    std::string buildTime{};                          ///< the same of the time
    std::string buildHost{};                          ///< the kind of system that it was built on
    std::string copyright{};                          ///< lines, the last one ended
    std::string accessModules{};                      ///< how repositories are reached, lines
    std::optional<std::string> configurationFolder{}; ///< where credentials are stored; nil where there is none
    std::vector<std::string> keyrings{};              ///< stores of credentials beside that folder, such as "GPG-Agent"
    // Filled only when the system is asked for.
    std::string host{};                           ///< the kind of system that it runs on
    std::optional<std::string> operatingSystem{}; ///< its name and release; nil when not known
    std::vector<HSVNLinkedLibrary> libraries{};   ///< what Subversion is linked to
};

/// Asks the Subversion of a context about itself.
///
/// @param configurationFolder  the configuration area, UTF-8; nil means the user's own
/// @param withSystem           whether the system is asked about too, which takes longer
/// @param context              not nil ("context != nil")
/// Stands for svn_version_extended, on lines before 1.8 for svn_subr_version, and for svn_ra_print_modules.
HSVN_EXPORT HSVNSubversionDetails HSVNReadSubversionDetails(const std::optional<std::string>& configurationFolder,
                                                            bool withSystem, const HSVNContextRef& context);
