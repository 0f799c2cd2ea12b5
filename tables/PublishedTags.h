#pragma once

#include <cstdint>
#include <span>

/// Every tag that the plug-in publishes.

/// What the items of a tag are.
enum class TagItemType { None, Int32, Int64, Float, Byte, Memory };

// Android's own, with the numbers of its metadata definitions.
inline constexpr std::uint32_t ANDROID_JPEG_MAX_SIZE = 0x70008;
inline constexpr std::uint32_t ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS = 0xD000A;
inline constexpr std::uint32_t ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS = 0xD000B;
inline constexpr std::uint32_t ANDROID_SCALER_AVAILABLE_STALL_DURATIONS = 0xD000C;
/// The platform's source list of the three tags above.
inline constexpr std::uint32_t SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS = 0xD001A;

// Roles and module memory.
inline constexpr std::uint32_t ZELVAN_CAMERA_ROLEID = 0x91010021;
inline constexpr std::uint32_t ZELVAN_CAMERA_MEMBER_ROLEIDS = 0x91010092;
inline constexpr std::uint32_t ZELVAN_CAMERA_CHECKSUM_RESULT = 0x910100A1;

// Calibration.
inline constexpr std::uint32_t ZELVAN_BOKEH_CALIBRATION_DATA = 0x91010005;
inline constexpr std::uint32_t ZELVAN_CALIBTOOL_TYPE = 0x91010022;
inline constexpr std::uint32_t ZELVAN_CALIBTOOL_FILE_NAME = 0x91010023;
inline constexpr std::uint32_t ZELVAN_CALIBTOOL_SENSOR_DRV_VALUES = 0x91010024;
inline constexpr std::uint32_t ZELVAN_SAT_CALIBRATION_DATA = 0x91010041;

// Streams.
inline constexpr std::uint32_t ZELVAN_SCALER_CONFIGURED = 0x91010001;
inline constexpr std::uint32_t ZELVAN_SCALER_SUPER_RESOLUTION_MAIN = 0x9101001C;
inline constexpr std::uint32_t ZELVAN_SCALER_STREAM_CONFIGURATIONS = 0x9101001D;
inline constexpr std::uint32_t ZELVAN_SCALER_SUPER_RESOLUTION_STREAM_CONFIGURATIONS = 0x9101001E;
inline constexpr std::uint32_t ZELVAN_SCALER_BINNING_FACTOR = 0x9101004C;

// Zoom.
inline constexpr std::uint32_t ZELVAN_CAMERA_INSENSOR_ZOOM_MODES = 0x91010002;
inline constexpr std::uint32_t ZELVAN_CAMERA_FAKESAT_FAKESATSIZE = 0x91010004;
inline constexpr std::uint32_t ZELVAN_CAMERA_SMARTFOV_ZOOM_RATIO = 0x91010086;
inline constexpr std::uint32_t ZELVAN_CAMERA_SAT_ZOOM_INFO = 0x9101008E;
inline constexpr std::uint32_t ZELVAN_CAMERA_SAT_INFO_FLAGS = 0x9101009C;

// Bokeh. The pair tags have two numberings: this one, and one for the bokeh device whose master is the wide.
inline constexpr std::uint32_t ZELVAN_CAMERA_BOKEHINFO_MASTERCAMERAID = 0x910000AB;
inline constexpr std::uint32_t ZELVAN_CAMERA_BOKEHINFO_SLAVECAMERAID = 0x910000AC;
inline constexpr std::uint32_t ZELVAN_CAMERA_BOKEHINFO_MASTEROPTSIZE = 0x910000AD;
inline constexpr std::uint32_t ZELVAN_CAMERA_BOKEHINFO_SLAVEOPTSIZE = 0x910000AE;
inline constexpr std::uint32_t ZELVAN_CAMERA_BOKEHINFO_OPTPICTURESIZE = 0x910000AF;
namespace wide_bokeh {
inline constexpr std::uint32_t ZELVAN_CAMERA_BOKEHINFO_MASTERCAMERAID = 0x910000FB;
inline constexpr std::uint32_t ZELVAN_CAMERA_BOKEHINFO_SLAVECAMERAID = 0x910000FC;
inline constexpr std::uint32_t ZELVAN_CAMERA_BOKEHINFO_MASTEROPTSIZE = 0x910000FD;
inline constexpr std::uint32_t ZELVAN_CAMERA_BOKEHINFO_SLAVEOPTSIZE = 0x910000FE;
inline constexpr std::uint32_t ZELVAN_CAMERA_BOKEHINFO_OPTPICTURESIZE = 0x910000FF;
}  // namespace wide_bokeh
inline constexpr std::uint32_t ZELVAN_BOKEH_MDMODE_SUPPORTED = 0x910000E1;
inline constexpr std::uint32_t ZELVAN_BOKEHVENDORID_SUPPORTED = 0x9101003D;
inline constexpr std::uint32_t ZELVAN_SUPERNIGHT_SUPPORT_MASK = 0x9101004E;

// Video.
inline constexpr std::uint32_t ZELVAN_VIDEO_TRACK_AF_QUALITY_DATA = 0x910000E5;
inline constexpr std::uint32_t ZELVAN_HDHDR_SUPPORTED = 0x91010003;
inline constexpr std::uint32_t ZELVAN_VIDEO_STABILIZATION_DATA = 0x91010017;
inline constexpr std::uint32_t ZELVAN_VN_QUALITY_DATA = 0x91010033;
inline constexpr std::uint32_t ZELVAN_VIDEO_STABILIZATION_SUPPORTED = 0x9101004A;

// Beauty, focal length and photo style.
inline constexpr std::uint32_t ZELVAN_BEAUTY_MAKEUP = 0x9101000C;
inline constexpr std::uint32_t ZELVAN_BEAUTY_VERSION = 0x9101000E;
inline constexpr std::uint32_t ZELVAN_CAMERA_CIQLUT_CONFIG_MAKS = 0x9101003C;
inline constexpr std::uint32_t ZELVAN_FOCAL_LENGTH_35MM = 0x9101004D;
inline constexpr std::uint32_t ZELVAN_CUSTOM_QUALITY_SUPPORTED = 0x9101005F;
inline constexpr std::uint32_t ZELVAN_BEAUTY_OPTIONCONFIG = 0x91010063;

/// What is known of a published tag.
struct PublishedTag {
    std::uint32_t tag;
    TagItemType type;  ///< of its items
    const char* name;
};

/// All published tags in ascending order.
std::span<const PublishedTag> PublishedTags();

/// The row of a tag, or null for a tag that the plug-in does not publish.
const PublishedTag* FindPublishedTag(std::uint32_t tag);
