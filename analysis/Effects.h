#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "record/BootRecord.h"

namespace analysis {

/// One of the things in which two boots of nearly the same phone may differ.
struct Effect {
    enum class Kind : std::uint8_t { Ending, Property, File, Device, Tag, HandOver, Log };
    Kind kind = Kind::Ending;
    /// The property, the path, the device ("4/3"), the operation that logged.
    std::string name = {};
    std::uint32_t tag = 0;       ///< of a tag, whose device `name` is
    std::uint32_t handOver = 0;  ///< which one, counted from 0

    friend bool operator==(const Effect&, const Effect&) = default;
    friend bool operator<(const Effect& left, const Effect& right) {
        return std::tie(left.kind, left.name, left.tag, left.handOver) <
               std::tie(right.kind, right.name, right.tag, right.handOver);
    }
};

using Effects = std::set<Effect>;

/// Whether something that was published differs: anything but the log.
bool ReachesPublished(const Effects& effects);

/// What is different in other boots than in one that they are held against. As `Compare` it passes over
/// thread ids and addresses, and the phone's name; it does not say how things differ and is fast enough for
/// thousands of boots.
class Reference {
  public:
    /// @param boot outlives it.
    explicit Reference(const record::BootRecord& boot);

    Effects effectsIn(const record::BootRecord& boot) const;

  private:
    using Lines = std::map<std::string_view, std::vector<const record::LogLine*>>;
    /// Which update of a provider, counted from 0.
    using Update = std::pair<std::uint32_t, std::size_t>;
    using Updates = std::map<Update, const record::ProviderMerge*>;
    static Lines LinesOf(const record::BootRecord& boot);
    static Updates UpdatesOf(const record::BootRecord& boot);

    void compareTags(const record::BootRecord& boot, Effects& effects) const;
    void compareLog(const record::BootRecord& boot, Effects& effects) const;
    std::string nameOf(const Update& update) const;

    const record::BootRecord& mBoot;
    Lines mLines;
    Updates mUpdates;
    std::map<Update, std::string> mNames;  ///< of the devices
};

/// Effects as bytes, for another process of the same program.
std::string EffectBytes(const Effects& effects);
/// What `EffectBytes` made.
Effects ReadEffectBytes(std::string_view bytes);

}  // namespace analysis
