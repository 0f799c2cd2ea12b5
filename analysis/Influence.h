#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "analysis/Effects.h"
#include "analysis/StretchSearch.h"
#include "virtualphone/PhoneDescription.h"

namespace analysis {

/// Something that a phone brings to a boot.
struct Input {
    enum class Kind { Module, File, Property };
    Kind kind = Kind::Module;
    std::string name;        ///< "back main", "sensor 4" for a module of no role; the path; the property
    std::size_t sensor = 0;  ///< index, of a module
    std::size_t size = 0;    ///< bytes; of a property 0
    bool set = true;         ///< false: a property that the boot asked for and that the phone does not set
};

/// The inputs of a phone: the modules whose memories can be read, the files, and the properties that it sets
/// or that the boot asked for.
std::vector<Input> InputsOf(const virtualphone::PhoneDescription& phone, const record::BootRecord& boot);

/// One way to change bytes. Each changes each byte; none shows everything: a checksum may come out the same,
/// a number may be cut to its range, and a flag counts with one value alone.
enum class Pattern : std::uint8_t {
    Scatter,     ///< another value, seemingly at random, so that sums come out otherwise
    Complement,  ///< every bit, so that small numbers become large
    One,         ///< 1, as flags are set; 0 where it is 1
};
inline constexpr Pattern kPatterns[] = {Pattern::Scatter, Pattern::Complement, Pattern::One};

/// Whether it is worth to try a pattern on a stretch: the last one is for what seems to do nothing and for
/// single bytes.
/// @param soFar effects of the patterns before.
bool IsWorthTrying(Pattern pattern, const Stretch& stretch, const Effects& soFar);

/// The phone with a stretch of a module's memory or of a file changed.
virtualphone::PhoneDescription WithChange(virtualphone::PhoneDescription phone, const Input& input,
                                          const Stretch& stretch, Pattern pattern);

/// The phone without a file or a property, and with other values of the property.
std::vector<virtualphone::PhoneDescription> Without(const virtualphone::PhoneDescription& phone,
                                                    const Input& input);

/// Sets of effects, each once; the number of the empty one is 0.
class EffectSets {
  public:
    EffectSets() { numberOf({}); }
    std::size_t numberOf(const Effects& effects);
    const Effects& operator[](std::size_t number) const { return mSets[number]; }

  private:
    std::map<Effects, std::size_t> mNumbers;
    std::vector<Effects> mSets;
};

/// What one input does.
struct InputInfluence {
    Input input;
    std::vector<Range> ranges;           ///< of its bytes, all of them
    std::optional<std::size_t> without;  ///< effects of its absence, of a property also of other values;
                                         ///< none: not tried, as for modules
};

/// Which inputs decide what a phone publishes.
struct Influence {
    std::string phone;
    std::size_t step = 0;
    bool complete = true;  ///< false: it was stopped
    std::size_t boots = 0;
    /// What differed between two boots of the unchanged phone; it counts as nobody's effect.
    Effects unsteady;
    EffectSets sets;
    std::vector<InputInfluence> inputs;
};

/// The ranges of an input, neighbours joined that reach the same of what is published: those that differ in
/// what they log are one. `effects` is that of the first.
std::vector<Range> PublishedRanges(const Influence& influence, const InputInfluence& of);

}  // namespace analysis
