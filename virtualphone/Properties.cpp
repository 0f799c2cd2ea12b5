#include "platform/Properties.h"

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

#include "virtualphone/internal/PhoneState.h"

namespace {

static_assert(virtualphone::kLongestPropertyValue == PROPERTY_VALUE_MAX - 1);

using virtualphone::CurrentPhone;
using virtualphone::PhoneState;

/// The value of a property; `fallback` where it is unset or there is no phone.
std::string Value(const char* key, const char* fallback) {
    PhoneState* phone = CurrentPhone();
    if (phone == nullptr || key == nullptr) {
        return fallback;
    }
    record::PropertyAsked asked{.name = key, .value = {}};
    const bool fails = virtualphone::Fails(virtualphone::Call::PropertyAsked);
    if (const auto found = phone->properties.find(key); !fails && found != phone->properties.end()) {
        asked.value = found->second;
    }
    std::string value = asked.value.value_or(fallback);
    phone->sink.take(std::move(asked));
    return value;
}

bool Store(PhoneState& phone, const std::string& name, const std::string& value) {
    const bool fixed = name.starts_with("ro.") && phone.properties.contains(name);
    if (virtualphone::Fails(virtualphone::Call::PropertySet) || name.empty() ||
        value.size() > virtualphone::kLongestPropertyValue || fixed ||
        phone.description.faults.propertySet.contains(name)) {
        return false;
    }
    phone.properties[name] = value;
    return true;
}

}  // namespace

int property_get(const char* key, char* value, const char* default_value) {
    const std::string text = Value(key, default_value == nullptr ? "" : default_value);
    const std::size_t length = std::min(text.size(), virtualphone::kLongestPropertyValue);
    std::memcpy(value, text.data(), length);
    value[length] = '\0';
    return static_cast<int>(length);
}

std::int32_t property_get_int32(const char* key, std::int32_t default_value) {
    const std::string text = Value(key, "");
    char* end = nullptr;
    const int formerError = errno;
    // Saturates far outside 32 bits, so an overflow needs no test of its own. Base 0 takes all three
    // notations.
    const std::intmax_t number = std::strtoimax(text.c_str(), &end, 0);
    errno = formerError;
    if (end == text.c_str() || number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max()) {
        return default_value;
    }
    return static_cast<std::int32_t>(number);
}

int property_set(const char* key, const char* value) {
    PhoneState* phone = CurrentPhone();
    if (phone == nullptr || key == nullptr) {
        return -1;
    }
    const std::string name = key;
    const std::string text = value == nullptr ? "" : value;
    const bool stored = Store(*phone, name, text);
    phone->sink.take(record::PropertySet{.name = name, .value = text, .stored = stored});
    return stored ? 0 : -1;
}
