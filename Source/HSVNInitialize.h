#pragma once

#include "HSVNExport.h"
#include "HSVNUserInfo.h"

#include <cstdint>
#include <string>

/// Starts the library: `HSVNInitializeWithOptions` without options.
HSVN_EXPORT void HSVNInitialize();

/// What start-up does with the C locale's numeric category, which tells how the C library reads and writes fractions.
enum class HSVNNumericLocale : std::uint8_t
{
    OfEnvironment, ///< as every other category
    Unchanged      ///< as the program has it, for programs that read and write files with the C library's functions
};

/// `HSVNInitialize` with a choice of the numeric category.
HSVN_EXPORT void HSVNInitialize(HSVNNumericLocale numericLocale);

/// Starts the library: loads the version bundles that come with it, sets the C locale from the environment and makes
/// the user's Subversion configuration area where it is missing. Only the newest bundle is opened.
///
/// To be called once, from the main thread, before anything else of the library is used. Further calls do nothing, also
/// when the first one threw.
///
/// @param options  reserved; no option exists
/// @throws HSVNException for a bundle that cannot be opened, or "Failed to initialize locales"
/// @throws HSVNInvalidArgumentException "There is no bundle of Subversion in 'FOLDER'"
HSVN_EXPORT void HSVNInitializeWithOptions(const HSVNUserInfo& options);

/// Sets every category of the C locale from the environment or, where that fails, the character type alone.
///
/// @return the locale's name
/// @throws HSVNException "Failed to initialize locales"
HSVN_EXPORT std::string HSVNInitializeCLocale();

/// Makes the user's Subversion configuration area with Subversion's default files where it is missing, in the form of
/// the newest loaded bundle. An area that cannot be written is no failure.
///
/// @throws HSVNInvalidArgumentException when no bundle is loaded
/// Stands for svn_config_ensure.
HSVN_EXPORT void HSVNInitializeSubversionConfiguration();
