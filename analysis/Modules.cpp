#include "analysis/Modules.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <string_view>

#include "formats/FuseIdText.h"
#include "tables/CameraDevices.h"
#include "tables/CameraModules.h"
#include "tables/ModuleMakers.h"
#include "tables/PublishedProperties.h"

namespace analysis {

namespace {

/// What was set last to each property, refused or not: what the plug-in found out, whoever took it.
std::map<std::string_view, std::string_view> SetProperties(const record::BootRecord& boot) {
    std::map<std::string_view, std::string_view> values;
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot)) {
        values[set->name] = set->value;
    }
    return values;
}

/// The modules that "back_main=imx707;back_tele=none;" names, by role.
void ReadModuleInfo(std::string_view text, std::map<int, Module>& modules) {
    while (!text.empty()) {
        const std::string_view entry = text.substr(0, text.find(';'));
        text.remove_prefix(std::min(text.size(), entry.size() + 1));
        const std::string_view name = entry.substr(0, entry.find('='));
        const auto* const role =
            std::find_if(tables::kModuleRoles.begin(), tables::kModuleRoles.end(),
                         [=](const tables::ModuleRole& row) { return row.name == name; });
        if (role != tables::kModuleRoles.end() && name.size() < entry.size()) {
            const std::string_view chip = entry.substr(name.size() + 1);
            Module& module = modules[role->roleId];
            module.role = role->roleId;
            module.name = RoleName(role->roleId);
            module.chip = chip == "none" ? "" : chip;
        }
    }
}

/// Sensor indices by role, as the plug-in looked them up: "roleID(0) ==> sensorIdx(3)".
std::map<int, int> SensorIndices(const record::BootRecord& boot) {
    std::map<int, int> indices;
    for (const record::LogLine* const line : record::EventsOf<record::LogLine>(boot)) {
        if (record::OperationOf(*line) != "GetSensorIdxByRoleId") {
            continue;
        }
        constexpr std::string_view kRole = "roleID(";
        constexpr std::string_view kIndex = ") ==> sensorIdx(";
        const std::string_view text = record::TextOf(*line);
        const std::size_t middle = text.find(kIndex);
        if (text.starts_with(kRole) && middle != std::string_view::npos) {
            int role = 0;
            int index = 0;
            std::from_chars(text.data() + kRole.size(), text.data() + middle, role);
            std::from_chars(text.data() + middle + kIndex.size(), text.data() + text.size(), index);
            indices[role] = index;
        }
    }
    return indices;
}

/// Whether the log says that the memory of a role's module was not read.
bool ReadingFailed(const record::BootRecord& boot, int role) {
    const std::string text = "GetCamCalCalDataV2 get all data error : roleID = " + std::to_string(role);
    return std::any_of(boot.events.begin(), boot.events.end(), [&](const record::Event& event) {
        const auto* const line = std::get_if<record::LogLine>(&event);
        // The end is cheaper to compare than to find the text.
        return line != nullptr && line->message.ends_with(text) && record::TextOf(*line) == text;
    });
}

std::string MakerName(int makerId) {
    const auto* const found =
        std::find_if(tables::kModuleMakers.begin(), tables::kModuleMakers.end(),
                     [=](const tables::ModuleMaker& row) { return row.makerId == makerId; });
    if (found == tables::kModuleMakers.end()) {
        return {};
    }
    const std::string_view name = found->name;
    return std::string(name.substr(name.starts_with('_') ? 1 : 0));
}

/// Whether a layout is made for a chip: a component of its name, "ov13b" of
/// "halcyrion_ofilm_uw_ov13b_eeprom", starts the chip's.
bool IsLayoutOf(std::string_view layout, std::string_view chip) {
    while (!layout.empty()) {
        const std::string_view part = layout.substr(0, layout.find('_'));
        if (part.size() > 2 && chip.starts_with(part)) {
            return true;
        }
        layout.remove_prefix(std::min(layout.size(), part.size() + 1));
    }
    return false;
}

