#include "zvcam/fleet/TroubleTargets.h"

#include <algorithm>

#include "analysis/Modules.h"
#include "analysis/PhoneCheck.h"
#include "formats/DualCalibrationFile.h"
#include "formats/EepromImage.h"
#include "formats/OisCalibrationFile.h"
#include "tables/PublishedFiles.h"

namespace zvcam {

namespace {

using Bytes = std::vector<std::uint8_t>;
using virtualphone::PhoneDescription;

bool IsInPersistFolder(const std::string& path) {
    return path.starts_with(tables::kPersistFolder);
}

}  // namespace

std::vector<TroubleTarget> Memories(const PhoneDescription& phone) {
    std::vector<TroubleTarget> targets;
    for (std::size_t i = 0; i < phone.sensors.size(); ++i) {
        if (const int role = analysis::RoleOfSensor(phone, i); role >= 0 && phone.sensors[i].eeprom) {
            targets.push_back({.sensor = i,
                               .where = analysis::RoleName(role),
                               .layout = formats::FindEepromLayout(phone.sensors[i].eeprom->image)});
        }
    }
    return targets;
}

std::vector<TroubleTarget> MemoriesWithFuseId(const PhoneDescription& phone) {
    std::vector<TroubleTarget> targets = Memories(phone);
    std::erase_if(
        targets, [&](const TroubleTarget& target) { return FuseIdPlaceOf(phone, target.sensor) == nullptr; });
    return targets;
}

const FuseIdDescriptor* FuseIdPlaceOf(const PhoneDescription& phone, std::size_t sensor) {
    const int role = analysis::RoleOfSensor(phone, sensor);
    const auto* const row =
        std::find_if(tables::kFuseIds.begin(), tables::kFuseIds.end(),
                     [=](const tables::FuseIdOfRole& each) { return each.roleId == role; });
    return row == tables::kFuseIds.end() ? nullptr : &row->fuseId;
}

bool IsPairFile(const std::string& path, const Bytes& bytes) {
    return IsInPersistFolder(path) &&
           formats::ReadDualCalibrationFile(bytes).trouble == formats::DualCalibrationReading::Trouble::None;
}

bool IsStabiliserFile(const std::string& path, const Bytes& bytes) {
    return IsInPersistFolder(path) && !IsPairFile(path, bytes) &&
           formats::ReadOisCalibrationFile(bytes).crcGood;
}

}  // namespace zvcam
