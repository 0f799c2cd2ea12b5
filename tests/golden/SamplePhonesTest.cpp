#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "tables/PublishedTags.h"
#include "tests/support/Describe.h"
#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

/// The line with "ADDRESS" for each hexadecimal number of nine digits or more.
std::string WithoutAddresses(std::string line) {
    for (std::size_t at = line.find("0x"); at != std::string::npos; at = line.find("0x", at + 1)) {
        const std::size_t end = std::min(line.find_first_not_of("0123456789abcdef", at + 2), line.size());
        if (end - at > 10) {
            line.replace(at, end - at, "ADDRESS");
        }
    }
    return line;
}

/// Values up to this length stand whole, longer ones by their beginning, length and digest.
constexpr std::size_t kLongestValue = 150;

/// FNV-1a with 64 bits: tells values apart, and is no more than a line of code.
template <typename Bytes>
std::string Digest(const Bytes& bytes) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const auto byte : bytes) {
        hash = (hash ^ static_cast<std::uint8_t>(byte)) * 0x100000001B3;
    }
    std::ostringstream text;
    text << "fnv1a " << std::hex << hash;
    return text.str();
}

std::string ValueText(const record::TagValues& values) {
    std::string text = Describe(values);
    for (const record::Blob& blob : values.as<record::Blob>()) {
        text += " " + Digest(blob);
    }
    return text.size() <= kLongestValue ? text
                                        : text.substr(0, text.rfind(',', kLongestValue)) + " ...], " +
                                              std::to_string(values.count()) + " items, " + Digest(text);
}

/// The log without what it says of the calibration files that a pair passes over: which of them come before
/// its own is up to the file system that lists the folder.
std::vector<std::string> WithoutFilesPassedOver(const std::vector<std::string>& log) {
    std::vector<std::string> lines;
    std::size_t candidate = 0;
    for (const std::string& line : log) {
        if (line == "I [MatchDualCameraPersistFile] enter") {
            candidate = lines.size();
        }
        lines.push_back(line);
        if (line == "I [MatchDualCameraPersistFile] exit : ret = 0") {
            lines.resize(candidate);
        }
    }
    return lines;
}

/// Everything that a boot of the phone did, as text.
std::string Outcome(const std::string& phoneFile) {
    TestPhone phone(PhoneBuilder(virtualphone::ReadPhoneFile(phoneFile)));
    TestPlugin().ExposureModuleInfo();
    std::ostringstream text;
    text << "Properties\n";
    for (const auto& property : phone.record().properties) {
        text << "  " << property.name << " = " << property.value << (property.stored ? "\n" : " (refused)\n");
    }
    text << "\nFiles\n";
    for (const auto& file : phone.phone().changedFiles()) {
        text << "  " << file.path << " mode 0" << std::oct << file.mode << std::dec << ", "
             << file.bytes.size() << " bytes, " << Digest(file.bytes) << "\n";
    }
    for (const auto& merge : phone.record().devices) {
        text << "\nDevice 0x" << std::hex << merge.provider << std::dec << "\n";
        for (const record::Tag& entry : merge.metadata) {
            const auto* const tag = tables::FindPublishedTag(entry.tag);
            text << "  " << (tag == nullptr ? TagText(entry.tag) : tag->name) << " "
                 << ValueText(entry.values) << "\n";
        }
    }
    text << "\nThird calibration\n";
    for (const auto& bytes : phone.record().thirdCalibration) {
        text << "  " << bytes.size() << " bytes, " << Digest(bytes) << "\n";
    }
    text << "\nEEPROM reads\n";
    for (const auto& read : phone.record().eepromReads) {
        text << "  chip " << read.sensorId << ", device bit " << read.deviceBit << ", offset " << read.offset
             << ", " << read.length << " bytes\n";
    }
    // Each line once, in the order in which the lines are first logged.
    std::vector<std::string> lines;
    std::map<std::string, int> counts;
    std::string log;
    const std::vector<std::string> all = WithoutFilesPassedOver(phone.log());
    for (const std::string& logged : all) {
        const std::string line = WithoutAddresses(logged);
        log += line + "\n";
        if (++counts[line] == 1) {
            lines.push_back(line);
        }
    }
    text << "\nLog, " << all.size() << " lines, in their order " << Digest(log) << "\n";
    for (const std::string& line : lines) {
        text << "  " << counts[line] << "x " << line << (line.ends_with('\n') ? "" : "\n");
    }
    return text.str();
}

std::vector<std::string> LinesOf(std::istream&& stream) {
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

class SamplePhones : public testing::TestWithParam<std::string> {};

TEST_P(SamplePhones, BootToTheWholeOutcome) {
    const std::string path = GOLDEN "/" + GetParam() + ".txt";
    const std::string outcome = Outcome(PHONES "/" + GetParam() + ".json");
    if (std::getenv("ZELVAN_RENEW_GOLDEN") != nullptr) {
        std::ofstream(path) << outcome;
    }
    const std::vector<std::string> is = LinesOf(std::istringstream(outcome));
    const std::vector<std::string> was = LinesOf(std::ifstream(path));
    const auto [isLine, wasLine] = std::mismatch(is.begin(), is.end(), was.begin(), was.end());
    EXPECT_TRUE(isLine == is.end() && wasLine == was.end())
        << path << ":" << wasLine - was.begin() + 1 << "\n is: " << (isLine == is.end() ? "(end)" : *isLine)
        << "\nwas: " << (wasLine == was.end() ? "(end)" : *wasLine)
        << "\nscripts/renew-golden writes the file anew.";
}

INSTANTIATE_TEST_SUITE_P(Phones, SamplePhones, testing::Values("halcyrion", "fieldtrouble"),
                         [](const auto& phone) { return phone.param; });

}  // namespace
