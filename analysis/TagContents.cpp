#include "analysis/TagContents.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <tuple>

#include "tables/PublishedTags.h"
#include "tables/StreamFormats.h"

namespace analysis {

namespace {

struct Named {
    std::int64_t number;
    std::string_view name;
};

constexpr std::array<Named, 7> kFormats = {{
    {HAL_PIXEL_FORMAT_RAW16, "RAW16"},
    {HAL_PIXEL_FORMAT_BLOB, "BLOB"},
    {HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, "IMPLEMENTATION_DEFINED"},
    {HAL_PIXEL_FORMAT_YCBCR_420_888, "YCBCR_420_888"},
    {HAL_PIXEL_FORMAT_RAW10, "RAW10"},
    {HAL_PIXEL_FORMAT_YV12, "YV12"},
    {HAL_PIXEL_FORMAT_Y16, "Y16"},
}};

/// As applications call them.
constexpr std::array<Named, 6> kFormatAliases = {{
    {HAL_PIXEL_FORMAT_BLOB, "JPEG"},
    {HAL_PIXEL_FORMAT_YCBCR_420_888, "YUV"},
    {HAL_PIXEL_FORMAT_YCBCR_420_888, "YUV_420_888"},
    {HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, "PRIVATE"},
    {HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, "IMPL_DEFINED"},
    {HAL_PIXEL_FORMAT_RAW16, "RAW"},
}};

/// How the numbers of a stream list are grouped.
enum class RowShape { None, Direction, Duration, Stall, DirectionAndBoth };

RowShape ShapeOf(std::uint32_t tag) {
    switch (tag) {
        case ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS:
        case ZELVAN_SCALER_STREAM_CONFIGURATIONS:
        case ZELVAN_SCALER_SUPER_RESOLUTION_STREAM_CONFIGURATIONS:
            return RowShape::Direction;
        case ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS:
            return RowShape::Duration;
        case ANDROID_SCALER_AVAILABLE_STALL_DURATIONS:
            return RowShape::Stall;
        case SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS:
            return RowShape::DirectionAndBoth;
        default:
            return RowShape::None;
    }
}

StreamRow MakeRow(RowShape shape, std::span<const std::int64_t> numbers) {
    StreamRow row{.format = numbers[0],
                  .width = numbers[1],
                  .height = numbers[2],
                  .direction = {},
                  .minDuration = {},
                  .stall = {}};
    if (shape == RowShape::Duration) {
        row.minDuration = numbers[3];
    } else if (shape == RowShape::Stall) {
        row.stall = numbers[3];
    } else {
        row.direction = numbers[3];
        if (shape == RowShape::DirectionAndBoth) {
            row.minDuration = numbers[4];
            row.stall = numbers[5];
        }
    }
    return row;
}

std::vector<std::int64_t> Numbers(const record::TagValues& values) {
    const std::span<const std::int32_t> narrow = values.as<std::int32_t>();
    const std::span<const std::int64_t> wide = values.as<std::int64_t>();
    return wide.empty() ? std::vector<std::int64_t>(narrow.begin(), narrow.end())
                        : std::vector<std::int64_t>(wide.begin(), wide.end());
}

/// The one blob of a tag; null for any other tag or shape.
const record::Blob* OneBlob(const record::Tag& tag, std::uint32_t wanted) {
    const std::span<const record::Blob> blobs = tag.values.as<record::Blob>();
    return tag.tag == wanted && blobs.size() == 1 ? &blobs[0] : nullptr;
}

/// The records of a blob, by their reader; none where the blob ends in the middle of one.
template <typename Record>
std::vector<Record> RecordsOf(const record::Blob* blob,
                              std::vector<Record> (*read)(std::span<const std::uint8_t>)) {
    return blob == nullptr || blob->size() % sizeof(Record) != 0 ? std::vector<Record>() : read(*blob);
}

bool SameIgnoringCase(std::string_view left, std::string_view right) {
    const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [=](char a, char b) { return upper(a) == upper(b); });
}

}  // namespace

std::optional<std::vector<StreamRow>> StreamRowsOf(const record::Tag& tag) {
    const RowShape shape = ShapeOf(tag.tag);
    const std::size_t width = shape == RowShape::DirectionAndBoth ? 6 : 4;
    const std::vector<std::int64_t> numbers = Numbers(tag.values);
    if (shape == RowShape::None || numbers.size() != tag.values.count() || numbers.size() % width != 0) {
        return std::nullopt;
    }
    std::vector<StreamRow> rows;
    for (std::size_t i = 0; i < numbers.size(); i += width) {
        rows.push_back(MakeRow(shape, std::span(numbers).subspan(i, width)));
    }
    return rows;
}

double AreaOf(const StreamRow& row) {
    return static_cast<double>(row.width) * static_cast<double>(row.height);
}

