#include "analysis/Diff.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

#include "analysis/Devices.h"
#include "analysis/Steps.h"

namespace analysis {

namespace {

bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// The entries of two maps side by side, for those keys whose values differ.
template <typename Map, typename Visit>
void ForEachDifference(const Map& left, const Map& right, const Visit& visit) {
    for (const auto& [key, value] : left) {
        const auto other = right.find(key);
        if (other == right.end()) {
            visit(key, &value, nullptr);
        } else if (!(value == other->second)) {
            visit(key, &value, &other->second);
        }
    }
    for (const auto& [key, value] : right) {
        if (!left.contains(key)) {
            visit(key, nullptr, &value);
        }
    }
}

std::optional<std::string> CopyOf(const std::string* text) {
    return text == nullptr ? std::nullopt : std::optional(*text);
}

std::map<std::string, std::string> SetProperties(const record::BootRecord& boot) {
    std::map<std::string, std::string> values;
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot)) {
        values[set->name] = set->value + (set->stored ? "" : " (refused)");
    }
    return values;
}

/// The devices by a name that both boots share, in their order; a repeated one is counted.
std::vector<std::pair<std::string, const record::TagSet*>> NamedDevices(const Course& course) {
    std::vector<std::pair<std::string, const record::TagSet*>> named;
    for (const DeviceUpdate& device : course.devices) {
        std::string name = DeviceNumber(device.logicalIndex, device.memberId);
        named.emplace_back(std::move(name), device.merge == nullptr ? nullptr : &device.merge->metadata);
    }
    return named;
}

std::optional<std::string> CountOf(const record::TagSet* set) {
    return set == nullptr ? std::nullopt : std::optional(std::to_string(set->size()) + " tags");
}

std::map<std::uint32_t, record::TagValues> ByTag(const record::TagSet& set) {
    std::map<std::uint32_t, record::TagValues> values;
    for (const record::Tag& tag : set) {
        values.emplace(tag.tag, tag.values);
    }
    return values;
}

const record::TagValues* Find(const record::TagSet& set, std::uint32_t tag) {
    const record::Tag* const found = FindTag(set, tag);
    return found == nullptr ? nullptr : &found->values;
}

bool SameValues(const record::TagValues* left, const record::TagValues* right) {
    return left == nullptr || right == nullptr ? left == right : *left == *right;
}

/// Adds a difference of one device to what differs alike.
void AddTag(TagDifference difference, std::vector<TagDifference>& tags) {
    const auto alike = std::find_if(tags.begin(), tags.end(), [&](const TagDifference& other) {
        return other.tag == difference.tag && SameValues(other.left, difference.left) &&
               SameValues(other.right, difference.right);
    });
    if (alike == tags.end()) {
        tags.push_back(std::move(difference));
    } else {
        alike->devices.push_back(std::move(difference.devices[0]));
    }
}

void CompareDevices(const Course& left, const Course& right, Differences& differences) {
    const auto leftDevices = NamedDevices(left);
    auto rightDevices = NamedDevices(right);
    for (const auto& [name, set] : leftDevices) {
        const auto other = std::find_if(rightDevices.begin(), rightDevices.end(),
                                        [&name = name](const auto& device) { return device.first == name; });
        const record::TagSet* const otherSet = other == rightDevices.end() ? nullptr : other->second;
        if (set == nullptr || otherSet == nullptr) {
            if (set != otherSet) {
                differences.devices.push_back({"device " + name, CountOf(set), CountOf(otherSet)});
            }
        } else {
            ForEachDifference(
                ByTag(*set), ByTag(*otherSet),
                [&, &name = name, &set = set](std::uint32_t tag, const record::TagValues*,
                                              const record::TagValues*) {
                    AddTag({{name}, tag, Find(*set, tag), Find(*otherSet, tag)}, differences.tags);
                });
        }
        if (other != rightDevices.end()) {
            rightDevices.erase(other);
        }
    }
    for (const auto& [name, set] : rightDevices) {
        if (set != nullptr) {
            differences.devices.push_back({"device " + name, std::nullopt, CountOf(set)});
        }
    }
}

