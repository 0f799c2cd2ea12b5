#include "tests/support/TestPhone.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <android/log.h>

namespace {

std::string WithoutThreadId(const std::string& message) {
    const std::size_t end = message.find(')');
    return message.starts_with('(') && end != std::string::npos ? message.substr(end + 1) : message;
}

std::string LineText(const virtualphone::LogLine& line) {
    return line.tag == "CameraPlatformInfoZelvan" ? WithoutThreadId(line.message)
                                                  : line.tag + ": " + line.message;
}

char PriorityLetter(int priority) {
    constexpr std::string_view kLetters = "??VDIWEF";
    const auto index = static_cast<std::size_t>(priority);
    return index < kLetters.size() ? kLetters[index] : '?';
}

}  // namespace

TestPhone::TestPhone(const PhoneBuilder& phone) : mPhone(phone.description(), mRoot.path()) {}

std::vector<std::string> TestPhone::log() const {
    std::vector<std::string> lines;
    for (const virtualphone::LogLine& line : record().log) {
        lines.push_back(std::string(1, PriorityLetter(line.priority)) + " " + LineText(line));
    }
    return lines;
}

std::vector<std::string> TestPhone::logOf(const std::string& function) const {
    const std::string name = " [" + function + "] ";
    std::vector<std::string> lines;
    for (const std::string& line : log()) {
        if (line.compare(1, name.size(), name) == 0) {
            lines.push_back(line.substr(0, 2) + line.substr(1 + name.size()));
        }
    }
    return lines;
}

std::vector<std::string> TestPhone::errors() const {
    std::vector<std::string> lines;
    for (const virtualphone::LogLine& line : record().log) {
        if (line.priority == ANDROID_LOG_ERROR) {
            lines.push_back(LineText(line));
        }
    }
    return lines;
}

std::string TestPhone::property(const std::string& name) const {
    return mPhone.property(name).value_or("<unset>");
}

std::vector<std::uint8_t> TestPhone::file(const std::string& phonePath) const {
    std::ifstream stream(mPhone.root().string() + phonePath, std::ios::binary);
    EXPECT_TRUE(stream) << phonePath << " is missing";
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void TestPhone::write(const std::string& phonePath, const std::vector<std::uint8_t>& bytes) const {
    const std::filesystem::path path = mPhone.root().string() + phonePath;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream stream(path, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    EXPECT_TRUE(stream.flush()) << phonePath << " cannot be written";
}
