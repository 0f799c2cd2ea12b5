#include "zvcam/views/DiagnosisView.h"

#include <algorithm>
#include <map>
#include <ostream>

#include "analysis/LogWords.h"
#include "zvcam/views/MetadataView.h"

namespace zvcam {

namespace {

using analysis::Device;
using analysis::Diagnosis;
using analysis::Finding;
using analysis::Module;
using analysis::PairDecision;

std::string FileName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::string ChecksumsText(const analysis::ModuleMemory& memory, const Style& style) {
    if (memory.layout == nullptr) {
        return "layout unknown";
    }
    std::string text;
    for (const analysis::CheckedRange& range : memory.ranges) {
        text += text.empty() ? "" : "  ";
        text += std::string(range.finding.range.name) + " ";
        text += !range.finding.good() ? style.bad("BAD") : range.empty ? style.doubtful("empty") : "ok";
    }
    return text;
}

std::string MemoryText(const Module& module, const Style& style) {
    switch (module.reading) {
        case Module::Reading::NotTried:
            return "not read";
        case Module::Reading::Failed:
            return style.bad("READ FAILED") + (module.read ? " (" + Counted(*module.read, "byte") + ")" : "");
        case Module::Reading::Good:
            break;
    }
    if (!module.memory) {
        return "read";
    }
    if (module.memory->erased) {
        return style.bad("ERASED") + " (all " + HexNumber(*module.memory->erased) + ")";
    }
    return module.memory->maker.empty() ? style.bad("maker " + HexNumber(module.memory->makerId) + " unknown")
                                        : module.memory->maker;
}

void PrintModules(std::ostream& out, const Diagnosis& diagnosis, const Style& style) {
    if (diagnosis.modules.empty()) {
        out << "Modules: the boot did not come to name them\n";
        return;
    }
    Table table;
    table.row({"Modules", "chip", "EEPROM", "fuse id", "checksums"});
    for (const Module& module : diagnosis.modules) {
        if (!module.fitted()) {
            table.row({"  " + module.name, "-", "not fitted"});
            continue;
        }
        table.row({"  " + module.name, Printable(module.chip), MemoryText(module, style),
                   module.fuseId.empty() ? "-" : Printable(module.fuseId),
                   module.memory && !module.memory->erased ? ChecksumsText(*module.memory, style) : "-"});
    }
    table.print(out, 0);
}

std::string SourceText(const PairDecision& decision, const Style& style) {
    switch (decision.source) {
        case PairDecision::Source::None:
            return style.bad("NONE");
        case PairDecision::Source::Eeprom:
            return "EEPROM";
        case PairDecision::Source::Persist:
            return "persist";
        case PairDecision::Source::Golden:
            return style.doubtful("golden");
    }
    return {};
}

void PrintCalibration(std::ostream& out, const Diagnosis& diagnosis, const Style& style) {
    Table table;
    table.row({"Calibration"});
    for (const PairDecision& decision : diagnosis.pairs) {
        std::string name = "  " + analysis::PairName(*decision.pair);
        std::string source = SourceText(decision, style);
        if (!decision.path.empty()) {
            table.row({std::exchange(name, ""), std::exchange(source, ""), FileName(decision.path)});
        }
        for (const std::string& reason : ReasonsAgainstOthers(decision)) {
            table.row({std::exchange(name, ""), std::exchange(source, ""), reason});
        }
        if (!name.empty()) {
            table.row({name, source});
        }
    }
    if (diagnosis.stabiliser) {
        const analysis::StabiliserDecision& stabiliser = *diagnosis.stabiliser;
        table.row({"  stabiliser", stabiliser.fromFile ? "persist" : style.doubtful("EEPROM"),
                   "gains " + Printable(stabiliser.parameters) +
                       (stabiliser.fromFile ? "" : ", the persist file " + Printable(stabiliser.reason))});
    }
    table.print(out, 0);
    if (diagnosis.pairs.empty()) {
        out << "  the boot did not come to it\n";
    }
}

void PrintDevices(std::ostream& out, const Diagnosis& diagnosis, const Style& style) {
    if (diagnosis.devices.empty()) {
        out << "Devices: none was updated\n";
        return;
    }
    Table table;
    table.row({"Devices", "provider", "role", "tags"});
    for (const Device& device : diagnosis.devices) {
        const std::string name =
            device.memberId ? "    " + analysis::DeviceNumber(device.logicalIndex, device.memberId)
                            : "  " + std::to_string(device.logicalIndex) + "  " + Printable(device.name);
        table.row({name, HexNumber(device.provider), device.role ? std::to_string(*device.role) : "-",
                   device.metadata == nullptr ? style.bad("the boot ended here")
                                              : std::to_string(device.metadata->size()),
                   device.missing.empty()
                       ? ""
                       : style.doubtful(std::to_string(MissingCount(device)) + " missing")});
    }
    table.print(out, 0);
    for (const std::string& note : ProviderNotes(diagnosis)) {
        out << "  " << note << '\n';
    }
}

void PrintFindings(std::ostream& out, const Diagnosis& diagnosis, const Style& style) {
    for (const Finding& finding : diagnosis.findings) {
        const bool error = finding.severity == Finding::Severity::Error;
        out << "  " << (error ? style.bad("error") : style.doubtful("warning")) << "  "
            << Printable(finding.about) << ": " << Printable(finding.words) << '\n';
    }
}

void PrintHeading(std::ostream& out, const std::string& title, std::size_t count) {
    out << '\n' << title << " (" << (count == 0 ? "none" : std::to_string(count)) << ")\n";
}

void PrintProperties(std::ostream& out, const record::BootRecord& boot) {
    const auto properties = record::EventsOf<record::PropertySet>(boot);
    PrintHeading(out, "Properties set", properties.size());
    Table table;
    for (const record::PropertySet* const set : properties) {
        table.row({Printable(set->name), "= " + Printable(set->value) + (set->stored ? "" : "   [refused]")});
    }
    table.print(out, 2);
}

void PrintFiles(std::ostream& out, const record::BootRecord& boot) {
    PrintHeading(out, "Files written", boot.files.size() + boot.rewritten.size());
    Table table;
    for (const record::ChangedFile& file : boot.files) {
        table.row({Printable(file.path), ModeText(file.mode), BlobText(file.bytes)});
    }
    for (const record::ChangedFile& file : boot.rewritten) {
        table.row({Printable(file.path), ModeText(file.mode), BlobText(file.bytes) + ", as before the boot"});
    }
    table.print(out, 2);
}

void PrintReads(std::ostream& out, const record::BootRecord& boot) {
    const auto reads = record::EventsOf<record::EepromRead>(boot);
    PrintHeading(out, "EEPROM reads", reads.size());
    for (const record::EepromRead* const read : reads) {
        out << "  chip " << HexNumber(read->sensorId) << ", device bit " << HexNumber(read->deviceBit) << ": "
            << Counted(read->length, "byte") << " from offset " << read->offset;
        if (read->read) {
            out << ", " << *read->read << " came back";
        }
        out << '\n';
    }
}

void PrintErrorLines(std::ostream& out, const Diagnosis& diagnosis, const record::BootRecord& boot) {
    PrintHeading(out, "Errors among " + Counted(diagnosis.logLines, "log line"), diagnosis.errorLines);
    for (const record::LogLine* const line : record::EventsOf<record::LogLine>(boot)) {
        if (analysis::IsError(*line)) {
            out << "  " << Printable(line->tag) << ": " << Printable(line->message) << '\n';
        }
    }
}

}  // namespace

std::string EndingText(const record::BootRecord& boot) {
    return !boot.ended || boot.ended->returned() ? "" : "the plug-in " + record::EndText(*boot.ended);
}

std::string ForeignFilesText(const record::BootRecord& boot) {
    return boot.foreignFiles == 0
               ? ""
               : Counted(boot.foreignFiles, "file") +
                     " under the root came from elsewhere; --clean-root removes what is there first.";
}

std::string Summary(const Diagnosis& diagnosis) {
    std::string text;
    const auto fitted = std::count_if(diagnosis.modules.begin(), diagnosis.modules.end(),
                                      [](const Module& module) { return module.fitted(); });
    const auto readable =
        std::count_if(diagnosis.modules.begin(), diagnosis.modules.end(),
                      [](const Module& module) { return module.reading == Module::Reading::Good; });
    if (!diagnosis.modules.empty()) {
        text += std::to_string(readable) + " of " + Counted(static_cast<std::size_t>(fitted), "module") +
                " readable, ";
    }
    const auto uncalibrated =
        std::count_if(diagnosis.pairs.begin(), diagnosis.pairs.end(),
                      [](const PairDecision& pair) { return pair.source == PairDecision::Source::None; });
    if (uncalibrated > 0) {
        text += Counted(static_cast<std::size_t>(uncalibrated), "pair") + " without calibration, ";
    }
    if (diagnosis.stabiliser && !diagnosis.stabiliser->fromFile) {
        text += "no stabiliser calibration, ";
    }
    text += Counted(diagnosis.errorLines, "error line");
    if (diagnosis.errorLinesOnEveryPhone > 0) {
        text += diagnosis.errorLinesOnEveryPhone == diagnosis.errorLines
                    ? " (on every phone)"
                    : " (" + std::to_string(diagnosis.errorLinesOnEveryPhone) + " of them on every phone)";
    }
    return text;
}

std::size_t MissingCount(const Device& device) {
    std::size_t count = 0;
    for (const analysis::MissingTags& missing : device.missing) {
        count += missing.tags.size();
    }
    return count;
}

std::vector<std::string> ReasonsAgainstOthers(const PairDecision& decision) {
    std::vector<std::string> reasons;
    for (const analysis::PassedOver& passed : decision.passedOver) {
        // What explains nothing: modules that carry no block, and files of others beside the pair's own.
        const bool telling = passed.candidate == "EEPROM"
                                 ? decision.pair->eepromOffset >= 0
                                 : decision.source != PairDecision::Source::Persist || !passed.ofAnotherPair;
        if (telling) {
            const std::string candidate =
                passed.candidate.ends_with('/') ? passed.candidate : FileName(passed.candidate);
            reasons.push_back("not " + Printable(candidate) + ": " + Printable(passed.reason));
        }
    }
    return reasons;
}

std::vector<std::string> ProviderNotes(const Diagnosis& diagnosis) {
    std::map<std::uint32_t, std::vector<std::string>> updates;
    for (const Device& device : diagnosis.devices) {
        updates[device.provider].push_back(analysis::DeviceNumber(device.logicalIndex, device.memberId));
    }
    std::vector<std::string> notes;
    for (const auto& [provider, numbers] : updates) {
        const auto state = diagnosis.endStates.find(provider);
        if (numbers.size() > 1 && state != diagnosis.endStates.end()) {
            notes.push_back("Provider " + HexNumber(provider) + " is that of " + Listed(numbers) +
                            ", the later over the earlier: it ends with " +
                            Counted(state->second.size(), "tag") + ".");
        }
    }
    return notes;
}

std::vector<std::string> ClosingNotes(const analysis::Boot& boot, const Diagnosis& diagnosis) {
    std::vector<std::string> notes = {
        "Published: " +
        (diagnosis.storedProperties == 1 ? std::string("1 property")
                                         : std::to_string(diagnosis.storedProperties) + " properties") +
        ", " + Counted(boot.record.files.size() + boot.record.rewritten.size(), "file") + ", " +
        Counted(record::EventsOf<record::ProviderMerge>(boot.record).size(), "device set") +
        ". `zvcam why` explains each."};
    if (!boot.phone) {
        notes.emplace_back(
            "The report does not say which phone it was: what its memories hold is not known.");
    }
    if (const std::string words = ForeignFilesText(boot.record); !words.empty()) {
        notes.push_back(words);
    }
    for (const std::string& trouble : boot.record.troubles) {
        notes.push_back("Not known: " + Printable(trouble));
    }
    if (!diagnosis.idleFaults.empty()) {
        std::string faults;
        for (const std::string& fault : diagnosis.idleFaults) {
            faults += (faults.empty() ? "" : ", ") + Printable(fault);
        }
        notes.push_back("Faults that were never asked for: " + faults);
    }
    return notes;
}

void PrintDiagnosis(std::ostream& out, const analysis::Boot& boot, const Diagnosis& diagnosis,
                    const Style& style) {
    if (const std::string ending = EndingText(boot.record); !ending.empty()) {
        out << style.bad("THE BOOT DID NOT RETURN: " + Printable(ending)) << '\n';
    }
    const std::string name = boot.record.phone.empty() ? "without a name" : Printable(boot.record.phone);
    out << style.bold("Phone " + name + ": " + Summary(diagnosis)) << '\n';
    PrintFindings(out, diagnosis, style);
    out << '\n';
    PrintModules(out, diagnosis, style);
    PrintCalibration(out, diagnosis, style);
    PrintDevices(out, diagnosis, style);
    for (const std::string& note : ClosingNotes(boot, diagnosis)) {
        out << note << '\n';
    }
}

void PrintEverything(std::ostream& out, const analysis::Boot& boot, const Diagnosis& diagnosis,
                     const Style& style) {
    PrintDiagnosis(out, boot, diagnosis, style);
    PrintProperties(out, boot.record);
    PrintFiles(out, boot.record);
    const auto merges = record::EventsOf<record::ProviderMerge>(boot.record);
    PrintHeading(out, "Device sets", merges.size());
    for (const Device& device : diagnosis.devices) {
        PrintDevice(out, device, {});
    }
    // What a plug-in merges that announces no device.
    for (std::size_t i = diagnosis.devices.size(); i < merges.size(); ++i) {
        PrintProvider(out, merges[i]->provider, merges[i]->metadata, {});
    }
    const auto blocks = record::EventsOf<record::HandOver>(boot.record);
    PrintHeading(out, "Third calibration hand-overs", blocks.size());
    for (const record::HandOver* const handOver : blocks) {
        out << "  " << BlobText(handOver->block) << '\n';
    }
    PrintReads(out, boot.record);
    PrintErrorLines(out, diagnosis, boot.record);
}

}  // namespace zvcam
