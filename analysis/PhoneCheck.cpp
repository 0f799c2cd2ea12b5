#include "analysis/PhoneCheck.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "analysis/Calibration.h"
#include "analysis/CalibrationFiles.h"
#include "formats/EepromImage.h"
#include "formats/Hex.h"
#include "tables/CameraDevices.h"
#include "tables/CameraModules.h"
#include "tables/CameraPairs.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"
#include "tables/PublishedTags.h"
#include "tables/Stabiliser.h"

namespace analysis {

namespace {

using Severity = Finding::Severity;
using virtualphone::PhoneDescription;

std::string Bytes(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

class Checker {
  public:
    explicit Checker(const PhoneDescription& phone) : mPhone(phone) {}

    PhoneCheck check() && {
        for (std::size_t i = 0; i < mPhone.sensors.size(); ++i) {
            checkSensor(i);
        }
        mOwners = FuseIdOwnersOf(mCheck.modules);
        for (const auto& [path, bytes] : mPhone.files) {
            mCheck.files.push_back({.path = path, .words = checkFile(path, bytes)});
        }
        checkMembers();
        checkFaults();
        std::stable_sort(mCheck.findings.begin(), mCheck.findings.end(),
                         [](const Finding& a, const Finding& b) { return a.severity < b.severity; });
        return std::move(mCheck);
    }

  private:
    void add(Severity severity, std::string about, std::string words) {
        mCheck.findings.push_back({severity, std::move(about), std::move(words)});
    }

    void checkSensor(std::size_t index) {
        const virtualphone::SensorDescription& sensor = mPhone.sensors[index];
        Module module;
        module.role = RoleOfSensor(mPhone, index);
        module.name = module.role < 0 ? "sensor " + std::to_string(index) : RoleName(module.role);
        if (module.role < 0) {
            add(Severity::Warning, module.name,
                "its device id " + std::to_string(Number(sensor.deviceId)) +
                    " is that of no module, or of an earlier sensor: nothing is published of it");
            mCheck.modules.push_back(std::move(module));
            return;
        }
        const auto* const device =
            std::find_if(tables::kCameraDevices.begin(), tables::kCameraDevices.end(),
                         [&](const auto& row) { return row.camera.roleId == module.role; });
        module.chip = device->camera.sensorNames;
        const std::uint32_t read =
            sensor.eeprom ? sensor.eeprom->readReturns.value_or(tables::kEepromImageSize) : 0;
        module.read = read;
        module.reading = Module::Reading::Good;
        if (read != tables::kEepromImageSize) {
            module.reading = Module::Reading::Failed;
            add(Severity::Error, module.name,
                "its memory cannot be read (" + std::to_string(read) + " of " +
                    Bytes(tables::kEepromImageSize) + " come back)");
        } else {
            readMemory(sensor.eeprom->image, module);
        }
        mCheck.modules.push_back(std::move(module));
    }

    void readMemory(const std::vector<std::uint8_t>& image, Module& module) {
        module.memory = MemoryOf(image, formats::FindEepromLayout(image), module.role);
        if (module.memory->layout != nullptr) {
            module.layoutOfThisChip = RoleOfLayout(*module.memory->layout) == module.role;
        }
        for (const tables::FuseIdOfRole& row : tables::kFuseIds) {
            if (row.roleId == module.role && !module.memory->maker.empty()) {
                module.fuseId = formats::UpperHex(formats::ReadFuseId(image, row.fuseId));
            }
        }
        for (Finding& finding : MemoryFindings(module)) {
            mCheck.findings.push_back(std::move(finding));
        }
    }

    std::string checkFile(const std::string& path, const std::vector<std::uint8_t>& bytes) {
        if (path == tables::kOisFilePath) {
            return checkStabiliser(path, bytes);
        }
        if (path.starts_with(tables::kPersistFolder) &&
            tables::IsDualCalibrationFileName(path.substr(path.rfind('/') + 1))) {
            return checkDualCalibration(path, bytes);
        }
        for (const DualCameraCalDataInfo& pair : tables::kDualCameraPairs) {
            if (path == pair.goldenPath) {
                if (bytes.size() < static_cast<std::size_t>(pair.length)) {
                    add(Severity::Error, path,
                        "it has " + Bytes(bytes.size()) + ", " + std::to_string(pair.length) + " are needed");
                }
                return "golden block of " + PairName(pair) + ", " + Bytes(bytes.size());
            }
        }
        if (tables::FindPublishedFile(path) != nullptr) {
            add(Severity::Warning, path,
                "left from an earlier boot: where a boot does not write it, it serves");
        }
        return Bytes(bytes.size());
    }

    std::string checkDualCalibration(const std::string& path, const std::vector<std::uint8_t>& bytes) {
        const CalibrationContent content = ContentOfCalibrationFile(bytes);
        refuse(path, content.dualTrouble());
        if (!content.dual) {
            return Bytes(bytes.size());
        }
        const formats::DualCalibrationFile& file = content.dual->file;
        const std::string owners =
            mOwners.nameOf(file.masterFuseId) + " and " + mOwners.nameOf(file.slaveFuseId);
        if (PairsOf(file, mOwners).empty()) {
            const auto isMissed = [&](const std::vector<std::uint8_t>& fuseId) {
                return !fuseId.empty() && mOwners.endsAt && !mOwners.roleOf(fuseId);
            };
            add(Severity::Error, path,
                "it was made for " + owners + ", which are no pair" +
                    (isMissed(file.masterFuseId) || isMissed(file.slaveFuseId) ? "; " + mOwners.searchEnd()
                                                                               : ""));
        }
        return "dual-camera calibration of " + owners + ", " + Bytes(file.block.size());
    }

    std::string checkStabiliser(const std::string& path, const std::vector<std::uint8_t>& bytes) {
        const CalibrationContent content = ContentOfCalibrationFile(bytes);
        refuse(path, content.oisTrouble());
        if (!content.ois) {
            return Bytes(bytes.size());
        }
        const formats::OisCalibrationFile& file = content.ois->reading.file;
        const std::string owner = mOwners.nameOf(file.fuseId);
        if (!IsForStabiliser(file, mOwners)) {
            add(Severity::Error, path,
                "it was made for " + owner + ", not for " + RoleName(tables::kStabilisedRole));
        }
        return "stabiliser calibration of " + owner + ", gains " + std::to_string(file.gainX) + " and " +
               std::to_string(file.gainY);
    }

    void refuse(const std::string& path, const std::string& trouble) {
        if (!trouble.empty()) {
            add(Severity::Error, path, "it is refused: " + trouble);
        }
    }

    void checkMembers() {
        for (std::size_t i = 0; i < mPhone.logicalDevices.size(); ++i) {
            for (const tables::MemberSensorId member : mPhone.logicalDevices[i].members) {
                if (Number(member) < 0 || Number(member) >= std::ssize(mPhone.sensors)) {
                    add(Severity::Warning, "device " + std::to_string(i),
                        "its member " + std::to_string(Number(member)) + " is no sensor");
                }
            }
        }
    }

    void checkFaults() {
        const virtualphone::PhoneFaults& faults = mPhone.faults;
        const auto never = [&](const char* fault, const std::string& key, const char* why) {
            add(Severity::Warning, "faults", std::string(fault) + ": " + key + " can never strike, " + why);
        };
        const auto checkIndices = [&](const char* fault, const auto& indices) {
            for (const tables::SensorIndex index : indices) {
                if (Number(index) < 0 || Number(index) >= std::ssize(mPhone.sensors)) {
                    never(fault, std::to_string(Number(index)), "for there is no such sensor");
                }
            }
        };
        checkIndices("sensorDrivers", faults.sensorDrivers);
        checkIndices("sensorObjects", faults.sensorObjects);
        for (const tables::DeviceId id : faults.staticInfo) {
            if (std::none_of(mPhone.sensors.begin(), mPhone.sensors.end(),
                             [=](const auto& sensor) { return sensor.deviceId == id; })) {
                never("staticInfo", std::to_string(Number(id)), "for no sensor has that device id");
            }
        }
        for (const auto& [tag, result] : faults.metadataUpdate) {
            if (tables::FindPublishedTag(tag) == nullptr) {
                never("metadataUpdate", formats::HexNumber(tag), "for the tag is never published");
            }
        }
        for (const std::string& name : faults.propertySet) {
            if (tables::FindPublishedProperty(name) == nullptr) {
                never("propertySet", name, "for the property is never set");
            }
        }
    }

    const PhoneDescription& mPhone;
    FuseIdOwners mOwners;
    PhoneCheck mCheck;
};

}  // namespace

bool PhoneCheck::bad() const {
    return !findings.empty() && findings.front().severity == Severity::Error;
}

PhoneCheck Check(const PhoneDescription& phone) {
    return Checker(phone).check();
}

int RoleOfSensor(const PhoneDescription& phone, std::size_t index) {
    const tables::DeviceId deviceId = phone.sensors[index].deviceId;
    const auto sensor = phone.sensors.begin() + static_cast<std::ptrdiff_t>(index);
    const auto* const device =
        std::find_if(tables::kCameraDevices.begin(), tables::kCameraDevices.end(),
                     [=](const auto& row) { return row.deviceId == Number(deviceId); });
    const bool hasModule = device != tables::kCameraDevices.end() &&
                           tables::FindModuleRole(device->camera.roleId) != nullptr &&
                           std::none_of(phone.sensors.begin(), sensor,
                                        [=](const auto& earlier) { return earlier.deviceId == deviceId; });
    return hasModule ? device->camera.roleId : -1;
}

}  // namespace analysis
