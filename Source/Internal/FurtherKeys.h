#pragma once

#include "HSVNCoder.h"

#include <optional>
#include <string>
#include <string_view>

// Keys that a class has beyond those of every archive of it: a coder is asked to store only what is there.

inline void HSVNEncodeFurther(HSVNCoder& encoder, const std::optional<std::string>& text, std::string_view key)
{
    if (text) {
        encoder.encodeString(text, key);
    }
}

inline void HSVNEncodeFurther(HSVNCoder& encoder, const HSVNArchivableRef& object, std::string_view key)
{
    if (object) {
        encoder.encodeObject(object, key);
    }
}
