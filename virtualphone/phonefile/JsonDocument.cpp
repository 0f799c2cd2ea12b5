#include "virtualphone/phonefile/JsonDocument.h"

#include <cstddef>
#include <set>
#include <utility>
#include <vector>

#include "virtualphone/PhoneFile.h"

namespace virtualphone {

namespace {

/// Follows the parser through a document: knows where it is and which keys each open object has had.
class ParserPosition {
  public:
    /// @return false when the event is a key that its object already has.
    bool advance(Json::parse_event_t event, const Json& parsed) {
        switch (event) {
            case Json::parse_event_t::object_start:
            case Json::parse_event_t::array_start:
                mOpen.emplace_back();
                mOpen.back().isArray = event == Json::parse_event_t::array_start;
                return true;
            case Json::parse_event_t::key:
                mOpen.back().key = parsed.get<std::string>();
                return mOpen.back().keys.insert(mOpen.back().key).second;
            case Json::parse_event_t::object_end:
            case Json::parse_event_t::array_end:
                mOpen.pop_back();
                break;
            case Json::parse_event_t::value:
                break;
        }
        if (!mOpen.empty() && mOpen.back().isArray) {
            ++mOpen.back().index;
        }
        return true;
    }

    std::string pointer() const {
        std::string pointer;
        for (const Container& container : mOpen) {
            if (container.isArray) {
                pointer = ExtendPointer(pointer, std::to_string(container.index));
            } else if (!container.keys.empty()) {
                pointer = ExtendPointer(pointer, container.key);
            }
        }
        return pointer;
    }

  private:
    struct Container {
        bool isArray = false;
        std::size_t index = 0;
        std::string key;
        std::set<std::string> keys;
    };
    std::vector<Container> mOpen;
};

/// The library's message without the id in front, such as "line 1, column 2: syntax error while ...".
std::string SyntaxError(const Json::exception& error) {
    std::string message = error.what();
    for (const std::string_view lead : {"] ", "parse error at "}) {
        if (const std::size_t start = message.find(lead); start != std::string::npos) {
            message.erase(0, start + lead.size());
        }
    }
    return message;
}

}  // namespace

std::string ExtendPointer(const std::string& pointer, std::string_view token) {
    const std::string quoted = Json(token).dump(-1, ' ', false, Json::error_handler_t::replace);
    std::string extended = pointer + "/";
    for (const char c : quoted.substr(1, quoted.size() - 2)) {
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

std::string ErrorPlace(const std::string& fileName, const std::string& pointer) {
    constexpr std::size_t kLongest = 200;
    if (pointer.size() > kLongest) {
        return fileName + ": " + pointer.substr(0, kLongest) + "...";
    }
    return pointer.empty() ? fileName : fileName + ": " + pointer;
}

Json ParseJson(std::string_view text, const std::string& fileName) {
    ParserPosition position;
    const auto follow = [&](int, Json::parse_event_t event, Json& parsed) {
        if (!position.advance(event, parsed)) {
            throw PhoneFileError(ErrorPlace(fileName, position.pointer()) +
                                 ": expected each key once, got it a second time");
        }
        return true;
    };
    try {
        return Json::parse(text, follow, /*allow_exceptions=*/true, /*ignore_comments=*/true);
    } catch (const Json::exception& error) {
        // A syntax error, or a number beyond double precision.
        throw PhoneFileError(ErrorPlace(fileName, position.pointer()) + ": expected JSON, got " +
                             SyntaxError(error));
    }
}

}  // namespace virtualphone
