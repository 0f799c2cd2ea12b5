#include "analysis/Diagnosis.h"

#include <algorithm>
#include <set>

#include "analysis/LogWords.h"
#include "formats/Hex.h"
#include "tables/EepromLayouts.h"
#include "tables/ModuleMakers.h"
#include "tables/PublishedTags.h"

namespace analysis {

namespace {

using Severity = Finding::Severity;

std::string Joined(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        text += i == 0 ? "" : i + 1 == words.size() ? " and " : ", ";
        text += words[i];
    }
    return text;
}

std::string TagName(std::uint32_t tag) {
    const tables::PublishedTag* const row = tables::FindPublishedTag(tag);
    return row == nullptr ? formats::HexNumber(tag) : row->name;
}

void AddMemoryFindings(const Module& module, std::vector<Finding>& findings) {
    const ModuleMemory& memory = *module.memory;
    const auto add = [&](Severity severity, std::string words) {
        findings.push_back({severity, module.name, std::move(words)});
    };
    if (memory.erased) {
        add(Severity::Error, "its memory is erased: every byte is " + formats::HexNumber(*memory.erased));
        return;
    }
    if (memory.maker.empty()) {
        add(Severity::Error, "its memory names a maker that nobody knows (" +
                                 formats::HexNumber(memory.makerId) + "): no fuse id is published");
    }
    if (memory.layout == nullptr) {
        add(Severity::Warning, "its memory has a layout that nobody knows: it passes unchecked");
        return;
    }
    if (!module.layoutOfThisChip.value_or(true)) {
        add(Severity::Error, "its memory is laid out for another module: " +
                                 std::string(memory.layout->eepromName) + " on " + module.chip);
    }
    std::vector<std::string> empty;
    for (const CheckedRange& range : memory.ranges) {
        const SubModuleCheckSumDesc& where = range.finding.range;
        if (!range.finding.good()) {
            add(Severity::Error, std::string(where.name) + " is broken: bytes " +
                                     formats::HexNumber(where.startAddr) + " to " +
                                     formats::HexNumber(where.endAddr) + " sum to " +
                                     formats::HexNumber(range.finding.computed) + ", stored at " +
                                     formats::HexNumber(where.checkSumAddr) + " is " +
                                     formats::HexNumber(range.finding.stored));
        } else if (range.empty) {
            empty.emplace_back(where.name);
        }
    }
    if (!empty.empty()) {
        add(Severity::Warning, Joined(empty) + (empty.size() == 1 ? " holds" : " hold") +
                                   " nothing but zeros: a checksum of 1 means unchecked there");
    }
}

void AddModuleFindings(const std::vector<Module>& modules, std::vector<Finding>& findings) {
    for (const Module& module : modules) {
        if (module.reading == Module::Reading::Failed) {
            findings.push_back(
                {Severity::Error, module.name,
                 "its memory cannot be read" +
                     (module.read ? " (" + std::to_string(*module.read) + " of " +
                                        std::to_string(tables::kEepromImageSize) + " bytes came back)"
                                  : std::string())});
        } else if (module.memory) {
            AddMemoryFindings(module, findings);
        }
    }
}

/// Whether a file lay at a path when the phone started.
bool LaidAtStart(const Boot& boot, const char* path) {
    return boot.phone && boot.phone->files.contains(path);
}

void AddPairFindings(const Boot& boot, const PairDecision& decision, std::vector<Finding>& findings) {
    const DualCameraCalDataInfo& pair = *decision.pair;
    const auto add = [&](Severity severity, std::string words) {
        findings.push_back({severity, PairName(pair), std::move(words)});
    };
    switch (decision.source) {
        case PairDecision::Source::None:
            add(Severity::Error, decision.dumpFailed
                                     ? std::string("its dump file ") + pair.dumpPath + " cannot be opened"
                                     : "nothing supplies a calibration block");
            if (LaidAtStart(boot, pair.dumpPath)) {
                add(Severity::Warning, std::string(pair.dumpPath) +
                                           " is left from an earlier boot, and what it holds is published");
            }
            return;
        case PairDecision::Source::Golden:
            add(Severity::Warning, "the golden block serves, no persist file does");
            break;
        case PairDecision::Source::Persist:
            if (decision.blockSize && *decision.blockSize < static_cast<std::size_t>(pair.length)) {
                add(Severity::Warning, "its block has " + std::to_string(*decision.blockSize) + " bytes of " +
                                           std::to_string(pair.length) + ", the rest is published as zeros");
            }
            break;
        case PairDecision::Source::Eeprom:
            break;
    }
    const std::vector<std::uint8_t>* const dump = FileAtEnd(boot, pair.dumpPath);
    if (LaidAtStart(boot, pair.dumpPath) && dump != nullptr &&
        dump->size() > static_cast<std::size_t>(pair.length)) {
        add(Severity::Warning, std::string(pair.dumpPath) + " is left from an earlier boot and keeps " +
                                   std::to_string(dump->size() - static_cast<std::size_t>(pair.length)) +
                                   " bytes behind the block");
    }
}

/// Blocks that a device got although its pair has no source.
void AddUnsuppliedBlocks(const Diagnosis& diagnosis, std::vector<Finding>& findings) {
    for (const Device& device : diagnosis.devices) {
        const DualCameraCalDataInfo* const pair = device.role ? PairOfRole(*device.role) : nullptr;
        const auto decision =
            std::find_if(diagnosis.pairs.begin(), diagnosis.pairs.end(),
                         [=](const PairDecision& candidate) { return candidate.pair == pair; });
        if (device.metadata == nullptr || decision == diagnosis.pairs.end() ||
            decision->source != PairDecision::Source::None) {
            continue;
        }
        for (const record::Tag& tag : *device.metadata) {
            if (tag.tag == ZELVAN_SAT_CALIBRATION_DATA || tag.tag == ZELVAN_BOKEH_CALIBRATION_DATA) {
                findings.push_back({Severity::Warning, PairName(*pair),
                                    TagName(tag.tag) + " is published for device " +
                                        std::to_string(device.logicalIndex) +
                                        " although nothing supplied a block"});
            }
        }
    }
}

void AddStabiliserFinding(const std::optional<StabiliserDecision>& stabiliser,
                          std::vector<Finding>& findings) {
    if (stabiliser && !stabiliser->fromFile) {
        findings.push_back(
            {Severity::Warning, "stabiliser",
             "its calibration file " + stabiliser->reason + ": the gains are those of the EEPROM"});
    }
}

void AddRefusals(const record::BootRecord& boot, std::vector<Finding>& findings) {
    std::set<std::string> properties;
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot)) {
        if (!set->stored && properties.insert(set->name).second) {
            findings.push_back({Severity::Error, set->name, "the platform refused to set it"});
        }
    }
    std::map<std::pair<std::uint32_t, int>, std::size_t> tags;
    for (const record::TagStored* const stored : record::EventsOf<record::TagStored>(boot)) {
        if (stored->result != 0) {
            ++tags[{stored->tag, stored->result}];
        }
    }
    for (const auto& [refusal, times] : tags) {
        findings.push_back({Severity::Error, TagName(refusal.first),
                            "the platform refused it (" + std::to_string(refusal.second) + ") " +
                                (times == 1 ? "once" : std::to_string(times) + " times")});
    }
}

