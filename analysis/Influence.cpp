#include "analysis/Influence.h"

#include <algorithm>
#include <set>
#include <span>
#include <utility>

#include "analysis/Modules.h"
#include "analysis/PhoneCheck.h"

namespace analysis {

namespace {

using virtualphone::PhoneDescription;

/// What another value of a property may look like to a program: nothing, and the numbers and flags that
/// programs ask for.
constexpr const char* kOtherValues[] = {"", "0", "1", "-1", "true"};

std::uint8_t Changed(std::uint8_t byte, std::size_t offset, Pattern pattern) {
    switch (pattern) {
        case Pattern::Scatter:
            // Knuth's multiplicative hash: 2^32 over the golden ratio. Never 0, so that the byte changes.
            return byte ^
                   static_cast<std::uint8_t>(static_cast<std::uint32_t>(offset) * 2654435761U % 255 + 1);
        case Pattern::Complement:
            return byte ^ 0xFF;
        case Pattern::One:
            return byte == 1 ? 0 : 1;
    }
    return byte;
}

}  // namespace

std::vector<Input> InputsOf(const PhoneDescription& phone, const record::BootRecord& boot) {
    std::vector<Input> inputs;
    for (std::size_t i = 0; i < phone.sensors.size(); ++i) {
        if (phone.sensors[i].eeprom) {
            const int role = RoleOfSensor(phone, i);
            inputs.push_back({.kind = Input::Kind::Module,
                              .name = role < 0 ? "sensor " + std::to_string(i) : RoleName(role),
                              .sensor = i,
                              .size = phone.sensors[i].eeprom->image.size()});
        }
    }
    for (const auto& [path, bytes] : phone.files) {
        inputs.push_back({.kind = Input::Kind::File, .name = path, .size = bytes.size()});
    }
    std::set<std::string> asked;
    for (const record::PropertyAsked* const property : record::EventsOf<record::PropertyAsked>(boot)) {
        asked.insert(property->name);
    }
    for (const auto& [name, value] : phone.properties) {
        inputs.push_back({.kind = Input::Kind::Property, .name = name});
        asked.erase(name);
    }
    for (const std::string& name : asked) {
        inputs.push_back({.kind = Input::Kind::Property, .name = name, .set = false});
    }
    return inputs;
}

bool IsWorthTrying(Pattern pattern, const Stretch& stretch, const Effects& soFar) {
    return pattern != Pattern::One || soFar.empty() || stretch.count == 1;
}

PhoneDescription WithChange(PhoneDescription phone, const Input& input, const Stretch& stretch,
                            Pattern pattern) {
    std::vector<std::uint8_t>& bytes = input.kind == Input::Kind::Module
                                           ? phone.sensors[input.sensor].eeprom->image
                                           : phone.files[input.name];
    for (std::size_t i = stretch.first; i < stretch.first + stretch.count; ++i) {
        bytes[i] = Changed(bytes[i], i, pattern);
    }
    return phone;
}

std::vector<PhoneDescription> Without(const PhoneDescription& phone, const Input& input) {
    std::vector<PhoneDescription> phones;
    if (input.kind == Input::Kind::File) {
        phones.push_back(phone);
        phones.back().files.erase(input.name);
        return phones;
    }
    if (input.set) {
        phones.push_back(phone);
        phones.back().properties.erase(input.name);
    }
    const auto present = phone.properties.find(input.name);
    for (const char* const value : kOtherValues) {
        if (present == phone.properties.end() || present->second != value) {
            phones.push_back(phone);
            phones.back().properties[input.name] = value;
        }
    }
    return phones;
}

std::vector<Range> PublishedRanges(const Influence& influence, const InputInfluence& of) {
    const auto published = [&](const Range& range) {
        Effects effects = influence.sets[range.effects];
        std::erase_if(effects, [](const Effect& effect) { return effect.kind == Effect::Kind::Log; });
        return effects;
    };
    std::vector<Range> ranges;
    for (const Range& range : of.ranges) {
        const bool joins = !ranges.empty() && !range.open && !ranges.back().open &&
                           ReachesPublished(influence.sets[range.effects]) &&
                           published(ranges.back()) == published(range);
        if (joins) {
            ranges.back().bytes.count += range.bytes.count;
            ranges.back().tried = std::max(ranges.back().tried, range.tried);
        } else {
            ranges.push_back(range);
        }
    }
    return ranges;
}

std::size_t EffectSets::numberOf(const Effects& effects) {
    const auto [known, isNew] = mNumbers.emplace(effects, mSets.size());
    if (isNew) {
        mSets.push_back(effects);
    }
    return known->second;
}

}  // namespace analysis
