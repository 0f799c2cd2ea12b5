#include "zvcam/fleet/Maker.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <utility>

#include "formats/DualCalibrationFile.h"
#include "formats/EepromImage.h"
#include "formats/OisCalibrationFile.h"
#include "zvcam/fleet/TroubleTargets.h"

namespace zvcam {

namespace {

using Bytes = std::vector<std::uint8_t>;
using virtualphone::PhoneDescription;

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

}  // namespace

FleetMaker::FleetMaker(PhoneDescription like, std::uint64_t seed, std::vector<TroubleRate> rates)
    : mLike(std::move(like)), mSeed(seed), mRates(std::move(rates)) {
    for (const TroubleTarget& target : MemoriesWithFuseId(mLike)) {
        const FuseIdDescriptor& place = *FuseIdPlaceOf(mLike, target.sensor);
        mModules.push_back(
            {.sensor = target.sensor,
             .offset = static_cast<std::size_t>(place.fuseIdOffset),
             .fuseId = formats::ReadFuseId(mLike.sensors[target.sensor].eeprom->image, place)});
    }
    for (const TroubleRate& rate : mRates) {
        mTargets.push_back(TargetsOf(rate.trouble, mLike));
        if (mTargets.back().empty()) {
            const Trouble& trouble = Troubles()[rate.trouble];
            throw std::runtime_error("no phone like \"" + mLike.name + "\" can have the trouble " +
                                     trouble.name + ": " + trouble.meaning);
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
    const auto isDuplicate = [&] { return drawn && Troubles()[mRates[*drawn].trouble].name == kDuplicate; };
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
        Strike(*made.trouble, target, made.phone);
        made.cut = Troubles()[*made.trouble].name == kCut;
    }
    return made;
}

}  // namespace zvcam
