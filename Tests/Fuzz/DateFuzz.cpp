#include "FuzzInput.h"

// Dates of Subversion and of users.
HSVN_FUZZ_TARGET
{
    FuzzLibrary::shared();
    const std::string text{reinterpret_cast<const char*>(data), size};
    const auto show = [](const std::optional<HSVNDate>& date) {
        if (date) {
            date->description();
            date->ISO8601StringValue();
            HSVNDate::dateWithAPRTime(date->APRTime());
        }
    };
    passes([&] { show(HSVNRevision::parseDateString(text)); });
    passes([&] { show(HSVNDate::dateWithISO8601String(text)); });
    FuzzInput input{data, size};
    std::int64_t moment = 0;
    for (int index = 0; index < 8; ++index) {
        moment = static_cast<std::int64_t>(static_cast<std::uint64_t>(moment) << 8U | input.byte());
    }
    show(HSVNDate{moment});
    show(HSVNDate::dateWithAPRTime(moment));
    return 0;
}
