#include "zvcam/views/Summary.h"

#include <algorithm>
#include <concepts>
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

std::string ItemText(float item) {
    return FloatText(item);
}
std::string ItemText(const record::Blob& item) {
    return BlobText(item);
}
template <std::integral Item>
std::string ItemText(Item item) {
    return std::to_string(item);
}

std::string ValuesText(const record::TagValues& values) {
    return values.visit([](const auto& items) -> std::string {
        std::string text;
        std::size_t shown = 0;
        for (; shown < items.size() && text.size() < kListWidth; ++shown) {
            text += (shown == 0 ? "" : ", ") + ItemText(items[shown]);
        }
        return shown < items.size() ? text + ", ... (" + Counted(items.size(), "value") + ")"
               : items.empty()      ? "-"
                                    : text;
    });
}

std::string TagName(std::uint32_t tag) {
    const tables::PublishedTag* info = tables::FindPublishedTag(tag);
    return info == nullptr ? "-" : info->name;
}

void PrintHeading(std::ostream& out, const std::string& title, std::size_t count) {
    out << '\n' << title << " (" << (count == 0 ? "none" : std::to_string(count)) << ")\n";
}

void PrintProperties(std::ostream& out, const std::vector<const record::PropertySet*>& properties) {
    PrintHeading(out, "Properties set", properties.size());
    Column names;
    for (const record::PropertySet* set : properties) {
        names.fit(Printable(set->name));
    }
    for (const record::PropertySet* set : properties) {
        out << "  " << names.pad(Printable(set->name)) << " = " << Printable(set->value)
            << (set->stored ? "" : "   [refused]") << '\n';
    }
}

void PrintFiles(std::ostream& out, const std::vector<record::ChangedFile>& files) {
    PrintHeading(out, "Files created or changed", files.size());
    Column paths;
    for (const record::ChangedFile& file : files) {
        paths.fit(Printable(file.path));
    }
    for (const record::ChangedFile& file : files) {
        out << "  " << paths.pad(Printable(file.path)) << "  " << ModeText(file.mode) << "  "
            << Counted(file.bytes.size(), "byte") << '\n';
    }
}

void PrintDevices(std::ostream& out, const std::vector<const record::ProviderMerge*>& devices) {
    PrintHeading(out, "Devices", devices.size());
    Column tags;
    Column names;
    for (const record::ProviderMerge* merge : devices) {
        for (const record::Tag& tag : merge->metadata) {
            tags.fit(HexNumber(tag.tag));
            names.fit(TagName(tag.tag));
        }
    }
    for (const record::ProviderMerge* merge : devices) {
        out << "  provider " << HexNumber(merge->provider) << ": " << Counted(merge->metadata.size(), "tag")
            << '\n';
        for (const record::Tag& tag : merge->metadata) {
            out << "    " << tags.pad(HexNumber(tag.tag)) << "  " << names.pad(TagName(tag.tag)) << "  "
                << std::left << std::setw(6) << TypeName(tag.values.type()) << "  " << ValuesText(tag.values)
                << '\n';
        }
    }
}

void PrintThirdCalibration(std::ostream& out, const std::vector<const record::HandOver*>& blocks) {
    PrintHeading(out, "Third calibration hand-overs", blocks.size());
    for (const record::HandOver* handOver : blocks) {
        out << "  " << BlobText(handOver->block) << '\n';
    }
}

void PrintEepromReads(std::ostream& out, const std::vector<const record::EepromRead*>& reads) {
    PrintHeading(out, "EEPROM reads", reads.size());
    for (const record::EepromRead* read : reads) {
        out << "  sensor id " << HexNumber(read->sensorId) << ", device bit " << HexNumber(read->deviceBit)
            << ": " << Counted(read->length, "byte") << " from offset " << read->offset << '\n';
    }
}

void PrintErrors(std::ostream& out, const std::vector<const record::LogLine*>& log) {
    const auto isError = [](const record::LogLine* line) { return line->priority >= ANDROID_LOG_ERROR; };
    const auto count = static_cast<std::size_t>(std::count_if(log.begin(), log.end(), isError));
    PrintHeading(out, "Errors among " + Counted(log.size(), "log line"), count);
    for (const record::LogLine* line : log) {
        if (isError(line)) {
            out << "  " << Printable(line->tag) << ": " << Printable(line->message) << '\n';
        }
    }
}

}  // namespace

void PrintSummary(std::ostream& out, const record::BootRecord& boot) {
    out << "Phone " << (boot.phone.empty() ? "without a name" : Printable(boot.phone)) << '\n';
    PrintProperties(out, EventsOf<record::PropertySet>(boot));
    PrintFiles(out, boot.files);
    PrintDevices(out, EventsOf<record::ProviderMerge>(boot));
    PrintThirdCalibration(out, EventsOf<record::HandOver>(boot));
    PrintEepromReads(out, EventsOf<record::EepromRead>(boot));
    PrintErrors(out, EventsOf<record::LogLine>(boot));
}

}  // namespace zvcam
