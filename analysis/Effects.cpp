#include "analysis/Effects.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "analysis/Devices.h"
#include "analysis/Diff.h"
#include "analysis/Steps.h"

namespace analysis {

namespace {

using Kind = Effect::Kind;

/// Visits the keys whose values differ, or that one map alone has.
template <typename Map, typename Same, typename Visit>
void ForEachDifference(const Map& left, const Map& right, const Same& same, const Visit& visit) {
    constexpr const typename Map::mapped_type* kNone = nullptr;
    auto l = left.begin();
    auto r = right.begin();
    while (l != left.end() || r != right.end()) {
        if (r == right.end() || (l != left.end() && l->first < r->first)) {
            visit(l->first, &l->second, kNone);
            ++l;
        } else if (l == left.end() || r->first < l->first) {
            visit(r->first, kNone, &r->second);
            ++r;
        } else {
            if (!same(l->second, r->second)) {
                visit(l->first, &l->second, &r->second);
            }
            ++l;
            ++r;
        }
    }
}

/// Adds an effect for each key of two maps of pointers whose values differ.
template <typename Map, typename EffectOf>
void AddDifferences(const Map& left, const Map& right, const EffectOf& effectOf, Effects& effects) {
    ForEachDifference(
        left, right, [](const auto* a, const auto* b) { return *a == *b; },
        [&](const auto& key, const auto*, const auto*) { effects.insert(effectOf(key)); });
}

/// The effect on what has a name.
auto Named(Kind kind) {
    return [kind](std::string_view name) { return Effect{.kind = kind, .name = std::string(name)}; };
}

std::map<std::string_view, const record::PropertySet*> Properties(const record::BootRecord& boot) {
    std::map<std::string_view, const record::PropertySet*> properties;
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot)) {
        properties[set->name] = set;
    }
    return properties;
}

std::map<std::string_view, const record::ChangedFile*> Files(const record::BootRecord& boot) {
    std::map<std::string_view, const record::ChangedFile*> files;
    for (const std::vector<record::ChangedFile>* const list : {&boot.files, &boot.rewritten}) {
        for (const record::ChangedFile& file : *list) {
            files[file.path] = &file;
        }
    }
    return files;
}

std::map<std::uint32_t, const record::HandOver*> HandOvers(const record::BootRecord& boot) {
    std::map<std::uint32_t, const record::HandOver*> handOvers;
    for (const record::HandOver* const handOver : record::EventsOf<record::HandOver>(boot)) {
        handOvers.emplace(static_cast<std::uint32_t>(handOvers.size()), handOver);
    }
    return handOvers;
}

std::string_view WithoutThread(std::string_view message) {
    const std::size_t close = message.find(')');
    return message.starts_with('(') && close != std::string_view::npos ? message.substr(close) : message;
}

bool SameLine(const record::LogLine& left, const record::LogLine& right) {
    return left.priority == right.priority && left.tag == right.tag &&
           (WithoutThread(left.message) == WithoutThread(right.message) ||
            WithoutRunNumbers(left) == WithoutRunNumbers(right));
}

}  // namespace

bool ReachesPublished(const Effects& effects) {
    return std::any_of(effects.begin(), effects.end(),
                       [](const Effect& effect) { return effect.kind != Kind::Log; });
}

Reference::Reference(const record::BootRecord& boot)
    : mBoot(boot), mLines(LinesOf(boot)), mUpdates(UpdatesOf(boot)) {
    const Course course = CourseOf(boot);
    for (const auto& [update, merge] : mUpdates) {
        const auto device =
            std::find_if(course.devices.begin(), course.devices.end(),
                         [merge = merge](const DeviceUpdate& of) { return of.merge == merge; });
        if (device != course.devices.end()) {
            mNames[update] = DeviceNumber(device->logicalIndex, device->memberId);
        }
    }
}

