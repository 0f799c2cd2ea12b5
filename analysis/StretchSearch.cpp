#include "analysis/StretchSearch.h"

#include <algorithm>
#include <map>

namespace analysis {

namespace {

/// Bytes of the first stretches, where `step` is not more.
constexpr std::size_t kFirstStretch = 1024;

/// Effects that as many stretches have are common; of large stretches fewer do, or a large step would cost
/// more than a small one.
constexpr std::size_t kManyStretches = 8;
constexpr std::size_t kManyBytes = 512;

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
    const auto tryNow = [&stretches](const Stretch& bytes) {
        stretches.push_back(bytes);
        return Segment{.bytes = bytes, .effects = {}};
    };
    std::vector<Segment> segments;
    const std::vector<Fate> fate = mBegun ? fates() : std::vector<Fate>(mSegments.size(), Fate::Stays);
    mSettled = 0;
    for (std::size_t i = 0; i < mSegments.size(); ++i) {
        Segment& segment = mSegments[i];
        const Stretch bytes = segment.bytes;
        if (!mBegun) {
            segments.push_back(tryNow(bytes));
        } else if (fate[i] == Fate::Halved) {
            // The first part is a power of two times the step, so that both come down to it.
            std::size_t half = bytes.count > mStep ? mStep : 1;
            while (half * 2 < bytes.count) {
                half *= 2;
            }
            segments.push_back(tryNow({bytes.first, half}));
            segments.push_back(tryNow({bytes.first + half, bytes.count - half}));
        } else {
            if (fate[i] == Fate::TriesLastByte) {
                stretches.push_back({bytes.first + bytes.count - 1, 1});
                segment.lastByte = Segment::LastByte::Trying;
            }
            segment.open = false;
            segments.push_back(segment);
            mSettled += bytes.count;
        }
    }
    mSegments = std::move(segments);
    mBegun = true;
    mMissing = stretches.size();
    mDone = stretches.empty();
    return stretches;
}

std::vector<StretchSearch::Segment>::iterator StretchSearch::segmentWith(std::size_t offset) {
    const auto after = std::upper_bound(
        mSegments.begin(), mSegments.end(), offset,
        [](std::size_t value, const Segment& segment) { return value < segment.bytes.first; });
    return after == mSegments.begin() ? mSegments.end() : after - 1;
}

bool StretchSearch::anyEffectDoes(const Stretch& stretch) const {
    return stretch.count > mStep ||
           std::any_of(mSegments.begin(), mSegments.end(), [&](const Segment& segment) {
               return segment.lastByte == Segment::LastByte::Trying &&
                      segment.bytes.first + segment.bytes.count == stretch.first + stretch.count;
           });
}

void StretchSearch::take(const Stretch& stretch, std::size_t effects) {
    const auto segment = segmentWith(stretch.first);
    if (segment == mSegments.end()) {
        return;
    }
    if (segment->bytes == stretch && !segment->effects) {
        segment->effects = effects;
        --mMissing;
    } else if (segment->lastByte == Segment::LastByte::Trying && stretch.count == 1) {
        segment->lastByte = effects == 0 ? Segment::LastByte::Idle : Segment::LastByte::Counts;
        --mMissing;
    }
}

std::vector<StretchSearch::Fate> StretchSearch::fates() const {
    std::map<std::size_t, std::size_t> bytesWith;
    for (const Segment& segment : mSegments) {
        if (segment.bytes.count <= mStep) {
            bytesWith[*segment.effects] += segment.bytes.count;
        }
    }
    const std::size_t many = std::min(kManyStretches * mStep, kManyBytes);
    std::vector<Fate> fates(mSegments.size(), Fate::Stays);
    for (std::size_t i = 0; i < mSegments.size(); ++i) {
        const Segment& segment = mSegments[i];
        if (segment.bytes.count == 1 || *segment.effects == 0) {
            continue;
        }
        const auto isLikeThis = [&](std::size_t other) {
            return mSegments[other].effects == segment.effects && mSegments[other].bytes.count <= mStep;
        };
        const bool common = segment.bytes.count <= mStep && bytesWith[*segment.effects] >= many && i > 0 &&
                            i + 1 < mSegments.size() && isLikeThis(i - 1) && isLikeThis(i + 1);
        if (!common || segment.lastByte == Segment::LastByte::Idle) {
            fates[i] = Fate::Halved;
        } else if (segment.lastByte == Segment::LastByte::NotTried) {
            fates[i] = Fate::TriesLastByte;
        }
    }
    return fates;
}

std::vector<Range> StretchSearch::ranges() const {
    std::vector<Range> ranges;
    for (const Segment& segment : mSegments) {
        const bool open = !mDone && segment.open;
        const Range range{.bytes = segment.bytes,
                          .effects = open ? 0 : segment.effects.value_or(0),
                          .tried = segment.bytes.count,
                          .open = open};
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
