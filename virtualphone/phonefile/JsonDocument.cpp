#include "virtualphone/phonefile/internal/JsonDocument.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <unordered_map>

#include <nlohmann/json.hpp>

#include "formats/PrintableText.h"
#include "record/internal/JsonTokens.h"
#include "virtualphone/PhoneFile.h"

namespace virtualphone {

namespace {

using Json = nlohmann::json;

/// Builds the document from what the parser finds, and stops the parser at the first thing that is wrong.
class Builder final : public Json::json_sax_t {
  public:
    explicit Builder(std::string_view text) : mText(text) {}

    bool null() override { return add({nullptr}); }
    bool boolean(bool value) override { return add({value}); }
    bool number_integer(std::int64_t value) override { return add({value}); }
    bool number_unsigned(std::uint64_t value) override {
        return add(std::in_range<std::int64_t>(value) ? JsonNode{static_cast<std::int64_t>(value)}
                                                      : JsonNode{value});
    }
    bool number_float(double value, const std::string&) override { return add({value}); }
    bool string(std::string& value) override { return add({std::move(value)}); }
    bool binary(Json::binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open({JsonNode::Object()}); }
    bool start_array(std::size_t) override { return open({JsonNode::Array()}); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(std::string& key) override {
        Open& object = mOpen.back();
        const auto& members = std::get<JsonNode::Object>(object.node.value);
        object.key = std::move(key);
        const std::size_t hash = std::hash<std::string>()(*object.key);
        const auto [first, last] = object.seen.equal_range(hash);
        if (std::any_of(first, last,
                        [&](const auto& seen) { return members[seen.second].key == object.key; })) {
            return refuse("each key once", "it a second time");
        }
        object.seen.emplace(hash, members.size());
        return true;
    }

    bool parse_error(std::size_t position, const std::string& token, const Json::exception& error) override {
        std::string_view message = error.what();
        for (const std::string_view lead : {"] ", "parse error at "}) {
            if (const std::size_t start = message.find(lead); start < 64) {
                message.remove_prefix(start + lead.size());
            }
        }
        // The parser tells where a syntax error is, but not where a number is too large.
        return refuse(
            "JSON",
            (message.starts_with("line ") ? "" : record::JsonPlace(mText, position - token.size()) + ": ") +
                formats::Shortened(message, PhoneFileError::kLongest));
    }

    JsonNode take() { return std::move(mRoot); }
    struct Refusal {
        std::string pointer;
        std::string expected;
        std::string got;
    };
    const std::optional<Refusal>& refusal() const { return mRefusal; }

  private:
    /// An object or array whose end has not come yet.
    struct Open {
        JsonNode node;
        std::optional<std::string> key;  ///< of the member that comes or is open
        std::unordered_multimap<std::size_t, std::size_t>
            seen;  ///< positions of the members, by the key's hash
    };

    bool refuse(std::string expected, std::string got) {
        std::string pointer;
        for (const Open& open : mOpen) {
            if (const auto* const array = std::get_if<JsonNode::Array>(&open.node.value)) {
                pointer = ExtendPointer(pointer, std::to_string(array->size()));
            } else if (open.key) {
                pointer = ExtendPointer(pointer, *open.key);
            }
        }
        mRefusal = {.pointer = std::move(pointer), .expected = std::move(expected), .got = std::move(got)};
        return false;
    }

    /// Whether there is room for one more value here.
    bool admit() {
        if (++mValues > kMostValues) {
            return refuse("at most " + std::to_string(kMostValues) + " values in all", "more");
        }
        if (mOpen.empty()) {
            return true;
        }
        const JsonNode& parent = mOpen.back().node;
        const auto* const array = std::get_if<JsonNode::Array>(&parent.value);
        const std::size_t count =
            array != nullptr ? array->size() : std::get<JsonNode::Object>(parent.value).size();
        return count < kMostElements ||
               refuse("at most " + std::to_string(kMostElements) +
                          (array != nullptr ? " elements in an array" : " members in an object"),
                      "more");
    }

    bool add(JsonNode node) {
        if (!admit()) {
            return false;
        }
        put(std::move(node));
        return true;
    }

    void put(JsonNode node) {
        if (mOpen.empty()) {
            mRoot = std::move(node);
        } else if (auto* const array = std::get_if<JsonNode::Array>(&mOpen.back().node.value)) {
            array->push_back(std::move(node));
        } else {
            Open& object = mOpen.back();
            std::get<JsonNode::Object>(object.node.value)
                .push_back({std::move(*object.key), std::move(node)});
            object.key.reset();
        }
    }

    bool open(JsonNode node) {
        if (!admit()) {
            return false;
        }
        if (mOpen.size() == kMostLevels) {
            return refuse("at most " + std::to_string(kMostLevels) + " levels of objects and arrays", "more");
        }
        mOpen.push_back({.node = std::move(node), .key = {}, .seen = {}});
        return true;
    }

    bool close() {
        JsonNode node = std::move(mOpen.back().node);
        mOpen.pop_back();
        put(std::move(node));
        return true;
    }

    std::string_view mText;
    std::vector<Open> mOpen;
    std::size_t mValues = 0;
    JsonNode mRoot;
    std::optional<Refusal> mRefusal;
};

/// Writes values, each first as one line and, where that gets too long, as several.
class Writer {
  public:
    std::string write(const JsonNode& node) {
        put(node, 0);
        return std::move(mText);
    }

  private:
    static constexpr std::size_t kLongestLine = 110;
    static constexpr std::size_t kIndent = 2;

