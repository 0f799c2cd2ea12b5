#pragma once

#include <cstdint>

#include "platform/Api.h"

/// Android system properties, with the names, limits and results of Android's libcutils.

/// Size of a buffer that holds any property value, the terminating zero included.
inline constexpr int PROPERTY_VALUE_MAX = 92;

extern "C" {

/// Reads a property into `value`, a buffer of PROPERTY_VALUE_MAX characters.
/// An unset property yields `default_value`, or the empty text where that is null.
/// @return the length of the text in `value`.
PLATFORM_API int property_get(const char* key, char* value, const char* default_value);

/// Reads a property as a number: decimal, octal (leading 0) or hexadecimal (leading 0x).
/// @return `default_value` when the property is unset, no number, or out of the 32-bit range.
PLATFORM_API std::int32_t property_get_int32(const char* key, std::int32_t default_value);

/// Sets a property. A value of more than PROPERTY_VALUE_MAX - 1 characters is refused, as is a second value
/// for a name that begins with "ro.".
/// @return 0, or a negative number when the store was refused.
PLATFORM_API int property_set(const char* key, const char* value);
}