Effects Reference::effectsIn(const record::BootRecord& boot) const {
    Effects effects;
    if (boot.ended != mBoot.ended) {
        effects.insert({.kind = Kind::Ending});
    }
    AddDifferences(Properties(mBoot), Properties(boot), Named(Kind::Property), effects);
    AddDifferences(Files(mBoot), Files(boot), Named(Kind::File), effects);
    AddDifferences(
        HandOvers(mBoot), HandOvers(boot),
        [](std::uint32_t number) { return Effect{.kind = Kind::HandOver, .handOver = number}; }, effects);
    compareTags(boot, effects);
    compareLog(boot, effects);
    return effects;
}

Reference::Lines Reference::LinesOf(const record::BootRecord& boot) {
    Lines lines;
    for (const record::LogLine* const line : record::EventsOf<record::LogLine>(boot)) {
        const std::string_view operation = record::OperationOf(*line);
        lines[operation.empty() ? std::string_view(line->tag) : operation].push_back(line);
    }
    return lines;
}

Reference::Updates Reference::UpdatesOf(const record::BootRecord& boot) {
    Updates updates;
    std::map<std::uint32_t, std::size_t> counts;
    for (const record::ProviderMerge* const merge : record::EventsOf<record::ProviderMerge>(boot)) {
        updates.emplace(Update(merge->provider, counts[merge->provider]++), merge);
    }
    return updates;
}

std::string Reference::nameOf(const Update& update) const {
    const auto known = mNames.find(update);
    return known != mNames.end() ? known->second : "of provider " + std::to_string(update.first);
}

void Reference::compareTags(const record::BootRecord& boot, Effects& effects) const {
    const auto same = [](const record::ProviderMerge* left, const record::ProviderMerge* right) {
        return left->metadata == right->metadata;
    };
    const auto byTag = [](const record::ProviderMerge& merge) {
        std::map<std::uint32_t, const record::Tag*> tags;
        for (const record::Tag& tag : merge.metadata) {
            tags.emplace(tag.tag, &tag);
        }
        return tags;
    };
    ForEachDifference(mUpdates, UpdatesOf(boot), same,
                      [&](const Update& update, const auto* left, const auto* right) {
                          const std::string device = nameOf(update);
                          if (left == nullptr || right == nullptr) {
                              effects.insert({.kind = Kind::Device, .name = device});
                              return;
                          }
                          ForEachDifference(
                              byTag(**left), byTag(**right),
                              [](const record::Tag* a, const record::Tag* b) { return *a == *b; },
                              [&](std::uint32_t tag, const auto*, const auto*) {
                                  effects.insert({.kind = Kind::Tag, .name = device, .tag = tag});
                              });
                      });
}

void Reference::compareLog(const record::BootRecord& boot, Effects& effects) const {
    const auto same = [](const auto& left, const auto& right) {
        return std::equal(
            left.begin(), left.end(), right.begin(), right.end(),
            [](const record::LogLine* a, const record::LogLine* b) { return SameLine(*a, *b); });
    };
    ForEachDifference(mLines, LinesOf(boot), same, [&](std::string_view operation, const auto*, const auto*) {
        effects.insert({.kind = Kind::Log, .name = std::string(operation)});
    });
}

std::string EffectBytes(const Effects& effects) {
    std::string bytes;
    for (const Effect& effect : effects) {
        const std::size_t length = effect.name.size();
        bytes.append(reinterpret_cast<const char*>(&effect.kind), sizeof effect.kind);
        bytes.append(reinterpret_cast<const char*>(&effect.tag), sizeof effect.tag);
        bytes.append(reinterpret_cast<const char*>(&effect.handOver), sizeof effect.handOver);
        bytes.append(reinterpret_cast<const char*>(&length), sizeof length);
        bytes.append(effect.name);
    }
    return bytes;
}

Effects ReadEffectBytes(std::string_view bytes) {
    const auto take = [&bytes](auto& value) {
        if (bytes.size() < sizeof value) {
            return false;
        }
        std::memcpy(&value, bytes.data(), sizeof value);
        bytes.remove_prefix(sizeof value);
        return true;
    };
    Effects effects;
    Effect effect;
    std::size_t length = 0;
    while (take(effect.kind) && take(effect.tag) && take(effect.handOver) && take(length) &&
           length <= bytes.size()) {
        effect.name = bytes.substr(0, length);
        bytes.remove_prefix(length);
        effects.insert(effect);
    }
    return effects;
}

}  // namespace analysis
