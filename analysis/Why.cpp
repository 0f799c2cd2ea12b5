#include "analysis/Why.h"

#include <algorithm>
#include <map>
#include <utility>

#include "analysis/LogWords.h"
#include "analysis/Modules.h"
#include "analysis/Questions.h"
#include "formats/Hex.h"
#include "tables/CameraModules.h"
#include "tables/CameraPairs.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"
#include "tables/PublishedTags.h"

namespace analysis {

namespace {

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return lower;
}

std::vector<Item> AllItems() {
    std::vector<Item> items;
    for (const tables::PublishedProperty& row : tables::PublishedProperties()) {
        items.push_back({Item::Kind::Property, row.name, 0, row.operation, row.value});
    }
    for (const tables::PublishedFile& row : tables::PublishedFiles()) {
        if (!row.perRole) {
            items.push_back({Item::Kind::File, row.path, 0, row.operation, row.content});
            continue;
        }
        for (const tables::ModuleRole& role : tables::kModuleRoles) {
            items.push_back(
                {Item::Kind::File, std::string(row.path) + role.name, 0, row.operation, row.content});
        }
    }
    for (const tables::PublishedTag& row : tables::PublishedTags()) {
        items.push_back({Item::Kind::Tag, row.name, row.tag, row.operation, row.value});
    }
    return items;
}

/// Edits that lead from one text to the other: a letter put in, left out or changed.
std::size_t Distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t j = 0; j <= to.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t changed = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({changed, row[j] + 1, row[j - 1] + 1}));
        }
    }
    return row[to.size()];
}

/// A run of events.
struct Range {
    std::size_t first = 0;
    std::size_t end = 0;
};

const record::LogLine* LineAt(const record::BootRecord& boot, std::size_t i) {
    return std::get_if<record::LogLine>(&boot.events[i]);
}

/// The part of a step that led to one set of a property: from the set before, through the next line.
Range PartOfProperty(const record::BootRecord& boot, Range step, const record::PropertySet* property) {
    Range part = step;
    bool lineSince = false;
    for (std::size_t i = step.first; i < step.end; ++i) {
        const auto* const set = std::get_if<record::PropertySet>(&boot.events[i]);
        if (set == property) {
            part.end = i + 1;
            while (part.end < step.end && LineAt(boot, part.end - 1) == nullptr) {
                ++part.end;
            }
            return part;
        }
        if (set != nullptr) {
            lineSince = false;
        } else if (LineAt(boot, i) != nullptr && !lineSince) {
            lineSince = true;
            // The line right behind a set still speaks of it.
            part.first = i > step.first && std::holds_alternative<record::PropertySet>(boot.events[i - 1])
                             ? i + 1
                             : part.first;
        }
    }
    return step;
}

/// The part of the dual-camera step that is about the pair with this dump file.
Range PartOfPair(const record::BootRecord& boot, Range step, std::string_view dumpPath) {
    std::size_t seen = 0;
    Range part = step;
    for (std::size_t i = step.first; i < step.end; ++i) {
        const record::LogLine* const line = LineAt(boot, i);
        if (line == nullptr || record::OperationOf(*line) != "DualCameraDataFromEeprom" ||
            record::TextOf(*line) != "enter") {
            continue;
        }
        if (seen < tables::kDualCameraPairs.size() && dumpPath == tables::kDualCameraPairs[seen].dumpPath) {
            part.first = i;
        } else if (part.first != step.first || seen == 1) {
            part.end = i;
            break;
        }
        ++seen;
    }
    return part;
}

std::string WithoutDigits(std::string_view text) {
    std::string kept;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            kept += c;
        }
    }
    return kept;
}

bool Alike(const record::LogLine& left, const record::LogLine& right) {
    return left.tag == right.tag && left.priority == right.priority &&
           record::OperationOf(left) == record::OperationOf(right) &&
           WithoutDigits(record::TextOf(left)) == WithoutDigits(record::TextOf(right));
}

