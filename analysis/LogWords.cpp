#include "analysis/LogWords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include <android/log.h>

#include "record/BootRecord.h"
#include "tables/CameraRoles.h"

namespace analysis {

namespace {

/// A text of the plug-in, in which "*" stands for what differs, and its words, which may hold that once.
struct Phrase {
    std::string_view text;
    std::string_view words;
};

constexpr std::array<Phrase, 17> kPhrases = {{
    {"Cannot get halsensor", "no sensor object"},
    {"get sensor static info error : *!", "no static information for device id *"},
    {"get sensor drv error : *!", "no sensor driver"},
    {"The logical device don't have 2 sensors", "the device has not two members"},
    {"find DeviceId2RoleId[*] error!", "no role for device id *"},
    {"find mRoleId2ModuleName[*] error!", "no module name for role *"},
    {"find mRoleId2FuseIdDescriptorsMap[*] error!", "no fuse id property for role *"},
    {"find mZVSensorInfoProp[*] error!", "no sensor info property for role *"},
    {"read dual camera calib data failded!", "no dump file with the pair's block"},
    {"Cannot find match device!", "the device's name matches no row of the device table"},
    {"Cannot find zelvan calibration data!", "no pair of these chips"},
    {"Cannot get sensor device list", "no sensor list"},
    {"MAKE_HalSensorList is NULL!", "no sensor list"},
    {"Cannot get logical device list", "no logical device list"},
    {"[DUALDUMP] fail to open *", "* cannot be opened"},
    {"[READCALI] fail to open *", "* cannot be opened"},
    {"submodule(*) checksum fail !", "the checksum of * is bad"},
}};

/// What "*" of a pattern stands for in a text; false where the text is another one.
bool Matches(std::string_view text, std::string_view pattern, std::string_view& wildcard) {
    const std::size_t star = pattern.find('*');
    if (star == std::string_view::npos) {
        return text == pattern;
    }
    const std::string_view lead = pattern.substr(0, star);
    const std::string_view tail = pattern.substr(star + 1);
    if (text.size() < lead.size() + tail.size() || !text.starts_with(lead) || !text.ends_with(tail)) {
        return false;
    }
    wildcard = text.substr(star, text.size() - lead.size() - tail.size());
    return true;
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsHexDigit(char character) {
    return IsDigit(character) || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

bool IsOfWord(char character) {
    return IsHexDigit(character) || (character >= 'g' && character <= 'z') ||
           (character >= 'G' && character <= 'Z') || character == '_';
}

/// Whether a word is a number or an id.
bool IsNumber(std::string_view word) {
    constexpr std::size_t kShortestId = 8;
    if (word.starts_with("0x") && word.size() > 2) {
        return std::all_of(word.begin() + 2, word.end(), IsHexDigit);
    }
    return std::all_of(word.begin(), word.end(), IsDigit) ||
           (word.size() >= kShortestId && std::all_of(word.begin(), word.end(), IsHexDigit) &&
            std::any_of(word.begin(), word.end(), IsDigit));
}

}  // namespace

bool IsError(const record::LogLine& line) {
    return line.priority >= ANDROID_LOG_ERROR;
}

bool IsOnEveryPhone(const record::LogLine& line) {
    std::string_view number;
    int roleId = 0;
    return Matches(record::TextOf(line), "GetSensorIdxByRoleId(*) error!", number) &&
           std::from_chars(number.data(), number.data() + number.size(), roleId).ec == std::errc() &&
           roleId >= tables::camera_role::kFirstLogicalRole;
}

std::string InWords(const record::LogLine& line) {
    const std::string_view text = record::TextOf(line);
    for (const Phrase& phrase : kPhrases) {
        std::string_view wildcard;
        if (Matches(text, phrase.text, wildcard)) {
            std::string words(phrase.words);
            const std::size_t star = words.find('*');
            return star == std::string::npos ? words : words.replace(star, 1, wildcard);
        }
    }
    // A refused update reads "..., tag:-1862205436 err:-5".
    if (const std::size_t error = text.rfind(" err:"); error != std::string_view::npos) {
        std::string_view number = text.substr(error + 5);
        number = number.substr(0, number.find_last_of("0123456789") + 1);
        return "the platform refused it (" + std::string(number) + ")";
    }
    return std::string(text);
}

std::string WithoutNumbers(std::string_view text) {
    std::string kind;
    while (!text.empty()) {
        const auto end = std::find_if_not(text.begin(), text.end(), IsOfWord);
        const std::string_view word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
        if (word.empty()) {
            kind += text.front();
            text.remove_prefix(1);
            continue;
        }
        if (IsNumber(word)) {
            // A sign is the number's, a dash between two words is not.
            if (kind.ends_with('-') &&
                (kind.size() == 1 || !(IsOfWord(kind.end()[-2]) || kind.end()[-2] == '#'))) {
                kind.pop_back();
            }
            kind += '#';
        } else {
            kind += word;
        }
        text.remove_prefix(word.size());
    }
    return kind;
}

}  // namespace analysis