    void put(const JsonNode& node, std::size_t level) {
        const std::size_t start = mText.size();
        if (putFlat(node, mText.rfind('\n') + 1 + kLongestLine)) {
            return;
        }
        mText.resize(start);
        if (const auto* const array = std::get_if<JsonNode::Array>(&node.value)) {
            putList('[', *array, ']', level, [&](const JsonNode& element) { put(element, level + 1); });
        } else if (const auto* const object = std::get_if<JsonNode::Object>(&node.value)) {
            putList('{', *object, '}', level, [&](const JsonMember& member) {
                putKey(member.key);
                put(member.node, level + 1);
            });
        } else {
            putScalar(node);
        }
    }

    /// Scalars of an array fill the lines; anything else begins one.
    template <typename List, typename Put>
    void putList(char opening, const List& list, char closing, std::size_t level, const Put& putOne) {
        mText += opening;
        std::size_t lineStart = mText.rfind('\n') + 1;
        for (const auto& one : list) {
            const bool first = &one == &list.front();
            if (!first && isScalar(one) && mText.size() - lineStart < kLongestLine) {
                mText += ", ";
            } else {
                mText += first ? "\n" : ",\n";
                lineStart = mText.size();
                mText.append(kIndent * (level + 1), ' ');
            }
            putOne(one);
        }
        mText.append(1, '\n').append(kIndent * level, ' ') += closing;
    }

    static bool isScalar(const JsonMember&) { return false; }
    static bool isScalar(const JsonNode& node) {
        return !std::holds_alternative<JsonNode::Array>(node.value) &&
               !std::holds_alternative<JsonNode::Object>(node.value);
    }

    /// @return false as soon as the text is longer than `most`.
    bool putFlat(const JsonNode& node, std::size_t most) {
        if (const auto* const array = std::get_if<JsonNode::Array>(&node.value)) {
            mText += '[';
            for (const JsonNode& element : *array) {
                mText += &element == &array->front() ? "" : ", ";
                if (!putFlat(element, most)) {
                    return false;
                }
            }
            mText += ']';
        } else if (const auto* const object = std::get_if<JsonNode::Object>(&node.value)) {
            mText += object->empty() ? "{" : "{ ";
            for (const JsonMember& member : *object) {
                mText += &member == &object->front() ? "" : ", ";
                putKey(member.key);
                if (!putFlat(member.node, most)) {
                    return false;
                }
            }
            mText += object->empty() ? "}" : " }";
        } else {
            const auto* const text = std::get_if<std::string>(&node.value);
            if (text != nullptr && text->size() > kLongestLine) {
                return false;
            }
            putScalar(node);
        }
        return mText.size() <= most;
    }

    void putKey(const std::string& key) { putQuoted(key) += ": "; }

    std::string& putQuoted(const std::string& text) {
        return mText += Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
    }

    void putScalar(const JsonNode& node) {
        std::visit(
            [this](const auto& value) {
                using Value = std::remove_cvref_t<decltype(value)>;
                if constexpr (std::is_same_v<Value, std::string>) {
                    putQuoted(value);
                } else if constexpr (!std::is_same_v<Value, JsonNode::Array> &&
                                     !std::is_same_v<Value, JsonNode::Object>) {
                    mText += Json(value).dump();
                }
            },
            node.value);
    }

    std::string mText;
};

}  // namespace

std::string ExtendPointer(const std::string& pointer, std::string_view token) {
    std::string extended = pointer + "/";
    for (const char c : formats::Shortened(token, PhoneFileError::kLongest)) {
        if (c == '~') {
            extended += "~0";
        } else if (c == '/') {
            extended += "~1";
        } else {
            extended += c;
        }
    }
    return extended;
}

void FailAt(const std::string& fileName, const std::string& pointer, const std::string& expected,
            const std::string& got) {
    const auto readable = [](const std::string& part) {
        return formats::Printable(formats::Shortened(part, PhoneFileError::kLongest));
    };
    std::string parts[] = {readable(pointer), readable(got), readable(fileName), readable(expected)};
    const std::string_view joints = ": : expected , got ";
    constexpr std::size_t kShortestPart = 40;
    std::size_t length = joints.size();
    for (const std::string& part : parts) {
        length += part.size();
    }
    for (std::string& part : parts) {
        if (length > PhoneFileError::kLongest && part.size() > kShortestPart) {
            const std::size_t former = part.size();
            const std::size_t excess = length - PhoneFileError::kLongest;
            part =
                formats::Shortened(part, former > kShortestPart + excess ? former - excess : kShortestPart);
            length -= former - part.size();
        }
    }
    const auto& [where, what, file, wanted] = parts;
    throw PhoneFileError(file + (where.empty() ? "" : ": ") + where + ": expected " + wanted + ", got " +
                         what);
}

JsonDocument ParseJson(std::string_view text, const std::string& fileName) {
    if (const auto excess = record::FindJsonExcess(text)) {
        FailAt(fileName, "", excess->expected, "more at " + record::JsonPlace(text, excess->position));
    }
    Builder builder(text);
    const bool good =
        Json::sax_parse(text.begin(), text.end(), &builder, nlohmann::detail::input_format_t::json,
                        /*strict=*/true, /*ignore_comments=*/true);
    if (!good) {
        const Builder::Refusal refusal =
            builder.refusal().value_or(Builder::Refusal{"", "JSON", "something else"});
        FailAt(fileName, refusal.pointer, refusal.expected, refusal.got);
    }
    return {.fileName = fileName, .root = builder.take()};
}

std::string JsonText(const JsonNode& node) {
    return Writer().write(node);
}

}  // namespace virtualphone
