#include "virtualphone/phonefile/internal/JsonValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

#include "formats/Hex.h"
#include "formats/PrintableText.h"

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

std::string IntegerRange(std::int64_t lowest, std::int64_t highest) {
    return "an integer from " + std::to_string(lowest) + " to " + std::to_string(highest);
}

/// Extends the pointer of `from` to that of `target`. False where `target` is not within `from`.
bool FindPointer(const JsonNode& from, const JsonNode& target, std::string& pointer) {
    if (&from == &target) {
        return true;
    }
    const std::size_t length = pointer.size();
    const auto found = [&](std::string_view token, const JsonNode& child) {
        pointer = ExtendPointer(pointer, token);
        const bool within = FindPointer(child, target, pointer);
        if (!within) {
            pointer.resize(length);
        }
        return within;
    };
    if (const auto* const array = std::get_if<JsonNode::Array>(&from.value)) {
        std::size_t index = 0;
        return std::any_of(array->begin(), array->end(),
                           [&](const JsonNode& element) { return found(std::to_string(index++), element); });
    }
    if (const auto* const object = std::get_if<JsonNode::Object>(&from.value)) {
        return std::any_of(object->begin(), object->end(),
                           [&](const JsonMember& member) { return found(member.key, member.node); });
    }
    return false;
}

}  // namespace

void JsonValue::fail(const std::string& expected) const {
    fail(expected, describe());
}

void JsonValue::fail(const std::string& expected, const std::string& got) const {
    std::string pointer;
    FindPointer(mDocument->root, *mNode, pointer);
    FailAt(mDocument->fileName, pointer, expected, got);
}

std::string JsonValue::describe() const {
    if (std::holds_alternative<JsonNode::Object>(mNode->value)) {
        return "an object";
    }
    if (std::holds_alternative<JsonNode::Array>(mNode->value)) {
        return "an array";
    }
    if (const auto* const text = std::get_if<std::string>(&mNode->value)) {
        return JsonText({formats::Shortened(*text, kLongestQuote)});
    }
    return JsonText(*mNode);
}

bool JsonValue::boolean() const {
    const bool* const value = std::get_if<bool>(&mNode->value);
    if (value == nullptr) {
        fail("true or false");
    }
    return *value;
}

const std::string& JsonValue::text() const {
    const auto* const text = std::get_if<std::string>(&mNode->value);
    if (text == nullptr) {
        fail("a text");
    }
    return *text;
}

const std::string& JsonValue::plainText() const {
    if (text().find('\0') != std::string::npos) {
        fail("a text without a zero byte");
    }
    return text();
}

float JsonValue::floatingPoint() const {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    std::optional<double> number;
    if (const auto* const floating = std::get_if<double>(&mNode->value)) {
        number = *floating;
    } else if (const auto* const integer = std::get_if<std::int64_t>(&mNode->value)) {
        number = static_cast<double>(*integer);
    } else if (const auto* const large = std::get_if<std::uint64_t>(&mNode->value)) {
        number = static_cast<double>(*large);
    } else if (const auto* const name = std::get_if<std::string>(&mNode->value)) {
        if (*name == "NaN") {
            return std::numeric_limits<float>::quiet_NaN();
        }
        if (*name == "Infinity" || *name == "-Infinity") {
            return name->front() == '-' ? -kInfinity : kInfinity;
        }
    }
    // Rounds to the nearest float; what lies beyond the largest one is no float at all.
    if (!number || std::abs(*number) > std::numeric_limits<float>::max()) {
        fail(R"(a number within single precision, "NaN", "Infinity" or "-Infinity")");
    }
    return static_cast<float>(*number);
}

std::vector<std::uint8_t> JsonValue::hex() const {
    std::string digits = text();
    std::erase_if(digits, [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    std::optional<std::vector<std::uint8_t>> bytes = formats::ParseHex(digits);
    if (!bytes) {
        if (digits.find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos) {
            fail("bytes in hexadecimal");
        }
        fail("an even number of hexadecimal digits", std::to_string(digits.size()));
    }
    return *std::move(bytes);
}

std::int64_t JsonValue::integerWithin(std::int64_t lowest, std::int64_t highest) const {
    std::optional<std::int64_t> number;
    if (const auto* const integer = std::get_if<std::int64_t>(&mNode->value)) {
        number = *integer;
    } else if (const auto* const text = std::get_if<std::string>(&mNode->value)) {
        number = ParseHexadecimal(*text);
    }
    if (!number || *number < lowest || *number > highest) {
        fail(IntegerRange(lowest, highest));
    }
    return *number;
}

std::int64_t JsonValue::keyWithin(std::string_view key, std::int64_t lowest, std::int64_t highest) const {
    std::optional<std::int64_t> number = ParseHexadecimal(key);
    if (!number) {
        number = ParseDigits(key, 10);
    }
    if (!number || *number < lowest || *number > highest) {
        fail(IntegerRange(lowest, highest) + " as the key",
             JsonText({formats::Shortened(key, kLongestQuote)}));
    }
    return *number;
}

std::vector<JsonValue> JsonValue::elements(std::size_t most) const {
    const auto* const array = std::get_if<JsonNode::Array>(&mNode->value);
    if (array == nullptr) {
        fail("an array");
    }
    if (array->size() > most) {
        fail("at most " + std::to_string(most) + " elements", std::to_string(array->size()));
    }
    std::vector<JsonValue> elements;
    elements.reserve(array->size());
    for (const JsonNode& element : *array) {
        elements.push_back(JsonValue(*mDocument, element));
    }
    return elements;
}

std::vector<std::pair<std::string_view, JsonValue>> JsonValue::members() const {
    const auto* const object = std::get_if<JsonNode::Object>(&mNode->value);
    if (object == nullptr) {
        fail("an object");
    }
    std::vector<std::pair<std::string_view, JsonValue>> members;
    members.reserve(object->size());
    for (const JsonMember& member : *object) {
        members.emplace_back(member.key, JsonValue(*mDocument, member.node));
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