/// "FAKESAT_FAKESATSIZE", or how many tags of what kind.
std::string TagsInWords(const MissingTags& missing) {
    constexpr std::size_t kNamed = 2;
    if (missing.tags.size() > kNamed) {
        const std::string count = std::to_string(missing.tags.size());
        return missing.step == "MetadataUpdateScaler" ? "none of the " + count + " stream tags"
               : missing.step == "UpdateBokehOptimalSizeInfo"
                   ? count + " bokeh tags fewer"
                   : count + " tags of " + std::string(missing.step) + " fewer";
    }
    std::vector<std::string> names;
    for (const std::uint32_t tag : missing.tags) {
        names.push_back("no " + TagName(tag));
    }
    return Joined(names);
}

/// What is missing, once for all devices that it is missing on for the same reason.
void AddMissingTags(const std::vector<Device>& devices, std::vector<Finding>& findings) {
    std::vector<std::pair<std::string, std::vector<std::string>>> groups;
    for (const Device& device : devices) {
        for (const MissingTags& missing : device.missing) {
            std::string words = TagsInWords(missing) + ": " + missing.reason;
            auto group = std::find_if(groups.begin(), groups.end(),
                                      [&](const auto& entry) { return entry.first == words; });
            if (group == groups.end()) {
                group = groups.emplace(groups.end(), std::move(words), std::vector<std::string>());
            }
            group->second.push_back(DeviceNumber(device.logicalIndex, device.memberId));
        }
    }
    for (auto& [words, numbers] : groups) {
        findings.push_back(
            {Severity::Error, (numbers.size() == 1 ? "device " : "devices ") + Joined(numbers), words});
    }
}

/// Why the operation that names the modules named none.
std::string WhyNoModules(const Boot& boot, const Course& course) {
    const Step* const step = FindStep(course, "SetModuleInfoProp");
    const record::LogLine* const error = step == nullptr ? nullptr : LastErrorOf(boot.record, *step);
    return error == nullptr ? std::string() : InWords(*error);
}

