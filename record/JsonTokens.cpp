#include "record/internal/JsonTokens.h"

#include <algorithm>

namespace record {

namespace {

constexpr std::string_view kNumberCharacters = "+-.0123456789Ee";

/// Behind the first `end` from `from` on, or at the end of the text.
std::size_t Behind(std::string_view json, std::string_view end, std::size_t from) {
    const std::size_t found = json.find(end, from);
    return found == std::string_view::npos ? json.size() : found + end.size();
}

/// Behind the closing quote of the text that opens at `position`.
std::size_t EndOfText(std::string_view json, std::size_t position) {
    for (std::size_t i = position + 1; i < json.size(); ++i) {
        if (json[i] == '"') {
            return i + 1;
        }
        i += json[i] == '\\' ? 1 : 0;
    }
    return json.size();
}

}  // namespace

std::optional<JsonExcess> FindJsonExcess(std::string_view json) {
    const std::string bytes = "at most " + std::to_string(kLongestJsonStretch) + " bytes ";
    std::size_t stretch = 0;
    for (std::size_t i = 0; i < json.size();) {
        const std::size_t start = i;
        if (json[i] == '"') {
            stretch = i = EndOfText(json, i);
            if (i - start > kLongestJsonStretch) {
                return JsonExcess{start, bytes + "in one text"};
            }
        } else if (json[i] == '-' || (json[i] >= '0' && json[i] <= '9')) {
            stretch = i = std::min(json.find_first_not_of(kNumberCharacters, i), json.size());
            if (i - start > kLongestJsonNumber) {
                return JsonExcess{
                    start, "a number of at most " + std::to_string(kLongestJsonNumber) + " characters"};
            }
        } else if (json.substr(i, 2) == "//") {
            i = Behind(json, "\n", i);
        } else if (json.substr(i, 2) == "/*") {
            i = Behind(json, "*/", i + 2);
        } else {
            ++i;
        }
        if (i - stretch > kLongestJsonStretch) {
            return JsonExcess{stretch, bytes + "without a text or number"};
        }
    }
    return std::nullopt;
}

std::string JsonPlace(std::string_view json, std::size_t position) {
    const std::string_view before = json.substr(0, position);
    const std::size_t lineStart = before.rfind('\n') + 1;  // 0 where there is none
    return "line " + std::to_string(std::count(before.begin(), before.end(), '\n') + 1) + ", column " +
           std::to_string(before.size() - lineStart + 1);
}

}  // namespace record
