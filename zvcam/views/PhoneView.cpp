#include "zvcam/views/PhoneView.h"

#include <algorithm>
#include <ostream>
#include <vector>

#include "analysis/Devices.h"

namespace zvcam {

namespace {

using analysis::Module;
using virtualphone::PhoneDescription;

std::string ChecksumsText(const analysis::ModuleMemory& memory) {
    std::string bad;
    for (const analysis::CheckedRange& range : memory.ranges) {
        bad += range.finding.good() ? "" : " " + std::string(range.finding.range.name);
    }
    return memory.layout == nullptr ? "unchecked" : bad.empty() ? "checksums good" : "BAD" + bad;
}

void PrintSensors(std::ostream& out, const analysis::PhoneCheck& check) {
    Table table;
    for (std::size_t i = 0; i < check.modules.size(); ++i) {
        const Module& module = check.modules[i];
        std::vector<std::string>& cells =
            table.row({"sensor " + std::to_string(i), module.role < 0 ? "no module" : module.name,
                       module.chip.empty() ? "-" : module.chip});
        if (module.memory) {
            cells.emplace_back(module.memory->layout == nullptr ? "layout unknown"
                                                                : module.memory->layout->eepromName);
            cells.push_back(ChecksumsText(*module.memory));
            cells.push_back(module.fuseId.empty() ? "no fuse id" : "fuse id " + module.fuseId);
        } else if (module.role >= 0) {
            cells.emplace_back("memory cannot be read");
        }
    }
    table.print(out, 2);
}

void PrintDevices(std::ostream& out, const PhoneDescription& phone, const analysis::PhoneCheck& check) {
    Table table;
    for (std::size_t i = 0; i < phone.logicalDevices.size(); ++i) {
        const virtualphone::LogicalDeviceDescription& device = phone.logicalDevices[i];
        std::string members;
        for (const tables::MemberSensorId member : device.members) {
            const auto index = static_cast<std::size_t>(Number(member));
            members += members.empty() ? "" : ", ";
            members += index < check.modules.size() ? check.modules[index].name
                                                    : "no sensor " + std::to_string(Number(member));
        }
        table.row({"device " + std::to_string(i), Printable(analysis::ShortDeviceName(device.name)),
                   members.empty() ? "no members" : members});
    }
    table.print(out, 2);
}

void PrintList(std::ostream& out, const char* title, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        out << (&line == &lines.front() ? title : "") << (&line == &lines.front() ? "\n" : "") << "  "
            << Printable(line) << '\n';
    }
}

}  // namespace

void PrintPhoneCheck(std::ostream& out, const std::string& source, const PhoneDescription& phone,
                     const analysis::PhoneCheck& check, const Style& style) {
    out << style.bold(Printable(source)) << ": phone " << Printable(phone.name) << ", "
        << Counted(phone.sensors.size(), "sensor") << ", " << Counted(phone.logicalDevices.size(), "device")
        << ", " << Counted(phone.files.size(), "file") << ", "
        << (check.findings.empty() ? "nothing wrong" : Counted(check.findings.size(), "finding")) << '\n';
    for (const analysis::Finding& finding : check.findings) {
        const bool error = finding.severity == analysis::Finding::Severity::Error;
        out << "  " << (error ? style.bad("error") : style.doubtful("warning")) << "  "
            << Printable(finding.about) << ": " << Printable(finding.words) << '\n';
    }
    PrintSensors(out, check);
    PrintDevices(out, phone, check);
    for (const analysis::LaidFile& file : check.files) {
        out << "  " << Printable(file.path) << ": " << file.words << '\n';
    }
}

void PrintDevicePull(std::ostream& out, const analysis::DevicePull& pull) {
    PrintList(out, "Found", pull.found);
    PrintList(out, "Left out", pull.leftOut);
    PrintList(out, "Assumed", pull.assumed);
}

}  // namespace zvcam
