#include "zvcam/views/DiagnosisView.h"

#include <ostream>
#include <string>
#include <utility>

#include "analysis/LogWords.h"
#include "zvcam/views/DiagnosisWords.h"
#include "zvcam/views/MetadataView.h"

namespace zvcam {

namespace {

using analysis::Device;
using analysis::Diagnosis;
using analysis::Finding;
using analysis::Module;
using analysis::PairDecision;

std::string ChecksumsText(const analysis::ModuleMemory& memory, const Style& style) {
    if (memory.layout == nullptr) {
        return "layout unknown";
    }
    std::string text;
    for (const analysis::CheckedRange& range : memory.ranges) {
        const JudgedWords words = ChecksumWords(range);
        text += text.empty() ? "" : "  ";
        text += std::string(range.finding.range.name) + " " +
                (words.verdict == Verdict::Good ? words.words : style.judged(words));
    }
    return text;
}

void PrintModules(std::ostream& out, const Diagnosis& diagnosis, const Style& style) {
    if (diagnosis.modules.empty()) {
        out << "Modules: " << Printable(NoModulesText(diagnosis)) << '\n';
        return;
    }
    Table table;
    table.row({"Modules", "chip", "EEPROM", "fuse id", "checksums"});
    for (const Module& module : diagnosis.modules) {
        if (!module.fitted()) {
            table.row({"  " + module.name, "-", "not fitted"});
            continue;
        }
        table.row({"  " + module.name, Printable(module.chip), style.judged(MemoryWords(module)),
                   module.fuseId.empty() ? "-" : Printable(module.fuseId),
                   module.memory && !module.memory->erased ? ChecksumsText(*module.memory, style) : "-"});
    }
    table.print(out, 0);
}

void PrintCalibration(std::ostream& out, const Diagnosis& diagnosis, const Style& style) {
    Table table;
    table.row({"Calibration"});
    for (const PairDecision& decision : diagnosis.pairs) {
        std::string name = "  " + analysis::PairName(*decision.pair);
        std::string source = style.judged(SourceWords(decision));
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
        const std::string reason = ReasonAgainstFile(*diagnosis.stabiliser);
        table.row({"  stabiliser", style.judged(SourceWords(*diagnosis.stabiliser)),
                   Printable(GainWords(*diagnosis.stabiliser) + (reason.empty() ? "" : ", " + reason))});
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
                   style.judged(TagCountWords(device)),
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
