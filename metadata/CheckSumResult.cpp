#include <cstdint>
#include <optional>
#include <span>

#include "platform/IMetadata.h"
#include "platforminfo/CamCalAllData.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Entry.h"
#include "platforminfo/Operation.h"
#include "platforminfo/RoleResolution.h"
#include "tables/EepromLayouts.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;

namespace {

using EepromImage = std::span<const std::uint8_t, kEepromImageSize>;

std::uint32_t LittleEndian32At(EepromImage image, std::size_t offset) {
    return static_cast<std::uint32_t>(image[offset]) | static_cast<std::uint32_t>(image[offset + 1]) << 8 |
           static_cast<std::uint32_t>(image[offset + 2]) << 16 |
           static_cast<std::uint32_t>(image[offset + 3]) << 24;
}

/// The fourth header byte is shown but takes no part in the comparison.
bool MatchHeaderId(EepromImage image, const EepromCheckSumDesc& layout) {
    constexpr Operation self("MatchHeaderId");
    constexpr std::uint32_t kComparedBits = 0x00FFFFFF;
    const std::uint32_t headerId = LittleEndian32At(image, layout.headerIdOffset);
    LOGD(self, "expectHeaderId(0x%04x) readHeaderId(0x%04x)", layout.expectHeaderId, headerId);
    return (headerId & kComparedBits) == (layout.expectHeaderId & kComparedBits);
}

const EepromCheckSumDesc* FindLayout(EepromImage image) {
    for (const EepromCheckSumDesc& layout : kEepromLayouts) {
        if (MatchHeaderId(image, layout)) {
            return &layout;
        }
    }
    return nullptr;
}

/// Checks every range of the layout, so that the log names each one that fails.
bool CheckSumsGood(const Operation& self, EepromImage image, const EepromCheckSumDesc& layout) {
    bool good = true;
    for (const SubModuleCheckSumDesc& part : layout.subModules) {
        if (part.name == nullptr) {
            break;
        }
        if (EepromCheckSum(image, part.startAddr, part.endAddr) == image[part.checkSumAddr]) {
            LOGD(self, "submodule(%s) checksum ok !", part.name);
        } else {
            LOGE(self, "submodule(%s) checksum fail !", part.name);
            good = false;
        }
    }
    return good;
}

}  // namespace

int CameraPlatformInfoZelvan::MetadataUpdateCheckSumResult(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    const std::optional<ResolvedInstance> instance = ResolveRole(self, *this, DeviceId2RoleId, instanceId);
    if (!instance) {
        return -1;
    }
    const CamCalAllData* const image = GetCamCalAllData(Number(instance->role));
    if (image == nullptr) {
        return 0;
    }
    // A module that no layout describes counts as passing.
    bool good = true;
    if (const EepromCheckSumDesc* const layout = FindLayout(image->data); layout != nullptr) {
        LOGD(self, "instanceId(%d) match eeprom check is %s", instanceId, layout->eepromName);
        good = CheckSumsGood(self, image->data, *layout);
    } else {
        LOGD(self, "instanceId(%d) not match eeprom check", instanceId);
    }
    self.update(meta, MakeEntry<std::int32_t>(ZELVAN_CAMERA_CHECKSUM_RESULT, {good ? 1 : 0}));
    return 0;
}