std::map<std::string, const record::ChangedFile*> ByPath(const record::BootRecord& boot) {
    std::map<std::string, const record::ChangedFile*> files;
    for (const std::vector<record::ChangedFile>* const list : {&boot.files, &boot.rewritten}) {
        for (const record::ChangedFile& file : *list) {
            files.emplace(file.path, &file);
        }
    }
    return files;
}

void CompareFiles(const record::BootRecord& left, const record::BootRecord& right, Differences& differences) {
    const auto leftFiles = ByPath(left);
    const auto rightFiles = ByPath(right);
    for (const auto& [path, file] : leftFiles) {
        const auto other = rightFiles.find(path);
        if (other == rightFiles.end()) {
            differences.files.push_back({path, file, nullptr});
        } else if (!(*file == *other->second)) {
            differences.files.push_back({path, file, other->second});
        }
    }
    for (const auto& [path, file] : rightFiles) {
        if (!leftFiles.contains(path)) {
            differences.files.push_back({path, nullptr, file});
        }
    }
}

void CompareHandOvers(const record::BootRecord& left, const record::BootRecord& right,
                      Differences& differences) {
    const auto leftBlocks = record::EventsOf<record::HandOver>(left);
    const auto rightBlocks = record::EventsOf<record::HandOver>(right);
    for (std::size_t i = 0; i < std::max(leftBlocks.size(), rightBlocks.size()); ++i) {
        const auto sizeOf = [=](const auto& blocks) {
            return i < blocks.size() ? std::optional(std::to_string(blocks[i]->block.size()) + " bytes")
                                     : std::nullopt;
        };
        if (i >= leftBlocks.size() || i >= rightBlocks.size() || !(*leftBlocks[i] == *rightBlocks[i])) {
            differences.handOvers.push_back(
                {"hand-over " + std::to_string(i + 1), sizeOf(leftBlocks), sizeOf(rightBlocks)});
        }
    }
}

/// A step's name, and the device that it updated; empty outside of updates.
using StepName = std::pair<std::string, std::string>;

/// The lines of each step, in the order in which the steps ran.
std::vector<std::pair<StepName, std::vector<std::string>>> LinesBySteps(const record::BootRecord& boot,
                                                                        const Course& course) {
    std::vector<StepName> nameOf(boot.events.size(), StepName("elsewhere", ""));
    for (const Step& step : course.steps) {
        StepName name(step.name, "");
        if (step.device) {
            const DeviceUpdate& device = course.devices[*step.device];
            name.second = DeviceNumber(device.logicalIndex, device.memberId);
        }
        std::fill(nameOf.begin() + static_cast<std::ptrdiff_t>(step.first),
                  nameOf.begin() + static_cast<std::ptrdiff_t>(step.end), name);
    }
    std::vector<std::pair<StepName, std::vector<std::string>>> steps;
    for (std::size_t i = 0; i < boot.events.size(); ++i) {
        if (const auto* const line = std::get_if<record::LogLine>(&boot.events[i])) {
            auto step = std::find_if(steps.rbegin(), steps.rend(),
                                     [&](const auto& entry) { return entry.first == nameOf[i]; });
            if (step == steps.rend()) {
                steps.emplace_back(nameOf[i], std::vector<std::string>());
                step = steps.rbegin();
            }
            step->second.push_back(WithoutRunNumbers(*line));
        }
    }
    return steps;
}

LogDifference CompareLines(const StepName& step, const std::vector<std::string>& left,
                           const std::vector<std::string>& right) {
    LogDifference difference{.step = step.first, .devices = {}, .left = {}, .right = {}};
    if (!step.second.empty()) {
        difference.devices.push_back(step.second);
    }
    std::map<std::string_view, std::ptrdiff_t> surplus;
    for (const std::string& line : left) {
        ++surplus[line];
    }
    for (const std::string& line : right) {
        if (--surplus[line] < 0) {
            difference.right.push_back(line);
        }
    }
    for (const std::string& line : left) {
        if (surplus[line]-- > 0) {
            difference.left.push_back(line);
        }
    }
    difference.reordered = difference.left.empty() && difference.right.empty() && left != right;
    return difference;
}