/// The indices or ids that a kind of question was about.
std::set<std::int64_t> AskedAbout(const record::BootRecord& boot, record::Query query) {
    std::set<std::int64_t> about;
    for (const record::Asked* const asked : record::EventsOf<record::Asked>(boot)) {
        if (asked->query == query) {
            about.insert(asked->about);
        }
    }
    return about;
}

}  // namespace

Diagnosis Diagnose(const Boot& boot) {
    Diagnosis diagnosis;
    const Course course = CourseOf(boot.record);
    diagnosis.modules = ModulesOf(boot);
    diagnosis.noModules = diagnosis.modules.empty() ? WhyNoModules(boot, course) : "";
    diagnosis.pairs = PairDecisionsOf(boot, course, diagnosis.modules);
    diagnosis.stabiliser = StabiliserOf(boot);
    diagnosis.devices = DevicesOf(boot, course);
    diagnosis.endStates = EndStates(boot);
    diagnosis.idleFaults = IdleFaults(boot);
    for (const record::LogLine* const line : record::EventsOf<record::LogLine>(boot.record)) {
        ++diagnosis.logLines;
        diagnosis.errorLines += IsError(*line) ? 1 : 0;
        diagnosis.errorLinesOnEveryPhone += IsError(*line) && IsOnEveryPhone(*line) ? 1 : 0;
    }
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot.record)) {
        diagnosis.storedProperties += set->stored ? 1 : 0;
    }
    std::vector<Finding>& findings = diagnosis.findings;
    if (const std::string reason = WhyNoDevices(boot, course); !reason.empty() && !boot.cutShort()) {
        findings.push_back({Severity::Error, "devices", "none was updated: " + reason});
    }
    if (!diagnosis.noModules.empty()) {
        findings.push_back({Severity::Error, "modules", "none was named: " + diagnosis.noModules});
    }
    AddModuleFindings(diagnosis.modules, findings);
    for (const PairDecision& decision : diagnosis.pairs) {
        AddPairFindings(boot, decision, findings);
    }
    AddUnsuppliedBlocks(diagnosis, findings);
    AddStabiliserFinding(diagnosis.stabiliser, findings);
    AddRefusals(boot.record, findings);
    AddMissingTags(diagnosis.devices, findings);
    std::stable_sort(findings.begin(), findings.end(), [](const Finding& left, const Finding& right) {
        return left.severity < right.severity;
    });
    return diagnosis;
}

std::vector<Finding> MemoryFindings(const Module& module) {
    std::vector<Finding> findings;
    AddMemoryFindings(module, findings);
    return findings;
}

std::vector<std::string> IdleFaults(const Boot& boot) {
    std::vector<std::string> idle;
    if (!boot.phone || !boot.record.ordered) {
        return idle;
    }
    const virtualphone::PhoneFaults& faults = boot.phone->faults;
    const auto check = [&](const char* name, bool fault, record::Query query) {
        if (fault && AskedAbout(boot.record, query).empty()) {
            idle.emplace_back(name);
        }
    };
    check("moduleFactory", faults.moduleFactory, record::Query::LogicalDeviceList);
    check("logicalDeviceList", faults.logicalDeviceList, record::Query::LogicalDeviceList);
    check("sensorList", faults.sensorList, record::Query::SensorList);
    check("calibrationDriver", faults.calibrationDriver, record::Query::CalibrationDriver);
    const auto checkEach = [&](const char* name, const auto& numbers, record::Query query) {
        if (numbers.empty()) {
            return;
        }
        const std::set<std::int64_t> about = AskedAbout(boot.record, query);
        for (const auto number : numbers) {
            if (!about.contains(tables::Number(number))) {
                idle.push_back(std::string(name) + ": " + std::to_string(tables::Number(number)));
            }
        }
    };
    checkEach("sensorDrivers", faults.sensorDrivers, record::Query::SensorDriver);
    checkEach("sensorObjects", faults.sensorObjects, record::Query::SensorObject);
    checkEach("staticInfo", faults.staticInfo, record::Query::StaticInfoById);
    std::set<std::uint32_t> tags;
    for (const record::TagStored* const stored : record::EventsOf<record::TagStored>(boot.record)) {
        tags.insert(stored->tag);
    }
    for (const auto& [tag, result] : faults.metadataUpdate) {
        if (!tags.contains(tag)) {
            idle.push_back("metadataUpdate: " + formats::HexNumber(tag));
        }
    }
    std::set<std::string_view> properties;
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot.record)) {
        properties.insert(set->name);
    }
    for (const std::string& name : faults.propertySet) {
        if (!properties.contains(name)) {
            idle.push_back("propertySet: " + name);
        }
    }
    return idle;
}

}  // namespace analysis