/// Whether a line says something of its own: not the chatter of a helper that many steps share, and more than
/// that an operation begins or ends.
bool IsTelling(const record::LogLine& line, std::string_view step) {
    const std::string_view text = record::TextOf(line);
    if (IsError(line)) {
        return !IsOnEveryPhone(line);
    }
    return (record::OperationOf(line).empty() || StepOf(record::OperationOf(line)) == step) &&
           text != "enter" && text != "exit";
}

void AddEvents(const record::BootRecord& boot, Range range, std::string_view step, Reason& reason) {
    for (std::size_t i = range.first; i < range.end; ++i) {
        if (const record::LogLine* const line = LineAt(boot, i)) {
            if (!IsTelling(*line, step)) {
                ++reason.helperLines;
            } else if (!reason.lines.empty() && Alike(*reason.lines.back().line, *line)) {
                ++reason.lines.back().alike;
            } else {
                reason.lines.push_back({line});
            }
            continue;
        }
        std::string words = QuestionInWords(boot.events[i]);
        if (words.empty()) {
            continue;
        }
        const auto known = std::find_if(reason.questions.begin(), reason.questions.end(),
                                        [&](const Question& question) { return question.words == words; });
        if (known == reason.questions.end()) {
            reason.questions.push_back({std::move(words)});
        } else {
            ++known->times;
        }
    }
}

void FindProperty(const record::BootRecord& boot, Reason& reason) {
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot)) {
        if (set->name == reason.item.name) {
            reason.property = set;
        }
    }
}

/// Why the module that a fuse id is of gives none; empty for other properties, and where it would give one.
std::string WhyNoFuseId(const Boot& boot, std::string_view property) {
    for (const tables::FuseIdOfRole& row : tables::kFuseIds) {
        if (property != row.fuseId.propName && property != row.fuseId.propNameLong) {
            continue;
        }
        for (const Module& module : ModulesOf(boot)) {
            if (module.role != row.roleId) {
                continue;
            }
            return !module.fitted() ? module.name + " is not fitted"
                   : module.reading == Module::Reading::Failed
                       ? "the memory of " + module.name + " cannot be read"
                   : module.memory && module.memory->maker.empty()
                       ? "the memory of " + module.name + " names a maker that nobody knows (" +
                             formats::HexNumber(module.memory->makerId) + ")"
                       : std::string();
        }
    }
    return {};
}

void FindFile(const Boot& boot, Reason& reason) {
    reason.file = record::FindWritten(boot.record, reason.item.name);
    reason.fileRewritten = std::any_of(boot.record.rewritten.begin(), boot.record.rewritten.end(),
                                       [&](const record::ChangedFile& file) { return &file == reason.file; });
    reason.fileLaid = boot.phone && boot.phone->files.contains(reason.item.name);
}

void FindTagOf(const Boot& boot, const Course& course, const Device& device, std::size_t update,
               Reason& reason) {
    reason.device = device;
    reason.tag = device.metadata == nullptr ? nullptr : FindTag(*device.metadata, reason.item.tag);
    reason.appliesToRole = AppliesTo(reason.item.tag, device);
    for (std::size_t i = course.devices[update].first; i < course.devices[update].end; ++i) {
        const auto* const stored = std::get_if<record::TagStored>(&boot.record.events[i]);
        if (stored != nullptr && stored->tag == reason.item.tag && stored->result != 0) {
            reason.refused = stored->result;
        }
    }
}

}  // namespace

std::vector<Item> ItemsNamed(std::string_view text) {
    const std::vector<Item> all = AllItems();
    std::vector<Item> found;
    const auto take = [&](const auto& wanted) {
        std::copy_if(all.begin(), all.end(), std::back_inserter(found), wanted);
        return !found.empty();
    };
    const std::optional<std::uint32_t> number = formats::ParseNumber(text);
    const std::string lower = Lower(text);
    if (take([&](const Item& item) {
            return number && item.kind == Item::Kind::Tag && item.tag == *number;
        }) ||
        take([&](const Item& item) { return Lower(item.name) == lower; }) ||
        take([&](const Item& item) { return !lower.empty() && Lower(item.name).ends_with(lower); })) {
        return found;
    }
    take([&](const Item& item) {
        return !lower.empty() && Lower(item.name).find(lower) != std::string::npos;
    });
    return found;
}

