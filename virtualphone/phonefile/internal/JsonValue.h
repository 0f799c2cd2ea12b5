#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "virtualphone/phonefile/internal/JsonDocument.h"

namespace virtualphone {

/// The integer type of a number: its own, or the one under a numbering.
template <typename Number>
struct PlainType {
    using Type = Number;
};
template <typename Number>
requires std::is_enum_v<Number>
struct PlainType<Number> {
    using Type = std::underlying_type_t<Number>;
};
template <typename Number>
using Plain = typename PlainType<Number>::Type;

/// One value of a phone file, with where it stands. Whatever is asked of it and does not hold raises a
/// PhoneFileError that names the file, the JSON pointer and what was expected. Borrows the document.
class JsonValue {
  public:
    using Reader = std::function<void(const JsonValue&)>;

    explicit JsonValue(const JsonDocument& document) : JsonValue(document, document.root) {}

    /// Raises the error that this value is not what it should be.
    [[noreturn]] void fail(const std::string& expected) const;
    [[noreturn]] void fail(const std::string& expected, const std::string& got) const;

    bool boolean() const;
    const std::string& text() const;
    /// A text that C interfaces can carry: no zero byte in it.
    const std::string& plainText() const;
    /// A number, or one of the texts "NaN", "Infinity" and "-Infinity".
    float floatingPoint() const;
    /// Bytes in hexadecimal; blanks in it mean nothing.
    std::vector<std::uint8_t> hex() const;

    /// An integer of a type within std::int64_t, or of a numbering; in decimal or as a text such as
    /// "0x8006000E".
    template <typename Number>
    Number integer(Plain<Number> lowest = std::numeric_limits<Plain<Number>>::min(),
                   Plain<Number> highest = std::numeric_limits<Plain<Number>>::max()) const {
        return Number{static_cast<Plain<Number>>(integerWithin(lowest, highest))};
    }

    /// An array of at most `most` elements.
    std::vector<JsonValue> elements(std::size_t most = kMostElements) const;

    /// An object that has any of these keys and no other. The readers run in the order of the file.
    void readKeys(std::initializer_list<std::pair<std::string_view, Reader>> readers) const;

    /// An object whose keys are free.
    std::vector<std::pair<std::string_view, JsonValue>> members() const;

    /// An object whose keys are numbers, decimal or hexadecimal, each number once.
    template <typename Number>
    std::vector<std::pair<Number, JsonValue>> numberedMembers(
        Plain<Number> lowest = std::numeric_limits<Plain<Number>>::min(),
        Plain<Number> highest = std::numeric_limits<Plain<Number>>::max()) const {
        std::vector<std::pair<Number, JsonValue>> numbered;
        std::set<Number> seen;
        for (const auto& [key, value] : members()) {
            const Number number{static_cast<Plain<Number>>(value.keyWithin(key, lowest, highest))};
            if (!seen.insert(number).second) {
                value.fail("each number once as a key", "it a second time");
            }
            numbered.emplace_back(number, value);
        }
        return numbered;
    }

  private:
    JsonValue(const JsonDocument& document, const JsonNode& node) : mDocument(&document), mNode(&node) {}

    std::int64_t integerWithin(std::int64_t lowest, std::int64_t highest) const;
    std::int64_t keyWithin(std::string_view key, std::int64_t lowest, std::int64_t highest) const;
    std::string describe() const;

    const JsonDocument* mDocument;
    const JsonNode* mNode;
};

}  // namespace virtualphone
