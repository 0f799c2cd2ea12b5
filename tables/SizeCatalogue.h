#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "tables/StreamFormats.h"

/// The picture sizes that this phone's cameras announce, and the rules by which a sensor takes them.
namespace tables {

/// One row of a size catalogue: pixels and nanoseconds. A minimum frame duration of 0 is derived from the
/// area.
struct SizeCatalogueEntry {
    std::int64_t width;
    std::int64_t height;
    std::int64_t jpegMinFrameDuration = 0;
    std::int64_t yuvMinFrameDuration = 0;
    std::int64_t jpegStallDuration = FRAME_DURATION_30_FPS;

    constexpr std::int64_t area() const { return width * height; }
    constexpr bool sameSize(const SizeCatalogueEntry& other) const {
        return width == other.width && height == other.height;
    }
};

/// A catalogue merged from others: descending by area, rows of equal area in the order of their sources.
/// Of neighbours of the same size only the first stays. Equal sizes that a different size of the same area
/// separates (4096x2304 and 3072x3072 alternate) stand twice, and both stay.
template <std::size_t Capacity>
class MergedSizeCatalogue {
  public:
    template <std::size_t HeadSize, std::size_t TailSize>
    constexpr MergedSizeCatalogue(const std::array<SizeCatalogueEntry, HeadSize>& head,
                                  const std::array<SizeCatalogueEntry, TailSize>& tail) {
        static_assert(HeadSize + TailSize == Capacity);
        for (const SizeCatalogueEntry& row : head) {
            insert(row);
        }
        for (const SizeCatalogueEntry& row : tail) {
            insert(row);
        }
        removeAdjacentDuplicates();
    }

    constexpr const SizeCatalogueEntry* begin() const { return mRows.data(); }
    constexpr const SizeCatalogueEntry* end() const { return mRows.data() + mSize; }
    constexpr std::size_t size() const { return mSize; }

  private:
    /// Insertion behind the rows of equal area keeps the order stable.
    constexpr void insert(const SizeCatalogueEntry& row) {
        std::size_t at = mSize++;
        for (; at > 0 && mRows[at - 1].area() < row.area(); --at) {
            mRows[at] = mRows[at - 1];
        }
        mRows[at] = row;
    }

    constexpr void removeAdjacentDuplicates() {
        const auto sameSize = [](const SizeCatalogueEntry& left, const SizeCatalogueEntry& right) {
            return left.sameSize(right);
        };
        mSize = static_cast<std::size_t>(std::unique(mRows.begin(), mRows.begin() + mSize, sameSize) -
                                         mRows.begin());
    }

