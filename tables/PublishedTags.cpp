#include "tables/PublishedTags.h"

#include <algorithm>
#include <iterator>

// The number and the text of a name from one spelling.
#define TAG(constant, itemType) \
    { .tag = (constant), .type = TagItemType::itemType, .name = #constant }
#define WIDE_BOKEH_TAG(constant, itemType) \
    { .tag = wide_bokeh::constant, .type = TagItemType::itemType, .name = #constant }

namespace {

constexpr PublishedTag kTable[] = {
    TAG(ANDROID_JPEG_MAX_SIZE, Int32),
    TAG(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS, Int32),
    TAG(ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS, Int64),
    TAG(ANDROID_SCALER_AVAILABLE_STALL_DURATIONS, Int64),
    TAG(SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS, Int64),
    TAG(ZELVAN_CAMERA_BOKEHINFO_MASTERCAMERAID, Byte),
    TAG(ZELVAN_CAMERA_BOKEHINFO_SLAVECAMERAID, Byte),
    TAG(ZELVAN_CAMERA_BOKEHINFO_MASTEROPTSIZE, Int32),
    TAG(ZELVAN_CAMERA_BOKEHINFO_SLAVEOPTSIZE, Int32),
    TAG(ZELVAN_CAMERA_BOKEHINFO_OPTPICTURESIZE, Int32),
    TAG(ZELVAN_BOKEH_MDMODE_SUPPORTED, Byte),
    TAG(ZELVAN_VIDEO_TRACK_AF_QUALITY_DATA, Int32),
    WIDE_BOKEH_TAG(ZELVAN_CAMERA_BOKEHINFO_MASTERCAMERAID, Byte),
    WIDE_BOKEH_TAG(ZELVAN_CAMERA_BOKEHINFO_SLAVECAMERAID, Byte),
    WIDE_BOKEH_TAG(ZELVAN_CAMERA_BOKEHINFO_MASTEROPTSIZE, Int32),
    WIDE_BOKEH_TAG(ZELVAN_CAMERA_BOKEHINFO_SLAVEOPTSIZE, Int32),
    WIDE_BOKEH_TAG(ZELVAN_CAMERA_BOKEHINFO_OPTPICTURESIZE, Int32),
    TAG(ZELVAN_SCALER_CONFIGURED, Int32),
    TAG(ZELVAN_CAMERA_INSENSOR_ZOOM_MODES, Int32),
    TAG(ZELVAN_HDHDR_SUPPORTED, Int32),
    TAG(ZELVAN_CAMERA_FAKESAT_FAKESATSIZE, Memory),
    TAG(ZELVAN_BOKEH_CALIBRATION_DATA, Memory),
    TAG(ZELVAN_BEAUTY_MAKEUP, Byte),
    TAG(ZELVAN_BEAUTY_VERSION, Byte),
    TAG(ZELVAN_VIDEO_STABILIZATION_DATA, Int32),
    TAG(ZELVAN_SCALER_SUPER_RESOLUTION_MAIN, Byte),
    TAG(ZELVAN_SCALER_STREAM_CONFIGURATIONS, Int32),
    TAG(ZELVAN_SCALER_SUPER_RESOLUTION_STREAM_CONFIGURATIONS, Int32),
    TAG(ZELVAN_CAMERA_ROLEID, Int32),
    TAG(ZELVAN_CALIBTOOL_TYPE, Byte),
    TAG(ZELVAN_CALIBTOOL_FILE_NAME, Byte),
    TAG(ZELVAN_CALIBTOOL_SENSOR_DRV_VALUES, Int32),
    TAG(ZELVAN_VN_QUALITY_DATA, Int32),
    TAG(ZELVAN_CAMERA_CIQLUT_CONFIG_MAKS, Int32),
    TAG(ZELVAN_BOKEHVENDORID_SUPPORTED, Int32),
    TAG(ZELVAN_SAT_CALIBRATION_DATA, Memory),
    TAG(ZELVAN_VIDEO_STABILIZATION_SUPPORTED, Byte),
    TAG(ZELVAN_SCALER_BINNING_FACTOR, Int32),
    TAG(ZELVAN_FOCAL_LENGTH_35MM, Float),
    TAG(ZELVAN_SUPERNIGHT_SUPPORT_MASK, Int32),
    TAG(ZELVAN_CUSTOM_QUALITY_SUPPORTED, Byte),
    TAG(ZELVAN_BEAUTY_OPTIONCONFIG, Int32),
    TAG(ZELVAN_CAMERA_SMARTFOV_ZOOM_RATIO, Float),
    TAG(ZELVAN_CAMERA_SAT_ZOOM_INFO, Memory),
    TAG(ZELVAN_CAMERA_MEMBER_ROLEIDS, Int32),
    TAG(ZELVAN_CAMERA_SAT_INFO_FLAGS, Int32),
    TAG(ZELVAN_CAMERA_CHECKSUM_RESULT, Int32),
};

constexpr bool Before(const PublishedTag& left, const PublishedTag& right) {
    return left.tag < right.tag;
}

static_assert(std::is_sorted(std::begin(kTable), std::end(kTable), Before));

}  // namespace

std::span<const PublishedTag> PublishedTags() {
    return kTable;
}

const PublishedTag* FindPublishedTag(std::uint32_t tag) {
    const auto found =
        std::lower_bound(std::begin(kTable), std::end(kTable), tag,
                         [](const PublishedTag& row, std::uint32_t wanted) { return row.tag < wanted; });
    return found == std::end(kTable) || found->tag != tag ? nullptr : found;
}
