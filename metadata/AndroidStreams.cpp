#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "metadata/StreamList.h"
#include "platform/IMetadata.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Entry.h"
#include "platforminfo/Operation.h"
#include "tables/PublishedTags.h"
#include "tables/SizeCatalogue.h"
#include "tables/StreamFormats.h"

using NSCam::IMetadata;

namespace {

/// Items of a tuple: format, width, height, direction (or duration).
constexpr std::size_t kTupleSize = 4;
/// Items of a tuple with durations: the four above, minimum frame duration, stall duration.
constexpr std::size_t kDurationTupleSize = 6;

void PushDuration(IMetadata::IEntry& entry, std::int64_t format, std::int64_t width, std::int64_t height,
                  std::int64_t duration) {
    entry.push_back(format);
    entry.push_back(width);
    entry.push_back(height);
    entry.push_back(duration);
}

}  // namespace

void CameraPlatformInfoZelvan::pushAvailableStream(IMetadata::IEntry& entry, std::int64_t format,
                                                   std::int64_t width, std::int64_t height,
                                                   std::int64_t direction) {
    entry.push_back<std::int64_t, std::int32_t>(format);
    entry.push_back<std::int64_t, std::int32_t>(width);
    entry.push_back<std::int64_t, std::int32_t>(height);
    entry.push_back<std::int64_t, std::int32_t>(direction);
}

void CameraPlatformInfoZelvan::pushAvailableStreamWithDuration(IMetadata::IEntry& entry, std::int64_t format,
                                                               std::int64_t width, std::int64_t height,
                                                               std::int64_t direction,
                                                               std::int64_t minFrameDuration,
                                                               std::int64_t stallDuration) {
    entry.push_back(format);
    entry.push_back(width);
    entry.push_back(height);
    entry.push_back(direction);
    entry.push_back(minFrameDuration);
    entry.push_back(stallDuration);
}

template <typename Item>
void CameraPlatformInfoZelvan::converter<Item>::copy(const Item& src, const Item& dst,
                                                     IMetadata::IEntry& entry) {
    // The count is asked again for each step: what is appended is visited, and what the platform dropped is
    // not.
    for (std::size_t i = 0; i < entry.count(); i += kTupleSize) {
        if (entry.itemAt<Item>(i) != src) {
            continue;
        }
        // In a list of durations the fourth item is no direction, but no duration is a single nanosecond.
        const Item last = entry.itemAt<Item>(i + 3);
        if (last != STREAM_INPUT) {
            entry.push_back(dst);
            entry.push_back(entry.itemAt<Item>(i + 1));
            entry.push_back(entry.itemAt<Item>(i + 2));
            entry.push_back(last);
        }
    }
}

static_assert(std::is_same_v<long, std::int64_t>, "64-bit items are converted as long");
template struct CameraPlatformInfoZelvan::converter<int>;
template struct CameraPlatformInfoZelvan::converter<long>;

void CameraPlatformInfoZelvan::updateStreamConfigurationWithDuration(IMetadata& meta, int maxWidth,
                                                                     int maxHeight, int allow8k) {
    const Operation self(__func__);
    constexpr std::int64_t kFullSizeDuration = FRAME_DURATION_20_FPS;
    constexpr std::int64_t kFullSizeStall = FRAME_DURATION_30_FPS;
    const auto& catalogue = tables::size_catalogue::kWithDurations;

    IMetadata::IEntry entry(SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS);
    pushAvailableStreamWithDuration(entry, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, maxWidth, maxHeight,
                                    STREAM_INPUT, kFullSizeDuration, kFullSizeStall);
    pushAvailableStreamWithDuration(entry, HAL_PIXEL_FORMAT_YCBCR_420_888, maxWidth, maxHeight, STREAM_INPUT,
                                    kFullSizeDuration, kFullSizeStall);
    pushAvailableStreamWithDuration(entry, HAL_PIXEL_FORMAT_RAW16, maxWidth, maxHeight, STREAM_OUTPUT,
                                    kFullSizeDuration, kFullSizeStall);
    for (const tables::SizeCatalogueEntry& row : catalogue) {
        if (TakesJpeg(row, maxWidth, maxHeight, allow8k != 0)) {
            pushAvailableStreamWithDuration(entry, HAL_PIXEL_FORMAT_BLOB, row.width, row.height,
                                            STREAM_OUTPUT, JpegMinFrameDuration(row), row.jpegStallDuration);
        }
    }
    for (const tables::SizeCatalogueEntry& row : catalogue) {
        if (TakesYuv(row, maxWidth, maxHeight)) {
            pushAvailableStreamWithDuration(entry, HAL_PIXEL_FORMAT_YCBCR_420_888, row.width, row.height,
                                            STREAM_OUTPUT, YuvMinFrameDuration(row), 0);
        }
    }
    self.update(meta, entry);
}

void CameraPlatformInfoZelvan::updateStreamConfiguration(IMetadata& meta) {
    IMetadata::IEntry streams(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS);
    IMetadata::IEntry minFrameDurations(ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS);
    IMetadata::IEntry stallDurations(ANDROID_SCALER_AVAILABLE_STALL_DURATIONS);

    const IMetadata::IEntry source = meta.entryFor(SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS);
    const std::size_t count = source.count();
    for (std::size_t i = 0; i < count; i += kDurationTupleSize) {
        const auto format = source.itemAt<std::int64_t>(i);
        const auto width = source.itemAt<std::int64_t>(i + 1);
        const auto height = source.itemAt<std::int64_t>(i + 2);
        const auto direction = source.itemAt<std::int64_t>(i + 3);
        pushAvailableStream(streams, format, width, height, direction);
        if (direction == STREAM_OUTPUT) {
            PushDuration(minFrameDurations, format, width, height, source.itemAt<std::int64_t>(i + 4));
            PushDuration(stallDurations, format, width, height, source.itemAt<std::int64_t>(i + 5));
        }
    }
    pushAvailableStream(streams, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, 1920, 1080, STREAM_INPUT);

    meta.update(streams.tag(), streams);
    meta.update(minFrameDurations.tag(), minFrameDurations);
    meta.update(stallDurations.tag(), stallDurations);
    for (const std::int64_t format : {HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, HAL_PIXEL_FORMAT_YV12}) {
        DuplicateFormat<int>(meta, streams.tag(), HAL_PIXEL_FORMAT_YCBCR_420_888, format);
        DuplicateFormat<long>(meta, minFrameDurations.tag(), HAL_PIXEL_FORMAT_YCBCR_420_888, format);
        DuplicateFormat<long>(meta, stallDurations.tag(), HAL_PIXEL_FORMAT_YCBCR_420_888, format);
    }
}

void CameraPlatformInfoZelvan::updateMaxJpegSizeConfiguration(IMetadata& meta, int width, int height) {
    const Operation self(__func__);
    // One and a half bytes a pixel. The product wraps at 32 bits and is divided as a signed number.
    const std::uint32_t product =
        static_cast<std::uint32_t>(width) * static_cast<std::uint32_t>(height) * 15U;
    const std::int32_t maxSize = static_cast<std::int32_t>(product) / 10;
    self.update(meta, MakeEntry<std::int32_t>(ANDROID_JPEG_MAX_SIZE, {maxSize}));
}