/// The devices that one of two boots updated, and the other did not.
std::set<std::string> DevicesOfOne(const Course& left, const Course& right) {
    const auto namesIn = [](const Course& course) {
        std::set<std::string> names;
        for (const auto& [name, set] : NamedDevices(course)) {
            names.insert(name);
        }
        return names;
    };
    const std::set<std::string> leftNames = namesIn(left);
    const std::set<std::string> rightNames = namesIn(right);
    std::set<std::string> names;
    std::set_symmetric_difference(leftNames.begin(), leftNames.end(), rightNames.begin(), rightNames.end(),
                                  std::inserter(names, names.end()));
    return names;
}

void CompareLogs(const Boot& left, const Course& leftCourse, const Boot& right, const Course& rightCourse,
                 Differences& differences) {
    const auto leftSteps = LinesBySteps(left.record, leftCourse);
    auto rightSteps = LinesBySteps(right.record, rightCourse);
    // What was logged of a device that the other boot lacks says no more than that.
    const std::set<std::string> lacking = DevicesOfOne(leftCourse, rightCourse);
    const auto add = [&](LogDifference difference) {
        const bool same = difference.left.empty() && difference.right.empty() && !difference.reordered;
        if (same || (!difference.devices.empty() && lacking.contains(difference.devices[0]))) {
            return;
        }
        const auto alike =
            std::find_if(differences.log.begin(), differences.log.end(), [&](const LogDifference& other) {
                return other.step == difference.step && other.left == difference.left &&
                       other.right == difference.right && other.reordered == difference.reordered;
            });
        if (alike == differences.log.end()) {
            differences.log.push_back(std::move(difference));
        } else {
            alike->devices.insert(alike->devices.end(), difference.devices.begin(), difference.devices.end());
        }
    };
    for (const auto& [name, lines] : leftSteps) {
        const auto other = std::find_if(rightSteps.begin(), rightSteps.end(),
                                        [&name = name](const auto& entry) { return entry.first == name; });
        add(CompareLines(name, lines,
                         other == rightSteps.end() ? std::vector<std::string>() : other->second));
        if (other != rightSteps.end()) {
            rightSteps.erase(other);
        }
    }
    for (const auto& [name, lines] : rightSteps) {
        add(CompareLines(name, {}, lines));
    }
}

}  // namespace

bool Differences::none() const {
    return endings.empty() && properties.empty() && files.empty() && devices.empty() && tags.empty() &&
           handOvers.empty() && log.empty();
}

Differences Compare(const Boot& left, const Boot& right) {
    Differences differences;
    // An older report does not say.
    if (left.record.ended && right.record.ended) {
        const std::string leftEnding = record::EndText(*left.record.ended);
        const std::string rightEnding = record::EndText(*right.record.ended);
        if (leftEnding != rightEnding) {
            differences.endings.push_back({"the boot", leftEnding, rightEnding});
        }
    }
    ForEachDifference(SetProperties(left.record), SetProperties(right.record),
                      [&](const std::string& name, const std::string* a, const std::string* b) {
                          differences.properties.push_back({name, CopyOf(a), CopyOf(b)});
                      });
    CompareFiles(left.record, right.record, differences);
    const Course leftCourse = CourseOf(left.record);
    const Course rightCourse = CourseOf(right.record);
    CompareDevices(leftCourse, rightCourse, differences);
    CompareHandOvers(left.record, right.record, differences);
    CompareLogs(left, leftCourse, right, rightCourse, differences);
    return differences;
}

std::string WithoutRunNumbers(const record::LogLine& line) {
    std::string text = line.message;
    if (const std::size_t close = text.find(")["); text.starts_with('(') && close != std::string::npos) {
        text.erase(0, close + 1);
    }
    // An address is long; tags and sizes in hexadecimal have at most eight digits.
    for (std::size_t at = text.find("0x"); at != std::string::npos; at = text.find("0x", at + 2)) {
        std::size_t end = at + 2;
        while (end < text.size() && IsHexDigit(text[end])) {
            ++end;
        }
        if (end - at - 2 > 8) {
            text.replace(at, end - at, "ADDRESS");
        }
    }
    return text;
}

}  // namespace analysis
