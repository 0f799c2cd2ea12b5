#include "zvcam/views/Summary.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include <android/log.h>

#include "tables/PublishedTags.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

using Entry = NSCam::IMetadata::IEntry;
using Memory = NSCam::IMetadata::Memory;

/// A list goes on for as long as its text is shorter than this; of a blob so many bytes are shown.
constexpr std::size_t kListWidth = 48;
constexpr std::size_t kShownBytes = 16;

/// Left column that is as wide as its widest text, within reason.
class Column {
  public:
    void fit(const std::string& text) { mWidth = std::max(mWidth, std::min<std::size_t>(text.size(), 60)); }
    std::string pad(std::string text) const {
        text.resize(std::max(text.size(), mWidth), ' ');
        return text;
    }

  private:
    std::size_t mWidth = 0;
};

std::string Counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string BlobText(std::span<const std::uint8_t> bytes) {
    std::string text = Counted(bytes.size(), "byte");
    const std::size_t shown = std::min(bytes.size(), kShownBytes);
    for (std::size_t i = 0; i < shown; ++i) {
        text += (i == 0 ? ": " : " ") + HexBytes(bytes.subspan(i, 1));
    }
    return text + (shown < bytes.size() ? " ..." : "");
}

std::string ItemText(std::int32_t item) {
    return std::to_string(item);
}
std::string ItemText(std::int64_t item) {
    return std::to_string(item);
}
std::string ItemText(unsigned char item) {
    return std::to_string(item);
}
std::string ItemText(float item) {
    return FloatText(item);
}
std::string ItemText(const Memory& item) {
    return BlobText(std::span(item.array(), item.size()));
}

template <typename Item>
std::string ListText(const Entry& entry) {
    std::string text;
    std::size_t shown = 0;
    for (; shown < entry.count() && text.size() < kListWidth; ++shown) {
        text += (shown == 0 ? "" : ", ") + ItemText(entry.itemAt<Item>(shown));
    }
    return shown < entry.count() ? text + ", ... (" + Counted(entry.count(), "value") + ")" : text;
}

std::string ValuesText(const Entry& entry) {
    using Type = NSCam::IMetadata::Type;
    switch (entry.type()) {
        case Type::Int32:
            return ListText<std::int32_t>(entry);
        case Type::Int64:
            return ListText<std::int64_t>(entry);
        case Type::Float:
            return ListText<float>(entry);
        case Type::Byte:
            return ListText<unsigned char>(entry);
        case Type::Memory:
            return ListText<Memory>(entry);
        case Type::None:
            break;
    }
    return "-";
}

std::string TagName(std::uint32_t tag) {
    const tables::PublishedTag* info = tables::FindPublishedTag(tag);
    return info == nullptr ? "-" : info->name;
}

void PrintHeading(std::ostream& out, const std::string& title, std::size_t count) {
    out << '\n' << title << " (" << (count == 0 ? "none" : std::to_string(count)) << ")\n";
}

void PrintProperties(std::ostream& out, const std::vector<virtualphone::PropertySet>& properties) {
    PrintHeading(out, "Properties set", properties.size());
    Column names;
    for (const virtualphone::PropertySet& set : properties) {
        names.fit(Printable(set.name));
    }
    for (const virtualphone::PropertySet& set : properties) {
        out << "  " << names.pad(Printable(set.name)) << " = " << Printable(set.value)
            << (set.stored ? "" : "   [refused]") << '\n';
    }
}

void PrintFiles(std::ostream& out, const std::vector<virtualphone::ChangedFile>& files) {
    PrintHeading(out, "Files created or changed", files.size());
    Column paths;
    for (const virtualphone::ChangedFile& file : files) {
        paths.fit(Printable(file.path));
    }
    for (const virtualphone::ChangedFile& file : files) {
        out << "  " << paths.pad(Printable(file.path)) << "  " << ModeText(file.mode) << "  "
            << Counted(file.bytes.size(), "byte") << '\n';
    }
}

void PrintDevices(std::ostream& out, const std::vector<virtualphone::ProviderMerge>& devices) {
    PrintHeading(out, "Devices", devices.size());
    Column tags;
    Column names;
    for (const virtualphone::ProviderMerge& merge : devices) {
        for (const Entry& entry : merge.metadata.entries()) {
            tags.fit(HexNumber(entry.tag()));
            names.fit(TagName(entry.tag()));
        }
    }
    for (const virtualphone::ProviderMerge& merge : devices) {
        out << "  provider " << HexNumber(merge.provider) << ": " << Counted(merge.metadata.count(), "tag")
            << '\n';
        for (const Entry& entry : merge.metadata.entries()) {
            out << "    " << tags.pad(HexNumber(entry.tag())) << "  " << names.pad(TagName(entry.tag()))
                << "  " << std::left << std::setw(6) << TypeName(entry.type()) << "  " << ValuesText(entry)
                << '\n';
        }
    }
}

void PrintThirdCalibration(std::ostream& out, const std::vector<std::vector<std::uint8_t>>& blocks) {
    PrintHeading(out, "Third calibration hand-overs", blocks.size());
    for (const std::vector<std::uint8_t>& block : blocks) {
        out << "  " << BlobText(block) << '\n';
    }
}

void PrintEepromReads(std::ostream& out, const std::vector<virtualphone::EepromRead>& reads) {
    PrintHeading(out, "EEPROM reads", reads.size());
    for (const virtualphone::EepromRead& read : reads) {
        out << "  sensor id " << HexNumber(read.sensorId) << ", device bit " << HexNumber(read.deviceBit)
            << ": " << Counted(read.length, "byte") << " from offset " << read.offset << '\n';
    }
}

void PrintErrors(std::ostream& out, const std::vector<virtualphone::LogLine>& log) {
    const auto isError = [](const virtualphone::LogLine& line) { return line.priority >= ANDROID_LOG_ERROR; };
    const auto count = static_cast<std::size_t>(std::count_if(log.begin(), log.end(), isError));
    PrintHeading(out, "Errors among " + Counted(log.size(), "log line"), count);
    for (const virtualphone::LogLine& line : log) {
        if (isError(line)) {
            out << "  " << Printable(line.tag) << ": " << Printable(line.message) << '\n';
        }
    }
}

}  // namespace

void PrintSummary(std::ostream& out, const supervisor::BootOutcome& outcome) {
    out << "Phone " << (outcome.phone.empty() ? "without a name" : Printable(outcome.phone)) << '\n';
    PrintProperties(out, outcome.record.properties);
    PrintFiles(out, outcome.files);
    PrintDevices(out, outcome.record.devices);
    PrintThirdCalibration(out, outcome.record.thirdCalibration);
    PrintEepromReads(out, outcome.record.eepromReads);
    PrintErrors(out, outcome.record.log);
}

}  // namespace zvcam
