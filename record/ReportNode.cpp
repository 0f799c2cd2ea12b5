#include "record/internal/ReportNode.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <system_error>

#include "formats/Hex.h"
#include "record/Report.h"

namespace record {

namespace {

/// Of a foreign text, so much is shown.
constexpr std::size_t kShownCharacters = 60;

/// Printable, on one line, and short.
std::string Shown(const Json& value) {
    std::string text = value.dump(-1, ' ', /*ensure_ascii=*/true, Json::error_handler_t::replace);
    if (text.size() > kShownCharacters) {
        text.replace(kShownCharacters, std::string::npos, "...");
    }
    return text;
}

}  // namespace

void ReportNode::fail(const std::string& expected) const {
    const std::string got = mValue.is_object() ? "an object" : mValue.is_array() ? "a list" : Shown(mValue);
    fail(expected, got);
}

void ReportNode::fail(const std::string& expected, const std::string& got) const {
    const std::string place = pointer();
    throw ReportError((place.empty() ? "/" : place) + ": expected " + expected + ", got " + got);
}

const std::string& ReportNode::text() const {
    if (!mValue.is_string()) {
        fail("a text");
    }
    return mValue.get_ref<const std::string&>();
}

bool ReportNode::flag() const {
    if (!mValue.is_boolean()) {
        fail("true or false");
    }
    return mValue.get<bool>();
}

std::int64_t ReportNode::numberWithin(std::int64_t least, std::int64_t most) const {
    const bool fits = mValue.is_number_unsigned() ? std::in_range<std::int64_t>(mValue.get<std::uint64_t>())
                                                  : mValue.is_number_integer();
    if (!fits || mValue.get<std::int64_t>() < least || mValue.get<std::int64_t>() > most) {
        fail("a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return mValue.get<std::int64_t>();
}

std::uint32_t ReportNode::hexNumber() const {
    const std::string& digits = text();
    std::uint32_t number = 0;
    const char* const end = digits.data() + digits.size();
    if (!digits.starts_with("0x") || digits.size() < 3 ||
        std::from_chars(digits.data() + 2, end, number, 16) != std::from_chars_result{end, std::errc()}) {
        fail("a number of 32 bits such as \"0x91010021\"");
    }
    return number;
}

Blob ReportNode::bytes() const {
    std::optional<Blob> bytes = formats::ParseHex(text());
    if (!bytes || 2 * bytes->size() != text().size()) {
        fail("two hexadecimal digits a byte");
    }
    return *std::move(bytes);
}

std::size_t ReportNode::choice(std::span<const char* const> names) const {
    const auto found = std::find(names.begin(), names.end(), text());
    if (found == names.end()) {
        fail("one of the names that reports have here");
    }
    return static_cast<std::size_t>(found - names.begin());
}

std::string ReportNode::pointer() const {
    if (mAbove == nullptr) {
        return "";
    }
    std::string key = Shown(mKey);
    if (key.ends_with('"')) {
        key.pop_back();
    }
    std::string escaped;
    for (const char c : key.substr(1)) {
        escaped += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
    }
    return mAbove->pointer() + "/" + escaped;
}

ReportObject::ReportObject(const ReportNode& node, std::initializer_list<const char*> keys) : mNode(node) {
    if (!node.json().is_object()) {
        node.fail("an object");
    }
    mFound.reserve(keys.size());
    for (const auto& [key, value] : node.json().items()) {
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
            ReportNode(value, node, key).fail("a key of a report", "an unknown one");
        }
        if (find(key.c_str()) != nullptr) {
            ReportNode(value, node, key).fail("each key once", "it twice");
        }
        mFound.emplace_back(key, ReportNode(value, node, key));
    }
}

const ReportNode* ReportObject::find(std::string_view key) const {
    const auto found =
        std::find_if(mFound.begin(), mFound.end(), [key](const auto& member) { return member.first == key; });
    return found == mFound.end() ? nullptr : &found->second;
}

const ReportNode& ReportObject::at(const char* key) const {
    const ReportNode* const found = find(key);
    if (found == nullptr) {
        mNode.fail(std::string("a member \"") + key + "\"", "none");
    }
    return *found;
}

}  // namespace record