/// Adds what the driver and the description know of the module at a sensor index.
void AddMemory(const Boot& boot, int index, Module& module) {
    for (const record::EepromRead* const read : record::EventsOf<record::EepromRead>(boot.record)) {
        if (index >= 0 && read->deviceBit == 1U << (static_cast<unsigned>(index) & 31U)) {
            module.reading = Module::Reading::Good;
            module.read = read->read;
        }
    }
    if (ReadingFailed(boot.record, module.role)) {
        module.reading = Module::Reading::Failed;
    }
    if (module.reading != Module::Reading::Good || !boot.phone || index < 0 ||
        static_cast<std::size_t>(index) >= boot.phone->sensors.size() ||
        !boot.phone->sensors[static_cast<std::size_t>(index)].eeprom) {
        return;
    }
    const std::vector<std::uint8_t>& image =
        boot.phone->sensors[static_cast<std::size_t>(index)].eeprom->image;
    module.image = image;
    module.memory = MemoryOf(image, formats::FindEepromLayout(image), module.role);
    if (module.memory->layout != nullptr) {
        module.layoutOfThisChip = IsLayoutOf(module.memory->layout->eepromName, module.chip);
    }
}

}  // namespace

std::vector<Module> ModulesOf(const Boot& boot) {
    const auto properties = SetProperties(boot.record);
    const auto valueOf = [&](std::string_view name) {
        const auto found = properties.find(name);
        return found == properties.end() ? std::string_view() : found->second;
    };
    std::map<int, Module> byRole;
    ReadModuleInfo(valueOf(tables::kModuleInfoProperty), byRole);
    ReadModuleInfo(valueOf(tables::kModuleInfoExtProperty), byRole);
    const std::map<int, int> indices = SensorIndices(boot.record);
    std::vector<Module> modules;
    for (auto& [role, module] : byRole) {
        const auto index = indices.find(role);
        if (module.fitted()) {
            AddMemory(boot, index == indices.end() ? -1 : index->second, module);
        }
        for (const tables::FuseIdOfRole& row : tables::kFuseIds) {
            if (row.roleId == role) {
                const auto field = formats::TryParseFuseIdText(std::string(valueOf(row.fuseId.propName)));
                module.fuseId = field ? field->hex : "";
            }
        }
        module.focusPoints = valueOf(tables::FindModuleRole(role)->afInfoProperty);
        modules.push_back(std::move(module));
    }
    return modules;
}

ModuleMemory MemoryOf(formats::ImageBytes image, const EepromCheckSumDesc* layout, int role) {
    ModuleMemory memory;
    memory.makerId = formats::ReadIdentity(image).vendorId;
    memory.maker = MakerName(memory.makerId);
    if (!image.empty() && std::equal(image.begin() + 1, image.end(), image.begin())) {
        memory.erased = image[0];
    }
    memory.layout = layout;
    if (layout != nullptr) {
        for (const formats::CheckSumFinding& finding : formats::CheckRanges(image, *layout)) {
            const auto first = image.begin() + static_cast<std::ptrdiff_t>(finding.range.startAddr);
            const auto last = image.begin() + static_cast<std::ptrdiff_t>(finding.range.endAddr) + 1;
            memory.ranges.push_back(
                {.finding = finding, .empty = std::all_of(first, last, [](auto byte) { return byte == 0; })});
        }
    }
    for (const tables::QRCodeOfRole& row : tables::kQRCodes) {
        if (row.roleId == role && row.makerId == memory.makerId) {
            if (const auto code = formats::ReadQRCode(image, row.qrCode)) {
                memory.qrCode.assign(code->begin(), code->end());
            }
        }
    }
    return memory;
}

std::optional<int> RoleOfLayout(const EepromCheckSumDesc& layout) {
    for (const tables::CameraDevice& device : tables::kPhysicalCameraDevices) {
        if (IsLayoutOf(layout.eepromName, device.camera.sensorNames)) {
            return device.camera.roleId;
        }
    }
    return std::nullopt;
}

std::string RoleName(int role) {
    const tables::ModuleRole* const row = tables::FindModuleRole(role);
    if (row == nullptr) {
        return "role " + std::to_string(role);
    }
    std::string name = row->name;
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

}  // namespace analysis