    std::array<SizeCatalogueEntry, Capacity> mRows{};
    std::size_t mSize = 0;
};

template <std::size_t HeadSize, std::size_t TailSize>
MergedSizeCatalogue(const std::array<SizeCatalogueEntry, HeadSize>&,
                    const std::array<SizeCatalogueEntry, TailSize>&)
    -> MergedSizeCatalogue<HeadSize + TailSize>;

namespace size_catalogue {

inline constexpr std::int64_t k20Fps = FRAME_DURATION_20_FPS;
inline constexpr std::int64_t k30Fps = FRAME_DURATION_30_FPS;
inline constexpr std::int64_t k60Fps = FRAME_DURATION_60_FPS;

/// Head of the catalogue with durations.
inline constexpr std::array<SizeCatalogueEntry, 16> kDurationHead = {{
    {4096, 3072, k20Fps, k20Fps},
    {4096, 2304, k30Fps, k30Fps},
    {4000, 1800, k20Fps, k20Fps},
    {3072, 3072, k20Fps, k20Fps},
    {4000, 3000, k20Fps, k20Fps},
    {3968, 2232, k20Fps, k20Fps},
    {4000, 1800, k20Fps, k20Fps},
    {3000, 3000, k20Fps, k20Fps},
    {2592, 1944, k20Fps, k20Fps},
    {2560, 1440, k30Fps, k30Fps},
    {2560, 1152, k30Fps, k30Fps},
    {1952, 1952, k20Fps, k20Fps},
    {4096, 3072, k20Fps, k30Fps},
    {4096, 2304, k20Fps, k30Fps},
    {4000, 1800, k20Fps, k30Fps},
    {3072, 3072, k20Fps, k30Fps},
}};

/// Head of the vendor's catalogue, where only the sizes count. Its 1944x1944 stands for 1952x1952 above.
inline constexpr std::array<SizeCatalogueEntry, 16> kVendorHead = {{
    {4096, 3072},
    {4096, 2304},
    {4000, 1800},
    {3072, 3072},
    {4000, 3000},
    {3968, 2232},
    {4000, 1800},
    {3000, 3000},
    {2592, 1944},
    {2560, 1440},
    {2560, 1152},
    {1944, 1944},
    {4096, 3072},
    {4096, 2304},
    {4000, 1800},
    {3072, 3072},
}};

/// The sizes that both share.
inline constexpr std::array<SizeCatalogueEntry, 35> kCommon = {{
    {3424, 2568, k30Fps, k30Fps}, {3328, 1872, k30Fps, k30Fps}, {3200, 1440, k30Fps, k30Fps},
    {2880, 2160, k30Fps, k30Fps}, {2816, 1584, k30Fps, k30Fps}, {2880, 1296, k30Fps, k30Fps},
    {1280, 576, k30Fps, k30Fps},  {3840, 2160, k30Fps, k30Fps}, {2560, 1920, k30Fps, k30Fps},
    {2560, 1440, k30Fps, k30Fps}, {2448, 2448, k30Fps, k30Fps}, {2400, 1080, k30Fps, k30Fps},
    {2340, 1080, k30Fps, k30Fps}, {1920, 1440, k30Fps, k30Fps}, {1920, 1152, k30Fps, k30Fps},
    {1920, 1088, k30Fps, k30Fps}, {1920, 1080, k30Fps, k60Fps}, {1600, 1200, k30Fps, k30Fps},
    {1600, 720, k30Fps, k30Fps},  {1440, 1088, k30Fps, k30Fps}, {1440, 1080, k30Fps, k60Fps},
    {1440, 720, k30Fps, k30Fps},  {1280, 960, k30Fps, k30Fps},  {1280, 720, k30Fps, k60Fps},
    {1080, 1080, k30Fps, k30Fps}, {960, 720, k30Fps, k30Fps},   {720, 480, k30Fps, k30Fps},
    {640, 480, k30Fps, k60Fps},   {640, 360, k30Fps, k30Fps},   {352, 288, k30Fps, k30Fps},
    {320, 240, k30Fps, k30Fps},   {192, 144, k30Fps, k30Fps},   {192, 108, k30Fps, k30Fps},
    {176, 144, k30Fps, k30Fps},   {160, 96, k30Fps, k30Fps},
}};

inline constexpr MergedSizeCatalogue kWithDurations{kDurationHead, kCommon};
inline constexpr MergedSizeCatalogue kVendor{kVendorHead, kCommon};

template <typename Catalogue>
constexpr bool IsDescendingByArea(const Catalogue& catalogue) {
    return std::is_sorted(catalogue.begin(), catalogue.end(),
                          [](const auto& left, const auto& right) { return left.area() > right.area(); });
}
static_assert(kWithDurations.size() == 47 && IsDescendingByArea(kWithDurations));
static_assert(kVendor.size() == 47 && IsDescendingByArea(kVendor));

}  // namespace size_catalogue

/// The size whose sensor mode makes a camera an 8K one.
constexpr bool Is8K(std::int64_t width, std::int64_t height) {
    return width == 7680 && height == 4320;
}

constexpr bool FitsSensor(const SizeCatalogueEntry& row, std::int64_t maxWidth, std::int64_t maxHeight) {
    return row.width <= maxWidth && row.height <= maxHeight;
}

/// JPEG is offered in 8K only by a sensor with an 8K mode.
constexpr bool TakesJpeg(const SizeCatalogueEntry& row, std::int64_t maxWidth, std::int64_t maxHeight,
                         bool allow8k) {
    return FitsSensor(row, maxWidth, maxHeight) || (allow8k && Is8K(row.width, row.height));
}

/// YUV in 8K asks for no 8K mode of the sensor: it may be scaled up.
constexpr bool TakesYuv(const SizeCatalogueEntry& row, std::int64_t maxWidth, std::int64_t maxHeight) {
    return FitsSensor(row, maxWidth, maxHeight) || Is8K(row.width, row.height);
}

/// Area of 3840x2160, up to which a camera keeps 30 frames a second.
inline constexpr std::int64_t kFullRateArea = 8'294'400;

/// JPEG encoding falls back to 20 frames a second at that area already, YUV only beyond it.
constexpr std::int64_t JpegMinFrameDuration(const SizeCatalogueEntry& row) {
    if (row.jpegMinFrameDuration != 0) {
        return row.jpegMinFrameDuration;
    }
    return row.area() < kFullRateArea ? FRAME_DURATION_30_FPS : FRAME_DURATION_20_FPS;
}

constexpr std::int64_t YuvMinFrameDuration(const SizeCatalogueEntry& row) {
    if (row.yuvMinFrameDuration != 0) {
        return row.yuvMinFrameDuration;
    }
    return row.area() <= kFullRateArea ? FRAME_DURATION_30_FPS : FRAME_DURATION_20_FPS;
}

}  // namespace tables
