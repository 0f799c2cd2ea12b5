#include "zvcam/files/BootSource.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "record/Report.h"
#include "virtualphone/InputFile.h"
#include "virtualphone/PhoneFile.h"

namespace zvcam {

namespace {

namespace fs = std::filesystem;

bool IsStandardInput(const std::string& source) {
    return source == "-";
}

/// The first key of an object's text, comments passed over; empty for a text that is none.
std::string_view FirstKey(std::string_view text) {
    while (!text.empty()) {
        if (text.starts_with("//")) {
            text.remove_prefix(std::min(text.find('\n'), text.size()));
        } else if (text.starts_with("/*")) {
            const std::size_t end = text.find("*/", 2);
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
        } else if (text.front() == '"') {
            text.remove_prefix(1);
            return text.substr(0, text.find('"'));
        } else {
            text.remove_prefix(1);
        }
    }
    return {};
}

/// Takes every file that a phone file names, wherever it does. Nothing is kept of the text but that, so that
/// it may be nested as deep as it likes.
class SideFiles final : public nlohmann::json_sax<nlohmann::json> {
  public:
    SideFiles(fs::path folder, std::vector<fs::path>& files) : mFolder(std::move(folder)), mFiles(files) {}

    bool null() override { return passOver(); }
    bool boolean(bool) override { return passOver(); }
    bool number_integer(number_integer_t) override { return passOver(); }
    bool number_unsigned(number_unsigned_t) override { return passOver(); }
    bool number_float(number_float_t, const string_t&) override { return passOver(); }
    bool binary(binary_t&) override { return passOver(); }
    bool start_object(std::size_t) override { return passOver(); }
    bool end_object() override { return passOver(); }
    bool start_array(std::size_t) override { return passOver(); }
    bool end_array() override { return passOver(); }
    bool key(string_t& name) override {
        mNamesFile = name == "file";
        return true;
    }
    bool string(string_t& text) override {
        if (mNamesFile) {
            mFiles.push_back(mFolder / text);
        }
        return passOver();
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) override {
        return false;
    }

  private:
    bool passOver() {
        mNamesFile = false;
        return true;
    }

    fs::path mFolder;
    std::vector<fs::path>& mFiles;
    bool mNamesFile = false;  ///< the value that comes
};

}  // namespace

bool IsReport(std::string_view text) {
    constexpr std::array<std::string_view, 9> kKeys = {
        "format", "phone", "plugin", "ended", "events", "log", "devices", "eepromReads", "thirdCalibration"};
    return std::find(kKeys.begin(), kKeys.end(), FirstKey(text)) != kKeys.end();
}

BootSource ReadBootSource(const std::string& source) {
    const virtualphone::FileContent content = virtualphone::ReadInput(source);
    std::string name = virtualphone::InputName(source);
    if (!content.error.empty()) {
        throw std::runtime_error(name + ": expected a phone file or a report, got " + content.instead());
    }
    std::string text(content.bytes.begin(), content.bytes.end());
    const bool isReport = IsReport(text);
    return {.text = std::move(text),
            .name = std::move(name),
            .folder = IsStandardInput(source) ? fs::path() : fs::path(source).parent_path(),
            .isReport = isReport};
}

analysis::Boot ReportedBoot(const BootSource& report) {
    analysis::Boot boot;
    try {
        boot.record = record::ReadReport(report.text);
    } catch (const record::ReportError& error) {
        throw std::runtime_error(report.name + ": " + error.what());
    }
    if (!boot.record.description.empty()) {
        boot.phone = virtualphone::ParsePhone(boot.record.description, "", report.name + ": /description");
    }
    return boot;
}

virtualphone::PhoneDescription PhoneOf(const BootSource& source) {
    if (!source.isReport) {
        return virtualphone::ParsePhone(source.text, source.folder, source.name);
    }
    std::optional<virtualphone::PhoneDescription> phone = ReportedBoot(source).phone;
    if (!phone) {
        throw std::runtime_error(source.name + ": the report does not say which phone it was");
    }
    return std::move(*phone);
}

std::vector<fs::path> FilesOf(const std::string& source) {
    if (IsStandardInput(source)) {
        return {};
    }
    std::vector<fs::path> files = {source};
    // What is no phone file is complained of when it is read.
    const virtualphone::FileContent content = virtualphone::ReadWholeFile(source, true);
    const std::string_view text(reinterpret_cast<const char*>(content.bytes.data()), content.bytes.size());
    if (!IsReport(text)) {
        SideFiles named(fs::path(source).parent_path(), files);
        nlohmann::json::sax_parse(text, &named, nlohmann::detail::input_format_t::json, /*strict=*/true,
                                  /*ignore_comments=*/true);
    }
    return files;
}

}  // namespace zvcam
