#include "FuzzInput.h"

// Archives of both forms. What can be read can be written again, and read back.
HSVN_FUZZ_TARGET
{
    const std::string bytes{reinterpret_cast<const char*>(data), size};
    std::shared_ptr<HSVNArchivable> object;
    if (!passes([&] { object = HSVNKeyedUnarchiver::unarchiveObjectWithData(bytes); })) {
        return 0;
    }
    object->description();
    for (const auto format : {HSVNArchiveFormatJSON, HSVNArchiveFormatCBOR}) {
        const auto written = HSVNKeyedArchiver::archivedDataWithRootObject(object, format);
        HSVNKeyedUnarchiver::unarchiveObjectWithData(written)->description();
    }
    return 0;
}
