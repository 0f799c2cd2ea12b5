#include "zvcam/fleet/Maker.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <utility>

#include "analysis/Modules.h"
#include "analysis/PhoneCheck.h"
#include "formats/DecimalText.h"
#include "formats/DualCalibrationFile.h"
#include "formats/EepromImage.h"
#include "formats/OisCalibrationFile.h"
#include "tables/CameraModules.h"
#include "tables/PublishedFiles.h"

namespace zvcam {

namespace {

using Bytes = std::vector<std::uint8_t>;
using Targets = std::vector<TroubleTarget>;
using virtualphone::PhoneDescription;

/// The modules that have a memory, in the order of their sensors, with its layout.
Targets Memories(const PhoneDescription& phone) {
    Targets targets;
    for (std::size_t i = 0; i < phone.sensors.size(); ++i) {
        if (const int role = analysis::RoleOfSensor(phone, i); role >= 0 && phone.sensors[i].eeprom) {
            targets.push_back({.sensor = i,
                               .where = analysis::RoleName(role),
                               .layout = formats::FindEepromLayout(phone.sensors[i].eeprom->image)});
        }
    }
    return targets;
}

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

/// Where the module at a sensor index keeps its fuse id; null where nobody knows.
const FuseIdDescriptor* FuseIdPlaceOf(const PhoneDescription& phone, std::size_t sensor) {
    const int role = analysis::RoleOfSensor(phone, sensor);
    const auto* const row =
        std::find_if(tables::kFuseIds.begin(), tables::kFuseIds.end(),
                     [=](const tables::FuseIdOfRole& each) { return each.roleId == role; });
    return row == tables::kFuseIds.end() ? nullptr : &row->fuseId;
}

Targets WithFuseId(const PhoneDescription& phone, std::string_view) {
    Targets targets = Memories(phone);
    std::erase_if(
        targets, [&](const TroubleTarget& target) { return FuseIdPlaceOf(phone, target.sensor) == nullptr; });
    return targets;
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

bool IsInPersistFolder(const std::string& path) {
    return path.starts_with(tables::kPersistFolder);
}

bool IsPairFile(const std::string& path, const Bytes& bytes) {
    return IsInPersistFolder(path) &&
           formats::ReadDualCalibrationFile(bytes).trouble == formats::DualCalibrationReading::Trouble::None;
}

bool IsStabiliserFile(const std::string& path, const Bytes& bytes) {
    return IsInPersistFolder(path) && !IsPairFile(path, bytes) &&
           formats::ReadOisCalibrationFile(bytes).crcGood;
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

constexpr std::string_view kDuplicate = "duplicate";
constexpr std::string_view kCut = "cut";

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

/// What draws are made for; each has numbers of its own.
enum class Purpose : std::uint64_t { Trouble, FuseId };

/// A generator for one purpose and one phone. Its numbers, unlike those of the standard distributions, are
/// the same everywhere.
std::mt19937_64 Generator(std::uint64_t seed, Purpose purpose, std::uint64_t number, std::uint64_t part = 0) {
    std::uint64_t mixed = seed;
    for (const std::uint64_t each : {static_cast<std::uint64_t>(purpose), number, part}) {
        // The step of SplitMix64.
        mixed += 0x9E3779B97F4A7C15U + each;
        mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBU;
        mixed ^= mixed >> 31;
    }
    return std::mt19937_64(mixed);
}

/// Rates are held in parts of 2^53: what a double keeps exactly.
constexpr int kRateBits = 53;

std::uint64_t PartsOf(double rate) {
    return static_cast<std::uint64_t>(std::ldexp(rate, kRateBits));
}

/// One of `count` numbers, each as likely as the others but for one part in 2^32 / count.
std::size_t Choose(std::mt19937_64& generator, std::size_t count) {
    return static_cast<std::size_t>(((generator() >> 32) * count) >> 32);
}

/// Replaces a fuse id that one of the modules had.
void Rename(Bytes& fuseId, const std::vector<std::pair<Bytes, Bytes>>& renamed) {
    const auto found = std::find_if(renamed.begin(), renamed.end(),
                                    [&](const auto& names) { return names.first == fuseId; });
    if (found != renamed.end()) {
        fuseId = found->second;
    }
}

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

FleetMaker::FleetMaker(PhoneDescription like, std::uint64_t seed, std::vector<TroubleRate> rates)
    : mLike(std::move(like)), mSeed(seed), mRates(std::move(rates)) {
    for (const TroubleTarget& target : WithFuseId(mLike, {})) {
        const FuseIdDescriptor& place = *FuseIdPlaceOf(mLike, target.sensor);
        mModules.push_back(
            {.sensor = target.sensor,
             .offset = static_cast<std::size_t>(place.fuseIdOffset),
             .fuseId = formats::ReadFuseId(mLike.sensors[target.sensor].eeprom->image, place)});
    }
    for (const TroubleRate& rate : mRates) {
        const Mischief& mischief = kMischief[rate.trouble];
        mTargets.push_back(mischief.targets(mLike, mischief.trouble.name));
        if (mTargets.back().empty()) {
            throw std::runtime_error("no phone like \"" + mLike.name + "\" can have the trouble " +
                                     mischief.trouble.name + ": " + mischief.trouble.meaning);
        }
    }
}

const FleetMaker::Module* FleetMaker::moduleAt(std::size_t sensor) const {
    return &*std::find_if(mModules.begin(), mModules.end(),
                          [=](const Module& module) { return module.sensor == sensor; });
}

Bytes FleetMaker::fuseIdOf(std::uint64_t number, const Module& module) const {
    std::mt19937_64 generator = Generator(mSeed, Purpose::FuseId, number, module.sensor);
    Bytes fuseId(module.fuseId.size());
    std::generate(fuseId.begin(), fuseId.end(), [&] { return static_cast<std::uint8_t>(generator() >> 56); });
    // The phone's number makes it the only one of its kind.
    for (std::size_t i = 0; i < std::min<std::size_t>(fuseId.size(), 4); ++i) {
        fuseId[fuseId.size() - 1 - i] = static_cast<std::uint8_t>(number >> 8 * i);
    }
    return fuseId;
}

std::optional<std::size_t> FleetMaker::draw(std::uint64_t number) const {
    std::uint64_t parts = Generator(mSeed, Purpose::Trouble, number)() >> (64 - kRateBits);
    for (std::size_t i = 0; i < mRates.size(); ++i) {
        const std::uint64_t share = PartsOf(mRates[i].rate);
        if (parts < share) {
            return i;
        }
        parts -= share;
    }
    return std::nullopt;
}

void FleetMaker::giveFuseIds(std::uint64_t number, const Module* copied, PhoneDescription& phone) const {
    std::vector<std::pair<Bytes, Bytes>> renamed;
    for (const Module& module : mModules) {
        const Bytes fuseId = fuseIdOf(&module == copied ? number - 1 : number, module);
        Bytes& image = phone.sensors[module.sensor].eeprom->image;
        std::copy(fuseId.begin(), fuseId.end(), image.begin() + static_cast<std::ptrdiff_t>(module.offset));
        renamed.emplace_back(module.fuseId, fuseId);
    }
    for (auto& [path, bytes] : phone.files) {
        if (IsPairFile(path, bytes)) {
            formats::DualCalibrationFile file = formats::ReadDualCalibrationFile(bytes).file;
            Rename(file.masterFuseId, renamed);
            Rename(file.slaveFuseId, renamed);
            bytes = formats::Encode(file);
        } else if (IsStabiliserFile(path, bytes)) {
            formats::OisCalibrationFile file = formats::ReadOisCalibrationFile(bytes).file;
            Rename(file.fuseId, renamed);
            bytes = formats::Encode(file);
        }
    }
}

MadePhone FleetMaker::make(std::uint64_t number) const {
    MadePhone made;
    made.phone = mLike;
    std::array<char, 32> digits;
    std::snprintf(digits.data(), digits.size(), " %06llu", static_cast<unsigned long long>(number));
    made.phone.name += digits.data();

    std::optional<std::size_t> drawn = draw(number);
    const auto isDuplicate = [&] { return drawn && kTroubles[mRates[*drawn].trouble].name == kDuplicate; };
    // It takes a phone before it whose fuse ids are read, and that no other shares.
    if (isDuplicate() && (number == 0 || draw(number - 1))) {
        drawn.reset();
    }
    const Module* copied = nullptr;
    TroubleTarget target;
    if (drawn) {
        std::mt19937_64 generator = Generator(mSeed, Purpose::Trouble, number, 1);
        target = mTargets[*drawn][Choose(generator, mTargets[*drawn].size())];
        made.trouble = mRates[*drawn].trouble;
        made.where = target.where;
        copied = isDuplicate() ? moduleAt(target.sensor) : nullptr;
    }
    giveFuseIds(number, copied, made.phone);
    if (drawn) {
        const Mischief& mischief = kMischief[*made.trouble];
        mischief.strike(made.phone, target, mischief.trouble.name);
        made.cut = mischief.trouble.name == kCut;
    }
    return made;
}

}  // namespace zvcam
