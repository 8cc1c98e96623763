#pragma once

#include "HSVNCoder.h"
#include "HSVNPlatformException.h"

#include <memory>
#include <string>
#include <string_view>

/// Decodes an object of a class.
using HSVNArchivableMaker = std::shared_ptr<HSVNArchivable> (*)(HSVNCoder* decoder);

/// The maker of the archivable class of that name, or null.
HSVNArchivableMaker HSVNArchivableClassNamed(std::string_view className);

/// Whether an exception of that class can be archived.
bool HSVNIsArchivableException(std::string_view className);

/// An exception of the class; null for a name that no exception class has.
///
/// @param name  used by `HSVNPlatformException` itself only: the other classes have names of their own
HSVNPlatformExceptionRef HSVNMakeArchivedException(std::string_view className, std::string name, std::string reason,
                                                   HSVNUserInfo userInfo);