std::vector<OfferedStream> OfferedStreamsOf(const record::TagSet& metadata) {
    using Size = std::tuple<std::int64_t, std::int64_t, std::int64_t>;
    std::map<Size, std::vector<std::int64_t>> durations;
    std::map<Size, std::vector<std::int64_t>> stalls;
    std::vector<StreamRow> rows;
    for (const record::Tag& tag : metadata) {
        const RowShape shape = ShapeOf(tag.tag);
        if (tag.tag != ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS && shape != RowShape::Duration &&
            shape != RowShape::Stall) {
            continue;
        }
        for (const StreamRow& row : StreamRowsOf(tag).value_or(std::vector<StreamRow>())) {
            const Size size = {row.format, row.width, row.height};
            if (row.minDuration) {
                durations[size].push_back(*row.minDuration);
            } else if (row.stall) {
                stalls[size].push_back(*row.stall);
            } else {
                rows.push_back(row);
            }
        }
    }
    std::map<Size, std::size_t> outputs;
    std::map<std::pair<Size, std::int64_t>, std::size_t> seen;
    std::vector<OfferedStream> offered;
    for (const StreamRow& row : rows) {
        const Size size = {row.format, row.width, row.height};
        OfferedStream& stream = offered.emplace_back(OfferedStream{.row = row});
        stream.again = seen[{size, row.direction.value_or(0)}]++ > 0;
        if (row.direction == STREAM_OUTPUT) {
            const std::size_t at = outputs[size]++;
            const auto take = [&](const std::vector<std::int64_t>& from) {
                return at < from.size() ? std::optional(from[at]) : std::nullopt;
            };
            stream.row.minDuration = take(durations[size]);
            stream.row.stall = take(stalls[size]);
        }
    }
    return offered;
}

std::string FormatName(std::int64_t format) {
    const auto* const found = std::find_if(kFormats.begin(), kFormats.end(),
                                           [=](const Named& row) { return row.number == format; });
    return found == kFormats.end() ? std::to_string(format) : std::string(found->name);
}

std::optional<std::int64_t> FormatNamed(std::string_view name) {
    const auto isNamed = [=](const Named& row) { return SameIgnoringCase(row.name, name); };
    if (const auto* const found = std::find_if(kFormats.begin(), kFormats.end(), isNamed);
        found != kFormats.end()) {
        return found->number;
    }
    if (const auto* const found = std::find_if(kFormatAliases.begin(), kFormatAliases.end(), isNamed);
        found != kFormatAliases.end()) {
        return found->number;
    }
    const bool hexadecimal = name.starts_with("0x");
    const std::string_view digits = name.substr(hexadecimal ? 2 : 0);
    std::int64_t number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, hexadecimal ? 16 : 10);
    return error == std::errc() && end == digits.data() + digits.size() ? std::optional(number)
                                                                        : std::nullopt;
}

std::vector<std::string> FormatNames() {
    std::vector<std::string> names;
    for (const std::span<const Named> rows :
         {std::span<const Named>(kFormats), std::span<const Named>(kFormatAliases)}) {
        for (const Named& row : rows) {
            names.emplace_back(row.name);
        }
    }
    return names;
}

std::string DirectionName(std::int64_t direction) {
    return direction == STREAM_OUTPUT  ? "OUTPUT"
           : direction == STREAM_INPUT ? "INPUT"
                                       : std::to_string(direction);
}

std::optional<SatPayload> SatPayloadOf(const record::Tag& tag) {
    const record::Blob* const blob = OneBlob(tag, ZELVAN_SAT_CALIBRATION_DATA);
    const auto header = blob == nullptr ? std::nullopt : formats::ParseSatPayloadHeader(*blob);
    if (!header) {
        return std::nullopt;
    }
    return SatPayload{.header = *header,
                      .block = std::span(*blob).subspan(sizeof(formats::SatPayloadHeader))};
}

std::vector<formats::ZoomScaleRecord> ZoomScalesOf(const record::Tag& tag) {
    return RecordsOf(OneBlob(tag, ZELVAN_CAMERA_SAT_ZOOM_INFO), formats::ParseZoomScaleRecords);
}

std::vector<formats::FakeSatSize> FakeSatSizesOf(const record::Tag& tag) {
    return RecordsOf(OneBlob(tag, ZELVAN_CAMERA_FAKESAT_FAKESATSIZE), formats::ParseFakeSatSizes);
}

BlockContent ContentOf(std::span<const std::uint8_t> block) {
    BlockContent content{.size = block.size(), .filledWith = {}};
    if (!block.empty() && std::equal(block.begin() + 1, block.end(), block.begin())) {
        content.filledWith = block[0];
    }
    return content;
}

std::string CalibrationFileNameOf(const record::Tag& tag) {
    const std::span<const std::uint8_t> bytes = tag.values.as<std::uint8_t>();
    return tag.tag == ZELVAN_CALIBTOOL_FILE_NAME
               ? std::string(bytes.begin(), std::find(bytes.begin(), bytes.end(), 0))
               : std::string();
}

}  // namespace analysis
