// fuzz_seeds FOLDER PHONE...: makes the seeds of every fuzz target from phone files, a folder a target, and
// its dictionary where the target reads words.

#include <array>
#include <cctype>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>

#include "formats/Bytes.h"
#include "formats/DualCalibrationFile.h"
#include "formats/EepromDump.h"
#include "formats/OisCalibrationFile.h"
#include "fuzz/support/FreshPlugin.h"
#include "fuzz/support/Fuzzing.h"
#include "record/RecordBytes.h"
#include "record/Report.h"
#include "record/internal/EventFrames.h"
#include "tables/EepromLayouts.h"
#include "tables/PublishedFiles.h"
#include "tests/record/EventSamples.h"
#include "virtualphone/PhoneFile.h"

namespace {

namespace fs = std::filesystem;
using virtualphone::PhoneDescription;

class Seeds {
  public:
    explicit Seeds(fs::path folder) : mFolder(std::move(folder)) {}

    void add(const std::string& target, FuzzBytes bytes) {
        const fs::path folder = mFolder / target;
        fs::create_directories(folder);
        std::ofstream file(folder / ("seed" + std::to_string(mCount++)), std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        if (!file.flush()) {
            throw std::runtime_error("cannot write below " + folder.string());
        }
    }
    void add(const std::string& target, std::string_view text) {
        add(target, FuzzBytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    }

    /// The dictionary of a target: all quoted words of a text.
    void addWords(const std::string& target, std::string_view text) {
        std::set<std::string> words;
        for (std::size_t open = text.find('"'); open != std::string_view::npos;
             open = text.find('"', open + 1)) {
            const std::string_view word = text.substr(open + 1, text.find('"', open + 1) - open - 1);
            if (!word.empty() && word.size() < 40 && word.find_first_of("\\\n{}") == std::string_view::npos) {
                words.insert("\"\\\"" + std::string(word) + "\\\"\"");
            }
        }
        std::ofstream file(mFolder / (target + ".dict"));
        for (const std::string& word : words) {
            file << word << '\n';
        }
    }

  private:
    fs::path mFolder;
    std::size_t mCount = 0;
};

std::string ReportOf(const record::BootRecord& boot) {
    std::ostringstream report;
    record::WriteReport(report, boot);
    return std::move(report).str();
}

/// hexdump -C of an image: sixteen bytes a line, and "*" for lines that repeat the one before.
std::string ShortDump(FuzzBytes image) {
    constexpr std::size_t kLine = 16;
    std::string text;
    std::array<char, 24> number;
    for (std::size_t offset = 0; offset < image.size(); offset += kLine) {
        const FuzzBytes line = image.subspan(offset, kLine);
        if (offset > 0 && std::equal(line.begin(), line.end(),
                                     image.begin() + static_cast<std::ptrdiff_t>(offset - kLine))) {
            text += text.ends_with("*\n") ? "" : "*\n";
            continue;
        }
        std::snprintf(number.data(), number.size(), "%08zx ", offset);
        text += number.data();
        for (const std::uint8_t byte : line) {
            std::snprintf(number.data(), number.size(), " %02x", static_cast<unsigned>(byte));
            text += number.data();
        }
        text += '\n';
    }
    std::snprintf(number.data(), number.size(), "%08zx\n", image.size());
    return text + number.data();
}

/// What a boot did, and the value of each property after it.
record::BootRecord BootOf(const PhoneDescription& phone) {
    const FuzzPhone running(phone);
    FreshPlugin().ExposureModuleInfo();
    record::BootRecord boot;
    boot.phone = phone.name;
    boot.events = running.events();
    boot.files = (*running).changedFiles();
    boot.ended.emplace();
    boot.description = virtualphone::PhoneFileText(phone);
    return boot;
}

void AddBoot(Seeds& seeds, const record::BootRecord& boot) {
    const std::string report = ReportOf(boot);
    seeds.add("ReportFuzz", report);
    seeds.add("DiagnosisFuzz", report);
    seeds.add("RecordBytesFuzz", record::RecordBytes(boot));
}

/// What does not depend on a phone.
void AddSamples(Seeds& seeds) {
    record::BootRecord boot{.phone = "samples",
                            .plugin = {},
                            .events = EventSamples(),
                            .files = {{"/a", 0600, {1}}},
                            .troubles = {"x"},
                            .ended = record::Ended{},
                            .description = "{}"};
    AddBoot(seeds, boot);
    for (const record::Event& event : boot.events) {
        std::vector<std::uint8_t> frame;
        record::AppendEvent(frame, event);
        seeds.add("RecordBytesFuzz", frame);
    }
    boot.events.clear();
    boot.files.clear();
    boot.ended =
        record::Ended{.how = record::Ended::How::Signal, .what = {}, .signal = 11, .step = "SetFuseIdProp"};
    AddBoot(seeds, boot);
    boot.description.clear();
    boot.ordered = false;
    AddBoot(seeds, boot);
    seeds.addWords("ReportFuzz", ReportOf({.phone = "",
                                           .plugin = record::PluginIdentity{},
                                           .events = EventSamples(),
                                           .files = {{"/a", 0600, {}}},
                                           .troubles = {"x"},
                                           .ended = record::Ended{},
                                           .description = ""}));
    seeds.addWords("DiagnosisFuzz", ReportOf({.phone = "",
                                              .plugin = {},
                                              .events = EventSamples(),
                                              .files = {},
                                              .troubles = {},
                                              .ended = record::Ended{},
                                              .description = ""}));
    seeds.addWords("PhoneFileFuzz", virtualphone::PhoneFileSchema());
    seeds.add("EepromDumpFuzz", "\xEF\xBB\xBF# offset = byte\r\n0x0000 = 0xa5\r\n0x0001 = 0x5A\r\n");
    seeds.add("EepromDumpFuzz", "11-21 18:55:07.123  1  2 I CameraPlatformInfoZelvan: 0x0000 = 0xa5\n");
    seeds.add("EepromDumpFuzz", "00000000: a55a 0102 0304 0506 0708 090a 0b0c 0d0e  .Z..............\n");
}

void AddCalibrationFile(Seeds& seeds, const std::vector<std::uint8_t>& file, const std::string& fuseId) {
    seeds.add("CalibrationFilesFuzz", file);
    seeds.add("CalibrationDataFuzz", file);
    seeds.add("OisCalibrationFileFuzz", file);
    std::string both = fuseId + "\n";
    seeds.add("OisCalibrationFuzz", both.append(file.begin(), file.end()));
}

void AddPhone(Seeds& seeds, const fs::path& path) {
    const PhoneDescription phone = virtualphone::ReadPhoneFile(path);
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    seeds.add("PhoneFileFuzz", text.view());
    seeds.add("PhoneFileFuzz", virtualphone::PhoneFileText({.name = phone.name,
                                                            .properties = phone.properties,
                                                            .logicalDevices = phone.logicalDevices,
                                                            .staticMetadata = phone.staticMetadata,
                                                            .faults = phone.faults}));
    // Without their many sizes the devices make a report that is short enough to be changed at every place.
    PhoneDescription small = phone;
    small.files.clear();
    small.logicalDevices.resize(std::min<std::size_t>(small.logicalDevices.size(), 1));
    small.faults.sensorList = true;
    AddBoot(seeds, BootOf(small));

    const record::BootRecord boot = BootOf(phone);
    std::string getprop;
    std::string fuseId;
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot)) {
        getprop += "[" + set->name + "]: [" + set->value + "]\n";
        if (set->name.ends_with("fuseID")) {
            seeds.add("FuseIdTextFuzz", set->value);
            fuseId = fuseId.empty() ? set->value : fuseId;
        }
    }
    std::string folder = "=== getprop.txt\n" + getprop;
    for (const auto& [name, bytes] : phone.files) {
        folder.append("=== " + name.substr(1) + "\n").append(bytes.begin(), bytes.end()) += '\n';
        if (name.starts_with(tables::kPersistFolder)) {
            AddCalibrationFile(seeds, bytes, fuseId);
        }
    }
    std::vector<std::uint8_t> memories;
    for (const virtualphone::SensorDescription& sensor : phone.sensors) {
        if (!sensor.eeprom || sensor.eeprom->image.size() != tables::kEepromImageSize) {
            continue;
        }
        const std::vector<std::uint8_t>& image = sensor.eeprom->image;
        const std::string dump = ShortDump(image);
        seeds.add("EepromDumpFuzz", image);
        seeds.add("EepromDumpFuzz", dump);
        std::vector<std::uint8_t> chosen = {0xFF};
        formats::AppendBytes(chosen, image);
        seeds.add("EepromFindingsFuzz", chosen);
        if (memories.empty()) {
            folder += "=== data/vendor/camera/eeprom_raw_data_dump_back_main\n" + dump;
        }
        formats::AppendBytes(memories, image);
    }
    seeds.add("DevicePullFuzz", folder);
    seeds.add("ModuleMemoryFuzz",
              FuzzBytes(memories).first(std::min(memories.size(), 2 * tables::kEepromImageSize)));
}

/// Files that phones may lack, of both kinds and layouts.
void AddCalibrationFiles(Seeds& seeds) {
    const std::vector<std::uint8_t> fuseId = {1, 2};
    const std::string property = "semc00040102";
    for (const bool crc : {false, true}) {
        for (const std::uint16_t size : formats::kCalibrationBlockSizes) {
            AddCalibrationFile(
                seeds,
                formats::Encode(formats::DualCalibrationFile{.masterFuseId = fuseId,
                                                             .slaveFuseId = {3},
                                                             .block = std::vector<std::uint8_t>(size, 7),
                                                             .crc = crc}),
                property);
        }
    }
    AddCalibrationFile(
        seeds, formats::Encode(formats::OisCalibrationFile{.fuseId = fuseId, .gainX = 9000, .gainY = 9100}),
        property);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::cerr << "fuzz_seeds FOLDER PHONE...\n";
        return 2;
    }
    try {
        Seeds seeds(argv[1]);
        AddSamples(seeds);
        AddCalibrationFiles(seeds);
        for (int i = 2; i < argc; ++i) {
            AddPhone(seeds, argv[i]);
        }
    } catch (const std::exception& error) {
        std::cerr << "fuzz_seeds: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
