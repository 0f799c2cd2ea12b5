#include "zvcam/fleet/Troubles.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "analysis/Modules.h"
#include "analysis/PhoneCheck.h"
#include "formats/DecimalText.h"
#include "formats/DualCalibrationFile.h"
#include "formats/EepromImage.h"

namespace zvcam {

namespace {

using Bytes = std::vector<std::uint8_t>;
using Targets = std::vector<TroubleTarget>;
using virtualphone::PhoneDescription;

Bytes& ImageOf(PhoneDescription& phone, const TroubleTarget& target) {
    return phone.sensors[target.sensor].eeprom->image;
}

/// The range of a layout that a trouble is called after.
const SubModuleCheckSumDesc* RangeOf(const EepromCheckSumDesc& layout, std::string_view trouble) {
    const auto ranges = tables::RangesOf(layout);
    const auto range = std::find_if(ranges.begin(), ranges.end(), [=](const SubModuleCheckSumDesc& each) {
        return std::equal(trouble.begin(), trouble.end(), each.name,
                          each.name + std::string_view(each.name).size(),
                          [](char small, char capital) { return small - 'a' == capital - 'A'; });
    });
    return range == ranges.end() ? nullptr : &*range;
}

Targets WithRange(const PhoneDescription& phone, std::string_view trouble) {
    Targets targets = Memories(phone);
    std::erase_if(targets, [&](const TroubleTarget& target) {
        const auto* const range = target.layout == nullptr ? nullptr : RangeOf(*target.layout, trouble);
        return range == nullptr ||
               !formats::CheckRange(phone.sensors[target.sensor].eeprom->image, *range).good();
    });
    return targets;
}

void BreakRange(PhoneDescription& phone, const TroubleTarget& target, std::string_view trouble) {
    Bytes& image = ImageOf(phone, target);
    const SubModuleCheckSumDesc& range = *RangeOf(*target.layout, trouble);
    // A checksum is 1 to 255, so 0 is never good.
    image[range.checkSumAddr] = 0;
}

Targets AnyMemory(const PhoneDescription& phone, std::string_view) {
    return Memories(phone);
}

Targets WithFuseId(const PhoneDescription& phone, std::string_view) {
    return MemoriesWithFuseId(phone);
}

void Erase(PhoneDescription& phone, const TroubleTarget& target, std::string_view) {
    ImageOf(phone, target).assign(tables::kEepromImageSize, 0xFF);
}

void FailRead(PhoneDescription& phone, const TroubleTarget& target, std::string_view) {
    phone.sensors[target.sensor].eeprom->readReturns = 0;
}

Targets LastSensor(const PhoneDescription& phone, std::string_view) {
    Targets targets = Memories(phone);
    std::erase_if(targets,
                  [&](const TroubleTarget& target) { return target.sensor + 1 < phone.sensors.size(); });
    return targets;
}

void RemoveLastSensor(PhoneDescription& phone, const TroubleTarget&, std::string_view) {
    phone.sensors.pop_back();
}

/// Each memory with each layout of another module whose ranges it passes too: nothing but the layout is wrong
/// then.
Targets WithOtherLayout(const PhoneDescription& phone, std::string_view) {
    Targets targets;
    for (const TroubleTarget& memory : Memories(phone)) {
        for (const EepromCheckSumDesc& layout : tables::kEepromLayouts) {
            const auto ranges = formats::CheckRanges(phone.sensors[memory.sensor].eeprom->image, layout);
            if (memory.layout != nullptr &&
                analysis::RoleOfLayout(layout) != analysis::RoleOfLayout(*memory.layout) &&
                std::all_of(ranges.begin(), ranges.end(), [](const auto& range) { return range.good(); })) {
                targets.push_back({.sensor = memory.sensor, .where = memory.where, .layout = &layout});
            }
        }
    }
    return targets;
}

void WriteHeaderId(PhoneDescription& phone, const TroubleTarget& target, std::string_view) {
    for (std::uint32_t i = 0; i < 4; ++i) {
        ImageOf(phone, target)[target.layout->headerIdOffset + i] =
            static_cast<std::uint8_t>(target.layout->expectHeaderId >> 8 * i);
    }
}

/// The files of which something is true.
Targets Files(const PhoneDescription& phone, bool (*is)(const std::string& path, const Bytes& bytes)) {
    Targets targets;
    for (const auto& [path, bytes] : phone.files) {
        if (is(path, bytes)) {
            targets.push_back({.where = path});
        }
    }
    return targets;
}

Targets PairFilesWithCrc(const PhoneDescription& phone, std::string_view) {
    Targets targets = Files(phone, IsPairFile);
    std::erase_if(targets, [&](const TroubleTarget& target) {
        return !formats::ReadDualCalibrationFile(phone.files.at(target.where)).file.crc;
    });
    return targets;
}

void BreakCrc(PhoneDescription& phone, const TroubleTarget& target, std::string_view) {
    phone.files.at(target.where).back() ^= 0xFF;
}

Targets AllPairFiles(const PhoneDescription& phone, std::string_view) {
    return Files(phone, IsPairFile).empty() ? Targets() : Targets(1);
}

void RemovePairFiles(PhoneDescription& phone, const TroubleTarget&, std::string_view) {
    std::erase_if(phone.files, [](const auto& file) { return IsPairFile(file.first, file.second); });
}

Targets StabiliserFiles(const PhoneDescription& phone, std::string_view) {
    return Files(phone, IsStabiliserFile);
}

void RemoveFile(PhoneDescription& phone, const TroubleTarget& target, std::string_view) {
    phone.files.erase(target.where);
}

Targets Anywhere(const PhoneDescription&, std::string_view) {
    return Targets(1);
}

/// What is not done to the description, but where it is made or written.
void DoNothing(PhoneDescription&, const TroubleTarget&, std::string_view) {}

/// A trouble, and how it comes about.
struct Mischief {
    Trouble trouble;
    Targets (*targets)(const PhoneDescription& like, std::string_view trouble);
    void (*strike)(PhoneDescription& phone, const TroubleTarget& target, std::string_view trouble);
};

constexpr std::array<Mischief, 14> kMischief = {{
    {{"af", "the autofocus checksum of a module is bad", "SELECT count(*) FROM modules WHERE af = 'bad'"},
     WithRange,
     BreakRange},
    {{"awb", "the white balance checksum of a module is bad",
      "SELECT count(*) FROM modules WHERE awb = 'bad'"},
     WithRange,
     BreakRange},
    {{"lsc", "the lens shading checksum of a module is bad",
      "SELECT count(*) FROM modules WHERE lsc = 'bad'"},
     WithRange,
     BreakRange},
    {{"pdaf", "the phase detection checksum of a module is bad",
      "SELECT count(*) FROM modules WHERE pdaf = 'bad'"},
     WithRange,
     BreakRange},
    {{"ois", "the stabiliser checksum of a module is bad", "SELECT count(*) FROM modules WHERE ois = 'bad'"},
     WithRange,
     BreakRange},
    {{"erased", "the memory of a module is erased", "SELECT count(*) FROM modules WHERE erased = 255"},
     AnyMemory,
     Erase},
    {{"unreadable", "the memory of a module cannot be read",
      "SELECT count(*) FROM modules WHERE reading = 'failed'"},
     AnyMemory,
     FailRead},
    {{"missing", "the last sensor is missing", "SELECT count(*) FROM modules WHERE chip IS NULL"},
     LastSensor,
     RemoveLastSensor},
    {{"layout", "the memory of a module is laid out for another one",
      "SELECT count(*) FROM modules WHERE fits = 0"},
     WithOtherLayout,
     WriteHeaderId},
    {{kDuplicate.data(), "a module has the fuse id of that of the phone before",
      "SELECT count(*) FROM repeated_fuse_ids"},
     WithFuseId,
     DoNothing},
    {{"crc", "the CRC of a pair's persist file is bad",
      "SELECT count(DISTINCT phone) FROM refusals WHERE kind = 'CRC # stored, # computed'"},
     PairFilesWithCrc,
     BreakCrc},
    {{"persist", "no pair has a persist file",
      "SELECT count(DISTINCT phone) FROM refusals WHERE reason = 'holds no calibration file'"},
     AllPairFiles,
     RemovePairFiles},
    {{"stabiliser", "the stabiliser has no persist file",
      "SELECT count(*) FROM stabiliser WHERE reason = 'cannot be opened'"},
     StabiliserFiles,
     RemoveFile},
    {{kCut.data(), "the phone file ends in its middle", "SELECT count(*) FROM phones WHERE ended = 'unread'"},
     Anywhere,
     DoNothing},
}};

constexpr auto kTroubles = [] {
    std::array<Trouble, kMischief.size()> troubles{};
    for (std::size_t i = 0; i < troubles.size(); ++i) {
        troubles[i] = kMischief[i].trouble;
    }
    return troubles;
}();

std::string NamesOfTroubles() {
    std::string names;
    for (const Trouble& trouble : kTroubles) {
        names += (names.empty() ? "" : ", ") + std::string(trouble.name);
    }
    return names;
}

TroubleRate ReadTroubleRate(std::string_view text) {
    const std::string_view name = text.substr(0, text.find('='));
    const auto* const trouble = std::find_if(kTroubles.begin(), kTroubles.end(),
                                             [=](const Trouble& each) { return each.name == name; });
    if (trouble == kTroubles.end()) {
        throw std::runtime_error("no trouble is called \"" + std::string(name) + "\"; there are " +
                                 NamesOfTroubles());
    }
    TroubleRate rate = {.trouble = static_cast<std::size_t>(trouble - kTroubles.begin())};
    rate.rate = formats::ParseDecimal(text.substr(std::min(text.size(), name.size() + 1))).value_or(-1);
    if (!(rate.rate >= 0 && rate.rate <= 1)) {
        throw std::runtime_error("expected a rate of 0 to 1 such as " + std::string(name) + "=0.01, got \"" +
                                 std::string(text) + "\"");
    }
    return rate;
}

}  // namespace

std::span<const Trouble> Troubles() {
    return kTroubles;
}

std::vector<TroubleRate> ReadTroubleRates(std::string_view text) {
    std::vector<TroubleRate> rates;
    double sum = 0;
    while (!text.empty()) {
        const std::string_view part = text.substr(0, text.find(','));
        text.remove_prefix(std::min(text.size(), part.size() + 1));
        rates.push_back(ReadTroubleRate(part));
        sum += rates.back().rate;
        if (std::count_if(rates.begin(), rates.end(), [&](const TroubleRate& rate) {
                return rate.trouble == rates.back().trouble;
            }) > 1) {
            throw std::runtime_error("the trouble " + std::string(kTroubles[rates.back().trouble].name) +
                                     " stands there twice");
        }
    }
    if (sum > 1) {
        throw std::runtime_error("a phone has one trouble at most, but the rates sum to more than 1");
    }
    return rates;
}

std::vector<TroubleTarget> TargetsOf(std::size_t trouble, const PhoneDescription& phone) {
    return kMischief[trouble].targets(phone, kMischief[trouble].trouble.name);
}

void Strike(std::size_t trouble, const TroubleTarget& target, PhoneDescription& phone) {
    kMischief[trouble].strike(phone, target, kMischief[trouble].trouble.name);
}

}  // namespace zvcam
