#include "analysis/CalibrationFiles.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "analysis/Properties.h"
#include "formats/Bytes.h"
#include "formats/FuseIdText.h"
#include "formats/Hex.h"
#include "tables/CameraModules.h"
#include "tables/PublishedFiles.h"
#include "tables/Stabiliser.h"

namespace analysis {

namespace {

using Trouble = formats::DualCalibrationReading::Trouble;

std::string CrcText(std::uint16_t stored, std::uint16_t computed) {
    return "CRC " + formats::HexNumber(stored, 4) + " stored, " + formats::HexNumber(computed, 4) +
           " computed";
}

/// The fields of a stabiliser file, where the bytes have room for all of them.
std::optional<OisContent> OisContentOf(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kGains = 8;
    const std::size_t fields = bytes.size() < 2 ? 0 : 2U + bytes[1] + kGains;
    if (fields == 0 || bytes.size() < fields) {
        return std::nullopt;
    }
    OisContent content{.reading = formats::ReadOisCalibrationFile(bytes)};
    content.crcMissing = bytes.size() < fields + formats::kCrcSize;
    content.notRead = content.crcMissing ? 0 : bytes.size() - fields - formats::kCrcSize;
    return content;
}

bool HasVersion(const OisContent& ois) {
    return ois.reading.file.version == formats::kOisFileVersion;
}

bool CrcGood(const OisContent& ois) {
    return ois.reading.crcGood && !ois.crcMissing;
}

/// Why bytes are neither kind.
std::string NeitherKind(std::span<const std::uint8_t> bytes, const formats::DualCalibrationReading& dual) {
    if (bytes.empty()) {
        return "empty";
    }
    const std::string asDual =
        dual.trouble == Trouble::FuseIdsLeadOutside
            ? "its fuse ids would lead beyond its end"
            : std::to_string(dual.file.block.size()) + " bytes follow the fuse ids, and no block has so many";
    const formats::OisCalibrationReading ois = formats::ReadOisCalibrationFile(bytes);
    return "no dual-camera file (" + asDual + ") and no stabiliser file (" +
           CrcText(ois.storedCrc, ois.computedCrc) + ")";
}

/// The fuse id that a role's module publishes.
std::optional<std::string> PublishedFuseId(const std::map<std::string, std::string>& properties, int role) {
    const auto* const row = std::find_if(tables::kFuseIds.begin(), tables::kFuseIds.end(),
                                         [=](const auto& each) { return each.roleId == role; });
    const auto property =
        row == tables::kFuseIds.end() ? properties.end() : properties.find(row->fuseId.propName);
    const auto field =
        property == properties.end() ? std::nullopt : formats::TryParseFuseIdText(property->second);
    return field ? std::optional(field->hex) : std::nullopt;
}

}  // namespace

std::string CalibrationContent::dualTrouble() const {
    if (!dual) {
        return trouble.empty() ? "a stabiliser file" : trouble;
    }
    return dual->trouble == Trouble::Crc ? CrcText(dual->storedCrc, dual->computedCrc) : "";
}

std::string CalibrationContent::oisTrouble() const {
    if (!ois) {
        return trouble.empty() ? "a dual-camera file" : trouble;
    }
    const formats::OisCalibrationFile& file = ois->reading.file;
    return ois->crcMissing     ? "it has no CRC"
           : !CrcGood(*ois)    ? CrcText(ois->reading.storedCrc, ois->reading.computedCrc)
           : !HasVersion(*ois) ? "version " + std::to_string(file.version) + ", not " +
                                     std::to_string(formats::kOisFileVersion)
           : !file.gainsInRange() ? GainsRefused()
                                  : "";
}

std::string GainsRefused() {
    return "its gains are not " + std::to_string(tables::kLeastGain) + " to " +
           std::to_string(tables::kGreatestGain);
}

CalibrationContent ContentOfCalibrationFile(std::span<const std::uint8_t> bytes) {
    CalibrationContent content;
    if (bytes.size() > tables::kLargestCalibrationFile) {
        content.trouble = "more than " + std::to_string(tables::kLargestCalibrationFile) + " bytes";
        return content;
    }
    const formats::DualCalibrationReading dual = formats::ReadDualCalibrationFile(bytes);
    const std::optional<OisContent> ois = OisContentOf(bytes);
    // The CRC closes both kinds, so that a good one of a dual-camera file speaks for the other kind only with
    // the version too.
    if (dual.trouble == Trouble::None) {
        content.dual = dual;
    }
    if (ois && CrcGood(*ois) && (HasVersion(*ois) || !content.dual)) {
        content.ois = ois;
    }
    if (content.dual || content.ois) {
        return content;
    }
    if (dual.trouble == Trouble::Crc) {
        content.dual = dual;
    } else if (ois && HasVersion(*ois) && ois->notRead == 0) {
        content.ois = ois;
    } else {
        content.trouble = NeitherKind(bytes, dual);
    }
    return content;
}

std::optional<std::vector<std::uint8_t>> Sealed(std::span<const std::uint8_t> bytes) {
    const CalibrationContent content = ContentOfCalibrationFile(bytes);
    if (!content.dual && !content.ois) {
        return std::nullopt;
    }
    const bool hasCrc = content.dual ? content.dual->file.crc : !content.ois->crcMissing;
    const auto body = bytes.first(bytes.size() - (hasCrc ? formats::kCrcSize : 0));
    std::vector<std::uint8_t> sealed(body.begin(), body.end());
    formats::AppendCrc(sealed);
    return sealed;
}

std::optional<int> FuseIdOwners::roleOf(std::span<const std::uint8_t> fuseId) const {
    const auto found =
        std::find_if(searched.begin(), searched.end(),
                     [hex = formats::UpperHex(fuseId)](const Owner& owner) { return owner.fuseId == hex; });
    return found == searched.end() ? std::nullopt : std::optional(found->role);
}

std::string FuseIdOwners::nameOf(std::span<const std::uint8_t> fuseId) const {
    if (fuseId.empty()) {
        return "nobody";
    }
    const std::optional<int> role = roleOf(fuseId);
    return role ? RoleName(*role) : endsAt ? "no module that is found" : "no module of this phone";
}

std::string FuseIdOwners::searchEnd() const {
    return endsAt ? "the search for fuse ids ends at " + RoleName(*endsAt) + ", which publishes none" : "";
}

FuseIdOwners FuseIdOwnersOf(const Boot& boot) {
    const std::map<std::string, std::string> properties = PropertiesAfter(boot);
    FuseIdOwners owners;
    owners.stabilised = PublishedFuseId(properties, tables::kStabilisedRole).value_or("");
    // The sensors are searched in the order in which their sensor info was set.
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot.record)) {
        const auto* const module =
            std::find_if(tables::kModuleRoles.begin(), tables::kModuleRoles.end(),
                         [&](const auto& row) { return set->name == row.sensorInfoProperty; });
        if (module == tables::kModuleRoles.end()) {
            continue;
        }
        const std::optional<std::string> fuseId = PublishedFuseId(properties, module->roleId);
        if (!fuseId) {
            owners.endsAt = module->roleId;
            break;
        }
        owners.searched.push_back({.role = module->roleId, .fuseId = *fuseId});
    }
    return owners;
}

