#include <cstdint>
#include <functional>
#include <istream>
#include <sstream>

#include "formats/ZoomScale.h"
#include "platform/IMetadata.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Entry.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;
namespace camera_role = tables::camera_role;

namespace {

/// Which zoom control a scale is for, as its record names it.
enum ZoomScaleType : int { kPhotoScale = 1, kVideoScale = 2 };

/// Lengths of the zoom controls, in the controls' own units.
constexpr float kPhotoControlLength = 800.0F;
constexpr float kVideoControlLength = 700.0F;
constexpr float kSecondSatControlLength = 400.0F;

}  // namespace

int CameraPlatformInfoZelvan::MetedataUpdateSatInfo(IMetadata& meta, int instanceId) {
    std::istringstream photoRatios("0.6:1:2:5:10:20");
    std::istringstream videoRatios("0.6:1:2:5:10:15");
    std::istringstream secondSatRatios("0.6:0.8:1:2");
    const std::function convert = [](const float& length, std::istream& ratios, int type) {
        const formats::ZoomScaleRecord record = formats::MakeZoomScaleRecord(length, ratios, type);
        return IMetadata::Memory(&record, sizeof(record));
    };
    const auto store = [&meta](const IMetadata::Memory& records) {
        meta.update(ZELVAN_CAMERA_SAT_ZOOM_INFO,
                    MakeEntry<IMetadata::Memory>(ZELVAN_CAMERA_SAT_ZOOM_INFO, {records}));
    };

    // An unknown instance gains an empty row, whose role has no scale.
    switch (DeviceId2RoleId.findOrAdd(instanceId).roleId) {
        case camera_role::kSat: {
            IMetadata::Memory records;
            records.append(convert(kPhotoControlLength, photoRatios, kPhotoScale));
            records.append(convert(kVideoControlLength, videoRatios, kVideoScale));
            store(records);
            break;
        }
        case camera_role::kSecondSat: {
            store(convert(kSecondSatControlLength, secondSatRatios, kPhotoScale));
            IMetadata::IEntry flags = meta.entryFor(ZELVAN_CAMERA_SAT_INFO_FLAGS);
            flags.push_back<std::int32_t>(1);
            meta.update(ZELVAN_CAMERA_SAT_INFO_FLAGS, flags);
            break;
        }
        default:
            break;
    }
    return 0;
}
