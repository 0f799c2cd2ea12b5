#include "zvcam/views/CalibrationView.h"

#include <ostream>

#include "analysis/Calibration.h"
#include "analysis/Modules.h"
#include "formats/Hex.h"
#include "tables/CameraPairs.h"
#include "tables/Stabiliser.h"

namespace zvcam {

namespace {

using analysis::CalibrationContent;
using analysis::CalibrationFolder;
using analysis::FuseIdOwners;

std::string Crc(std::uint16_t crc) {
    return HexNumber(crc, 4);
}

std::string VerdictText(const std::string& trouble, const Style& style) {
    return trouble.empty() ? style.good("good") : style.bad("BAD") + ": " + trouble;
}

std::string FuseIdText(const std::vector<std::uint8_t>& fuseId) {
    return fuseId.empty() ? "-" : formats::UpperHex(fuseId);
}

/// Whom a fuse id names on the phone.
std::string OwnerText(const std::vector<std::uint8_t>& fuseId, const FuseIdOwners* owners) {
    return owners == nullptr || fuseId.empty() ? "" : owners->nameOf(fuseId);
}

std::string PairsText(const formats::DualCalibrationFile& file, const FuseIdOwners& owners) {
    std::string text;
    for (const DualCameraCalDataInfo* const pair : analysis::PairsOf(file, owners)) {
        text += (text.empty() ? "" : "; ") + analysis::PairName(*pair);
    }
    return text;
}

void PrintDual(std::ostream& out, const formats::DualCalibrationReading& reading, const FuseIdOwners* owners,
               const Style& style) {
    const formats::DualCalibrationFile& file = reading.file;
    Table table;
    table.row({"layout", file.crc ? "maintained" : "factory, without CRC"});
    for (const auto& [name, fuseId] :
         {std::pair("master", file.masterFuseId), std::pair("slave", file.slaveFuseId)}) {
        table.row({name, FuseIdText(fuseId) + "  (" + Counted(fuseId.size(), "byte") + ")  " +
                             OwnerText(fuseId, owners)});
    }
    table.row({"block", BlobText(file.block)});
    table.row({"CRC", (file.crc ? Crc(reading.storedCrc) : "none") + " stored, " + Crc(reading.computedCrc) +
                          " computed"});
    if (owners != nullptr) {
        const std::string pairs = PairsText(file, *owners);
        table.row({"pair", pairs.empty() ? style.bad("NONE") + " of this phone" : pairs});
        if (pairs.empty() && owners->endsAt) {
            table.row({"", owners->searchEnd()});
        }
    }
    table.print(out, 2);
}

void PrintOis(std::ostream& out, const analysis::OisContent& ois, const FuseIdOwners* owners,
              const Style& style) {
    const formats::OisCalibrationFile& file = ois.reading.file;
    const auto gain = [&](std::uint32_t number) {
        return std::to_string(number) +
               (number < tables::kLeastGain || number > tables::kGreatestGain
                    ? "  " + style.bad("not " + std::to_string(tables::kLeastGain) + " to " +
                                       std::to_string(tables::kGreatestGain))
                    : "");
    };
    Table table;
    table.row({"version", std::to_string(file.version)});
    std::string owner;
    if (owners != nullptr) {
        owner = analysis::IsForStabiliser(file, *owners)
                    ? analysis::RoleName(tables::kStabilisedRole)
                    : style.bad("NOT") + " of this phone's " + analysis::RoleName(tables::kStabilisedRole);
    }
    table.row(
        {"fuse id", FuseIdText(file.fuseId) + "  (" + Counted(file.fuseId.size(), "byte") + ")  " + owner});
    table.row({"gain X", gain(file.gainX)});
    table.row({"gain Y", gain(file.gainY)});
    if (ois.notRead > 0) {
        table.row({"not read", Counted(ois.notRead, "byte")});
    }
    table.row({"CRC", ois.crcMissing ? "none stored"
                                     : Crc(ois.reading.storedCrc) + " stored, " +
                                           Crc(ois.reading.computedCrc) + " computed"});
    table.print(out, 2);
}

/// What a file of a folder says, in one row.
std::vector<std::string> Row(std::string number, const CalibrationFolder::File& file,
                             const FuseIdOwners* owners, const Style& style) {
    const std::string trouble = file.content.dualTrouble();
    std::vector<std::string> row = {std::move(number), Printable(file.name), VerdictText(trouble, style)};
    if (trouble.empty()) {
        const formats::DualCalibrationFile& content = file.content.dual->file;
        row.insert(row.end(), {content.crc ? "maintained" : "factory", FuseIdText(content.masterFuseId),
                               FuseIdText(content.slaveFuseId)});
        if (owners != nullptr) {
            const std::string pairs = PairsText(content, *owners);
            row.push_back(pairs.empty() ? "no pair of this phone" : pairs);
        }
    }
    return row;
}

void PrintTaken(std::ostream& out, const CalibrationFolder& folder, const FuseIdOwners& owners,
                const Style& style) {
    Table table;
    table.row({"taken"});
    for (const DualCameraCalDataInfo& pair : tables::kDualCameraPairs) {
        const CalibrationFolder::File* const file = folder.takenFor(pair, owners);
        table.row({"  " + analysis::PairName(pair),
                   file != nullptr ? Printable(file->name)
                                   : style.bad("NONE") + ", which leaves " + pair.goldenPath});
    }
    table.row({"  stabiliser", folder.stabiliserTaken(owners)
                                   ? Printable(folder.stabiliser->name)
                                   : style.bad("NONE") + ", which leaves the module's memory"});
    table.print(out, 2);
    if (owners.endsAt) {
        out << "    " << owners.searchEnd() << '\n';
    }
}

}  // namespace

void PrintCalibrationFile(std::ostream& out, const std::string& name, const CalibrationContent& content,
                          const FuseIdOwners* owners, const Style& style) {
    const std::string title = style.bold(Printable(name)) + ": ";
    if (!content.dual && !content.ois) {
        out << title << VerdictText(content.trouble, style) << '\n';
    }
    if (content.dual && content.ois) {
        out << title << "reads as both kinds; the plug-in goes by the name\n";
    }
    if (content.dual) {
        out << title << "dual-camera calibration, " << VerdictText(content.dualTrouble(), style) << '\n';
        PrintDual(out, *content.dual, owners, style);
    }
    if (content.ois) {
        out << title << "stabiliser calibration, " << VerdictText(content.oisTrouble(), style) << '\n';
        PrintOis(out, *content.ois, owners, style);
    }
}

void PrintCalibrationFolder(std::ostream& out, const std::string& name, const CalibrationFolder& folder,
                            const FuseIdOwners* owners, const Style& style) {
    if (folder.considered.empty() && !folder.stabiliser) {
        out << style.bold(Printable(name)) << ": " << VerdictText("no calibration file", style) << '\n';
        return;
    }
    out << style.bold(Printable(name)) << ": "
        << Counted(folder.considered.size(), "dual-camera calibration file")
        << ", in the order in which this folder lists them\n";
    Table table;
    for (std::size_t i = 0; i < folder.considered.size(); ++i) {
        table.row(Row(std::to_string(i + 1), folder.considered[i], owners, style));
    }
    table.print(out, 2);
    if (folder.stabiliser) {
        const CalibrationContent& content = folder.stabiliser->content;
        out << "  stabiliser  " << Printable(folder.stabiliser->name) << "  "
            << VerdictText(content.oisTrouble(), style)
            << (content.oisTrouble().empty() ? "  " + FuseIdText(content.ois->reading.file.fuseId) : "")
            << '\n';
    }
    for (const std::string& other : folder.others) {
        out << "  not considered  " << Printable(other) << '\n';
    }
    if (owners != nullptr) {
        PrintTaken(out, folder, *owners, style);
    } else {
        out << "  Which of them are taken depends on the fuse ids of the modules: --phone names a phone.\n";
    }
}

}  // namespace zvcam
