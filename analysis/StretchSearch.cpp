#include "analysis/StretchSearch.h"

#include <algorithm>
#include <map>

namespace analysis {

namespace {

/// Bytes of the first stretches, where `step` is not more.
constexpr std::size_t kFirstStretch = 1024;

/// Effects that as many stretches have are common.
constexpr std::size_t kManyStretches = 8;

}  // namespace

StretchSearch::StretchSearch(std::size_t size, std::size_t step) : mStep(step), mDone(size == 0) {
    // Halves of the first stretches come down to the step itself.
    std::size_t first = step;
    while (first * 2 <= kFirstStretch) {
        first *= 2;
    }
    for (std::size_t at = 0; at < size; at += first) {
        mSegments.push_back({.bytes = {at, std::min(first, size - at)}, .effects = {}});
    }
}

std::vector<Stretch> StretchSearch::next() {
    std::vector<Stretch> stretches;
    if (mMissing > 0 || mDone) {
        return stretches;
    }
    std::vector<Segment> segments;
    const std::vector<bool> halve = mBegun ? toHalve() : std::vector<bool>(mSegments.size());
    mSettled = 0;
    for (std::size_t i = 0; i < mSegments.size(); ++i) {
        const Stretch& bytes = mSegments[i].bytes;
        if (!mBegun) {
            stretches.push_back(bytes);
            segments.push_back(mSegments[i]);
        } else if (halve[i]) {
            // The first part is a power of two times the step, so that both come down to it.
            std::size_t half = bytes.count > mStep ? mStep : 1;
            while (half * 2 < bytes.count) {
                half *= 2;
            }
            stretches.push_back({bytes.first, half});
            stretches.push_back({bytes.first + half, bytes.count - half});
            segments.push_back({.bytes = stretches[stretches.size() - 2], .effects = {}});
            segments.push_back({.bytes = stretches.back(), .effects = {}});
        } else {
            segments.push_back({.bytes = bytes, .effects = mSegments[i].effects, .open = false});
            mSettled += bytes.count;
        }
    }
    mSegments = std::move(segments);
    mBegun = true;
    mMissing = stretches.size();
    mDone = stretches.empty();
    return stretches;
}

void StretchSearch::take(const Stretch& stretch, std::size_t effects) {
    const auto segment =
        std::lower_bound(mSegments.begin(), mSegments.end(), stretch.first,
                         [](const Segment& other, std::size_t first) { return other.bytes.first < first; });
    if (segment != mSegments.end() && segment->bytes == stretch && !segment->effects) {
        segment->effects = effects;
        --mMissing;
    }
}

std::vector<bool> StretchSearch::toHalve() const {
    std::map<std::size_t, std::size_t> bytesWith;
    for (const Segment& segment : mSegments) {
        if (segment.bytes.count <= mStep) {
            bytesWith[*segment.effects] += segment.bytes.count;
        }
    }
    std::vector<bool> halve(mSegments.size());
    for (std::size_t i = 0; i < mSegments.size(); ++i) {
        const Segment& segment = mSegments[i];
        const auto isLikeThis = [&](std::size_t other) {
            return mSegments[other].effects == segment.effects && mSegments[other].bytes.count <= mStep;
        };
        const bool common = segment.bytes.count <= mStep &&
                            bytesWith[*segment.effects] >= kManyStretches * mStep && i > 0 &&
                            i + 1 < mSegments.size() && isLikeThis(i - 1) && isLikeThis(i + 1);
        halve[i] = segment.bytes.count > 1 && *segment.effects != 0 && !common;
    }
    return halve;
}

std::vector<Range> StretchSearch::ranges() const {
    std::vector<Range> ranges;
    for (const Segment& segment : mSegments) {
        const Range range{.bytes = segment.bytes,
                          .effects = segment.effects.value_or(0),
                          .tried = segment.bytes.count,
                          .open = !mDone && segment.open};
        if (ranges.empty() || ranges.back().effects != range.effects || ranges.back().open != range.open) {
            ranges.push_back(range);
        } else {
            ranges.back().bytes.count += range.bytes.count;
            ranges.back().tried = std::max(ranges.back().tried, range.tried);
        }
    }
    return ranges;
}

}  // namespace analysis
