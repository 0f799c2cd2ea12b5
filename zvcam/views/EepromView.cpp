#include "zvcam/views/EepromView.h"

#include <array>
#include <ostream>

#include "formats/Hex.h"
#include "tables/Stabiliser.h"

namespace zvcam {

namespace {

using analysis::EepromFindings;

std::string Offset(std::size_t offset) {
    return HexNumber(offset, 4);
}

/// "12 bytes at 0x0010".
std::string Place(int size, int offset) {
    return Counted(static_cast<std::size_t>(size), "byte") + " at " +
           Offset(static_cast<std::size_t>(offset));
}

std::string LayoutText(const EepromFindings& findings, const Style& style) {
    if (findings.memory.layout == nullptr) {
        return style.bad("UNKNOWN");
    }
    return findings.memory.layout->eepromName +
           (findings.role ? ", " + analysis::RoleName(*findings.role) : std::string()) +
           (findings.layoutGiven ? ", as given" : "");
}

std::string QRCodeText(formats::ImageBytes image, const EepromFindings& findings) {
    if (findings.qrCodePlace == nullptr) {
        return "none of this maker";
    }
    const QRCodeDescriptor& place = *findings.qrCodePlace;
    const std::uint8_t flag = image[static_cast<std::size_t>(place.flagOffset)];
    const std::string flagText =
        "flag " + HexNumber(flag, 2) + " at " + Offset(static_cast<std::size_t>(place.flagOffset));
    return flag == formats::kQRCodeValid
               ? Printable(findings.memory.qrCode) + "  (" + Place(place.qrCodeLength, place.qrCodeOffset) +
                     ", " + flagText + ")"
               : "none (" + flagText + ")";
}

void PrintCheckSums(std::ostream& out, const EepromFindings& findings, const Style& style) {
    Table table;
    table.row({"checksums", "range", "at", "stored", "computed"});
    for (const analysis::CheckedRange& each : findings.memory.ranges) {
        const SubModuleCheckSumDesc& range = each.finding.range;
        table.row({std::string("  ") + range.name, Offset(range.startAddr) + " to " + Offset(range.endAddr),
                   Offset(range.checkSumAddr), HexNumber(each.finding.stored, 2),
                   HexNumber(each.finding.computed, 2),
                   !each.finding.good() ? style.bad("BAD")
                   : each.empty         ? style.doubtful("empty")
                                        : "ok"});
    }
    table.print(out, 2);
}

void PrintStabiliser(std::ostream& out, formats::ImageBytes image) {
    const auto parameters = formats::ReadStabiliserParameters(image);
    Table table;
    table.row({"stabiliser", "at", "bytes", "value"});
    for (std::size_t i = 0; i < tables::kStabiliserFields.size(); ++i) {
        const tables::StabiliserField& field = tables::kStabiliserFields[i];
        const auto bytes =
            image.subspan(static_cast<std::size_t>(field.offset), static_cast<std::size_t>(field.size));
        table.row(
            {std::string("  ") + field.name, Offset(static_cast<std::size_t>(field.offset)),
             formats::UpperHex(bytes),
             std::to_string(parameters[i]) +
                 (field.isSensitivity ? ", " + std::to_string(parameters[i] - bytes[0]) + " of it the maker's"
                                      : std::string())});
    }
    table.print(out, 2);
}

}  // namespace

void PrintEeprom(std::ostream& out, const std::string& name, std::size_t size, formats::ImageBytes image,
                 const EepromFindings& findings, const Style& style) {
    out << style.bold(Printable(name)) << ": " << Counted(size, "byte")
        << (size < image.size() ? ", the rest counts as 0" : "") << ", "
        << (findings.good() ? style.good("good") : style.bad("BAD")) << '\n';
    for (const analysis::Finding& finding : findings.findings) {
        out << (finding.severity == analysis::Finding::Severity::Error ? style.bad("  error    ")
                                                                       : style.doubtful("  warning  "))
            << finding.words << '\n';
    }
    const analysis::ModuleMemory& memory = findings.memory;
    Table table;
    table.row(
        {"maker", HexNumber(memory.makerId, 2) + " " + (memory.maker.empty() ? "unknown" : memory.maker)});
    table.row({"lens id", HexNumber(findings.identity.lensId, 2)});
    table.row({"sensor id", HexNumber(findings.identity.sensorId, 2)});
    table.row({"header id", HexNumber(findings.headerId, 8)});
    table.row({"layout", LayoutText(findings, style)});
    if (findings.fuseIdPlace != nullptr) {
        table.row({"fuse id",
                   formats::UpperHex(findings.fuseId) + "  (" +
                       Place(findings.fuseIdPlace->fuseIdLength, findings.fuseIdPlace->fuseIdOffset) + ")"});
        table.row({"QR code", QRCodeText(image, findings)});
    }
    table.print(out, 2);
    if (memory.layout != nullptr) {
        PrintCheckSums(out, findings, style);
    }
    if (findings.role == tables::kStabilisedRole) {
        PrintStabiliser(out, image);
    }
    if (!findings.published.empty()) {
        out << "  published\n";
        Table published;
        for (const auto& [property, value] : findings.published) {
            published.row({property, "= " + Printable(value)});
        }
        published.print(out, 4);
    }
}

}  // namespace zvcam
