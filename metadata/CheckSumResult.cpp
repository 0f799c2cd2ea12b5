#include <cstdint>
#include <optional>

#include "formats/EepromImage.h"
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

/// Names every layout that it tries.
const EepromCheckSumDesc* FindLayout(formats::ImageBytes image) {
    constexpr Operation self("MatchHeaderId");
    for (const EepromCheckSumDesc& layout : tables::kEepromLayouts) {
        const std::uint32_t headerId = formats::ReadHeaderId(image, layout);
        LOGD(self, "expectHeaderId(0x%04x) readHeaderId(0x%04x)", layout.expectHeaderId, headerId);
        if (formats::IsHeaderIdOf(headerId, layout)) {
            return &layout;
        }
    }
    return nullptr;
}

/// Checks every range of the layout, so that the log names each one that fails.
bool CheckSumsGood(const Operation& self, formats::ImageBytes image, const EepromCheckSumDesc& layout) {
    bool good = true;
    for (const formats::CheckSumFinding& finding : formats::CheckRanges(image, layout)) {
        if (finding.good()) {
            LOGD(self, "submodule(%s) checksum ok !", finding.range.name);
        } else {
            LOGE(self, "submodule(%s) checksum fail !", finding.range.name);
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