std::vector<std::string> NamesLike(std::string_view text) {
    std::vector<std::string> names;
    for (const Item& item : AllItems()) {
        names.push_back(item.name);
    }
    return NearestOf(std::move(names), text, 3);
}

std::vector<std::string> NearestOf(std::vector<std::string> names, std::string_view text, std::size_t count) {
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    // A long text is like nothing, and would take long to compare.
    constexpr std::size_t kCompared = 200;
    const std::string wanted = Lower(text.substr(0, kCompared));
    std::map<std::string_view, std::size_t> distances;
    for (const std::string& name : names) {
        distances[name] = Distance(wanted, Lower(name));
    }
    std::vector<std::string_view> sorted(names.begin(), names.end());
    std::stable_sort(sorted.begin(), sorted.end(), [&](std::string_view left, std::string_view right) {
        return distances[left] < distances[right];
    });
    sorted.resize(std::min(sorted.size(), count));
    return {sorted.begin(), sorted.end()};
}

std::vector<std::string> NamesNear(std::vector<std::string> names, std::string_view text) {
    const std::string wanted = Lower(text);
    const std::size_t farthest = std::max<std::size_t>(1, wanted.size() / 3);
    const auto isNear = [&](std::string_view end) {
        // What is much longer or shorter is not worth the comparison.
        return std::max(end.size(), wanted.size()) - std::min(end.size(), wanted.size()) <= farthest &&
               Distance(wanted, end) <= farthest;
    };
    std::erase_if(names, [&](const std::string& name) {
        const std::string lower = Lower(name);
        for (std::size_t start = 0; start != std::string::npos; start = lower.find('_', start)) {
            start += start == 0 ? 0 : 1;
            if (isNear(std::string_view(lower).substr(start))) {
                return false;
            }
        }
        return true;
    });
    return NearestOf(std::move(names), text, 3);
}

Reason WhyOf(const Boot& boot, const Course& course, const std::vector<Device>& devices, const Item& item,
             std::size_t device) {
    Reason reason;
    reason.item = item;
    switch (item.kind) {
        case Item::Kind::Property:
            FindProperty(boot.record, reason);
            reason.noFuseId = reason.property == nullptr ? WhyNoFuseId(boot, item.name) : "";
            break;
        case Item::Kind::File:
            FindFile(boot, reason);
            break;
        case Item::Kind::Tag:
            if (devices.empty()) {
                reason.noDevices = WhyNoDevices(boot, course);
                return reason;
            }
            FindTagOf(boot, course, devices[device], device, reason);
            break;
    }
    const Step* const step =
        FindStep(course, item.operation.step,
                 item.kind == Item::Kind::Tag ? std::optional(device) : std::optional<std::size_t>());
    if (step == nullptr) {
        return reason;
    }
    reason.stepRan = true;
    Range range = {step->first, step->end};
    if (reason.property != nullptr && boot.record.ordered) {
        range = PartOfProperty(boot.record, range, reason.property);
    } else if (item.kind == Item::Kind::File) {
        range = PartOfPair(boot.record, range, item.name);
    }
    AddEvents(boot.record, range, step->name, reason);
    if (!reason.published()) {
        const bool unmerged = reason.device && reason.device->metadata == nullptr;
        reason.endedInIt = boot.cutShort() && (unmerged || step->end == boot.record.events.size());
        reason.gaveUp = LastErrorOf(
            boot.record, {.name = step->name, .device = {}, .first = range.first, .end = range.end});
    }
    return reason;
}

}  // namespace analysis
