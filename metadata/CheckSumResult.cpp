#include <cstdint>
#include <optional>

#include "formats/EepromImage.h"
#include "platform/IMetadata.h"
#include "platforminfo/CamCalAllData.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Log.h"
#include "platforminfo/TagWriter.h"
#include "tables/EepromLayouts.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;

namespace {

/// Names every layout that it tries.
const EepromCheckSumDesc* FindLayout(formats::ImageBytes image) {
    for (const EepromCheckSumDesc& layout : tables::kEepromLayouts) {
        const std::uint32_t headerId = formats::ReadHeaderId(image, layout);
        LOG_AS(ANDROID_LOG_DEBUG, "MatchHeaderId", "expectHeaderId(0x%04x) readHeaderId(0x%04x)",
               layout.expectHeaderId, headerId);
        if (formats::IsHeaderIdOf(headerId, layout)) {
            return &layout;
        }
    }
    return nullptr;
}

/// Checks every range of the layout, so that the log names each one that fails.
bool CheckSumsGood(const char* function, formats::ImageBytes image, const EepromCheckSumDesc& layout) {
    bool good = true;
    for (const formats::CheckSumFinding& finding : formats::CheckRanges(image, layout)) {
        if (finding.good()) {
            LOG_AS(ANDROID_LOG_DEBUG, function, "submodule(%s) checksum ok !", finding.range.name);
        } else {
            LOG_AS(ANDROID_LOG_ERROR, function, "submodule(%s) checksum fail !", finding.range.name);
            good = false;
        }
    }
    return good;
}

}  // namespace

int CameraPlatformInfoZelvan::MetadataUpdateCheckSumResult(IMetadata& meta, int instanceId) {
    const std::optional<ResolvedInstance> instance = ResolveRole(__func__, instanceId);
    if (!instance) {
        return -1;
    }
    const CamCalAllData* const image = GetCamCalAllData(instance->roleId);
    if (image == nullptr) {
        return 0;
    }
    // A module that no layout describes counts as passing.
    bool good = true;
    if (const EepromCheckSumDesc* const layout = FindLayout(image->data); layout != nullptr) {
        LOGD("instanceId(%d) match eeprom check is %s", instanceId, layout->eepromName);
        good = CheckSumsGood(__func__, image->data, *layout);
    } else {
        LOGD("instanceId(%d) not match eeprom check", instanceId);
    }
    UpdateTag(__func__, meta, MakeEntry<std::int32_t>(ZELVAN_CAMERA_CHECKSUM_RESULT, {good ? 1 : 0}));
    return 0;
}
