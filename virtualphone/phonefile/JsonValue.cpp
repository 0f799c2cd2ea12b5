#include "virtualphone/phonefile/JsonValue.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <system_error>

#include "virtualphone/PhoneFile.h"

namespace virtualphone {

namespace {

/// Longest piece of a phone file that an error message quotes.
constexpr std::size_t kLongestQuote = 60;

std::optional<std::int64_t> ParseDigits(std::string_view digits, int base) {
    std::int64_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number, base);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return number;
}

/// Hexadecimal after "0x", without a sign.
std::optional<std::int64_t> ParseHexadecimal(std::string_view text) {
    if (text.size() < 3 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X') || text[2] == '-') {
        return std::nullopt;
    }
    return ParseDigits(text.substr(2), 16);
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

std::string IntegerRange(std::int64_t lowest, std::int64_t highest) {
    return "an integer from " + std::to_string(lowest) + " to " + std::to_string(highest);
}

}  // namespace

JsonValue::JsonValue(const Json& value, std::string pointer, const std::string& fileName)
    : mValue(&value), mPointer(std::move(pointer)), mFileName(&fileName) {}

void JsonValue::fail(const std::string& expected) const {
    fail(expected, describe());
}

void JsonValue::fail(const std::string& expected, const std::string& got) const {
    throw PhoneFileError(ErrorPlace(*mFileName, mPointer) + ": expected " + expected + ", got " + got);
}

std::string JsonValue::describe() const {
    if (mValue->is_object()) {
        return "an object";
    }
    if (mValue->is_array()) {
        return "an array";
    }
    std::string quote = mValue->dump(-1, ' ', /*ensure_ascii=*/true, Json::error_handler_t::replace);
    if (quote.size() > kLongestQuote) {
        quote.resize(kLongestQuote);
        quote += "...";
    }
    return quote;
}

bool JsonValue::boolean() const {
    if (!mValue->is_boolean()) {
        fail("true or false");
    }
    return mValue->get<bool>();
}

const std::string& JsonValue::text() const {
    if (!mValue->is_string()) {
        fail("a text");
    }
    return mValue->get_ref<const std::string&>();
}

const std::string& JsonValue::plainText() const {
    if (text().find('\0') != std::string::npos) {
        fail("a text without a zero byte");
    }
    return text();
}

float JsonValue::floatingPoint() const {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    if (mValue->is_number()) {
        const double number = mValue->get<double>();
        // Rounds to the nearest float; what lies beyond the largest one is no float at all.
        if (number >= -std::numeric_limits<float>::max() && number <= std::numeric_limits<float>::max()) {
            return static_cast<float>(number);
        }
    } else if (*mValue == "NaN") {
        return std::numeric_limits<float>::quiet_NaN();
    } else if (*mValue == "Infinity") {
        return kInfinity;
    } else if (*mValue == "-Infinity") {
        return -kInfinity;
    }
    fail(R"(a number within single precision, "NaN", "Infinity" or "-Infinity")");
}

std::vector<std::uint8_t> JsonValue::hex() const {
    std::vector<std::uint8_t> bytes;
    std::size_t digits = 0;
    int high = 0;
    for (const char c : text()) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
            continue;
        }
        const int digit = HexDigit(c);
        if (digit < 0) {
            fail("bytes in hexadecimal");
        }
        if (++digits % 2 == 0) {
            bytes.push_back(static_cast<std::uint8_t>(high * 16 + digit));
        }
        high = digit;
    }
    if (digits % 2 != 0) {
        fail("an even number of hexadecimal digits", std::to_string(digits));
    }
    return bytes;
}

std::int64_t JsonValue::integerWithin(std::int64_t lowest, std::int64_t highest) const {
    std::optional<std::int64_t> number;
    if (mValue->is_number_unsigned()) {
        const std::uint64_t value = mValue->get<std::uint64_t>();
        if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
            number = static_cast<std::int64_t>(value);
        }
    } else if (mValue->is_number_integer()) {
        number = mValue->get<std::int64_t>();
    } else if (mValue->is_string()) {
        number = ParseHexadecimal(mValue->get_ref<const std::string&>());
    }
    if (!number || *number < lowest || *number > highest) {
        fail(IntegerRange(lowest, highest));
    }
    return *number;
}

std::int64_t JsonValue::keyWithin(const std::string& key, std::int64_t lowest, std::int64_t highest) const {
    std::optional<std::int64_t> number = ParseHexadecimal(key);
    if (!number) {
        number = ParseDigits(key, 10);
    }
    if (!number || *number < lowest || *number > highest) {
        fail(IntegerRange(lowest, highest) + " as the key", JsonValue(Json(key), "", *mFileName).describe());
    }
    return *number;
}

std::vector<JsonValue> JsonValue::elements(std::size_t most) const {
    if (!mValue->is_array()) {
        fail("an array");
    }
    if (mValue->size() > most) {
        fail("at most " + std::to_string(most) + " elements", std::to_string(mValue->size()));
    }
    std::vector<JsonValue> elements;
    elements.reserve(mValue->size());
    for (const Json& element : *mValue) {
        elements.emplace_back(element, ExtendPointer(mPointer, std::to_string(elements.size())), *mFileName);
    }
    return elements;
}

std::vector<std::pair<std::string, JsonValue>> JsonValue::members() const {
    if (!mValue->is_object()) {
        fail("an object");
    }
    std::vector<std::pair<std::string, JsonValue>> members;
    members.reserve(mValue->size());
    for (const auto& [key, value] : mValue->items()) {
        members.emplace_back(key, JsonValue(value, ExtendPointer(mPointer, key), *mFileName));
    }
    return members;
}

void JsonValue::readKeys(std::initializer_list<std::pair<std::string_view, Reader>> readers) const {
    for (const auto& [key, value] : members()) {
        const auto reader = std::find_if(readers.begin(), readers.end(),
                                         [&name = key](const auto& known) { return known.first == name; });
        if (reader == readers.end()) {
            std::string known;
            for (const auto& [name, unused] : readers) {
                known += (known.empty() ? "" : ", ") + std::string(name);
            }
            value.fail("one of the keys " + known, "an unknown key");
        }
        reader->second(value);
    }
}

}  // namespace virtualphone
