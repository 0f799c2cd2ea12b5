#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "virtualphone/PhoneDescription.h"
#include "zvcam/fleet/Troubles.h"

namespace zvcam {

/// A phone of a made fleet.
struct MadePhone {
    virtualphone::PhoneDescription phone;
    std::optional<std::size_t> trouble;  ///< position in `Troubles`
    std::string where;                   ///< "back main", or a file's path; empty where it is nowhere
    bool cut = false;                    ///< only half of its phone file is to be written
};

/// Makes phones that are like one phone but for their fuse ids, which their calibration files name, and for
/// one trouble at most, so that what a fleet's report counts is what was put in. The same seed makes the
/// same phones on every machine, each by its number alone.
class FleetMaker {
  public:
    /// @throws std::runtime_error for a trouble that no phone like this one can have.
    FleetMaker(virtualphone::PhoneDescription like, std::uint64_t seed, std::vector<TroubleRate> rates);

    MadePhone make(std::uint64_t number) const;

    const virtualphone::PhoneDescription& like() const { return mLike; }

  private:
    /// A module with a fuse id.
    struct Module {
        std::size_t sensor = 0;
        std::size_t offset = 0;            ///< of the fuse id in its memory
        std::vector<std::uint8_t> fuseId;  ///< of the phone that all are like
    };

    const Module* moduleAt(std::size_t sensor) const;
    std::vector<std::uint8_t> fuseIdOf(std::uint64_t number, const Module& module) const;
    void giveFuseIds(std::uint64_t number, const Module* copied, virtualphone::PhoneDescription& phone) const;
    /// The trouble of a phone as it was drawn: a position in mRates.
    std::optional<std::size_t> draw(std::uint64_t number) const;

    virtualphone::PhoneDescription mLike;
    std::uint64_t mSeed;
    std::vector<TroubleRate> mRates;
    std::vector<Module> mModules;
    std::vector<std::vector<TroubleTarget>> mTargets;  ///< one list for each of mRates
};

}  // namespace zvcam