FuseIdOwners FuseIdOwnersOf(std::span<const Module> modules) {
    FuseIdOwners owners;
    for (const Module& module : modules) {
        if (module.role < 0) {
            continue;
        }
        if (module.role == tables::kStabilisedRole) {
            owners.stabilised = module.fuseId;
        }
        if (module.fuseId.empty() && !owners.endsAt) {
            owners.endsAt = module.role;
        } else if (!owners.endsAt) {
            owners.searched.push_back({.role = module.role, .fuseId = module.fuseId});
        }
    }
    return owners;
}

std::vector<const DualCameraCalDataInfo*> PairsOf(const formats::DualCalibrationFile& file,
                                                  const FuseIdOwners& owners) {
    const auto named = [&](const std::vector<std::uint8_t>& fuseId) {
        return fuseId.empty() ? std::nullopt : std::optional(owners.roleOf(fuseId).value_or(-1));
    };
    std::vector<const DualCameraCalDataInfo*> pairs;
    for (const DualCameraCalDataInfo& pair : tables::kDualCameraPairs) {
        if (tables::NamePair(named(file.masterFuseId), named(file.slaveFuseId), pair)) {
            pairs.push_back(&pair);
        }
    }
    return pairs;
}

bool IsForStabiliser(const formats::OisCalibrationFile& file, const FuseIdOwners& owners) {
    return !owners.stabilised.empty() && owners.stabilised == formats::UpperHex(file.fuseId);
}

bool Serves(const CalibrationContent& content, const FuseIdOwners& owners) {
    return (content.dualTrouble().empty() && !PairsOf(content.dual->file, owners).empty()) ||
           (content.oisTrouble().empty() && IsForStabiliser(content.ois->reading.file, owners));
}

const CalibrationFolder::File* CalibrationFolder::takenFor(const DualCameraCalDataInfo& pair,
                                                           const FuseIdOwners& owners) const {
    const auto found = std::find_if(considered.begin(), considered.end(), [&](const File& file) {
        if (!file.content.dualTrouble().empty()) {
            return false;
        }
        const auto pairs = PairsOf(file.content.dual->file, owners);
        return std::find(pairs.begin(), pairs.end(), &pair) != pairs.end();
    });
    return found == considered.end() ? nullptr : &*found;
}

bool CalibrationFolder::stabiliserTaken(const FuseIdOwners& owners) const {
    return stabiliser && stabiliser->content.oisTrouble().empty() &&
           IsForStabiliser(stabiliser->content.ois->reading.file, owners);
}

bool CalibrationFolder::good(const FuseIdOwners* owners) const {
    const bool sound = (stabiliser || !considered.empty()) &&
                       (!stabiliser || stabiliser->content.oisTrouble().empty()) &&
                       std::all_of(considered.begin(), considered.end(),
                                   [](const File& file) { return file.content.dualTrouble().empty(); });
    return sound && (owners == nullptr ||
                     (stabiliserTaken(*owners) &&
                      std::all_of(tables::kDualCameraPairs.begin(), tables::kDualCameraPairs.end(),
                                  [&](const auto& pair) { return takenFor(pair, *owners) != nullptr; })));
}

}  // namespace analysis
