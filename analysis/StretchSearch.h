#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace analysis {

/// Bytes that are changed at the same time.
struct Stretch {
    std::size_t first = 0;
    std::size_t count = 0;

    friend bool operator==(const Stretch&, const Stretch&) = default;
};

/// Neighbouring bytes with the same effects.
struct Range {
    Stretch bytes;
    std::size_t effects = 0;  ///< the caller's number for them; 0: none, or open
    std::size_t tried = 1;    ///< most bytes of it that were changed at the same time
    bool open = false;        ///< not looked at to the end

    friend bool operator==(const Range&, const Range&) = default;
};

/// Which stretches of some bytes to change in order to find out what each byte does, at a cost that goes with
/// the bytes that matter and not with all bytes.
///
/// Large stretches come first: what does nothing is left, the rest is halved down to stretches of `step`
/// bytes, and on to single bytes. Effects that many stretches have in common, as those of a checksum over
/// kilobytes, are followed to single bytes at their first and last stretch alone; of the stretches between,
/// the last byte is tried, so that a gap is seen that reaches beyond a stretch or ends with one.
///
///     StretchSearch search(image.size(), 16);
///     while (!search.done()) {
///         for (const Stretch& stretch : search.next()) { search.take(stretch, EffectsOf(stretch)); }
///     }
class StretchSearch {
  public:
    /// @param step at least 1.
    StretchSearch(std::size_t size, std::size_t step);

    /// The stretches to try now, each once; empty while results of earlier ones are missing, and at the end.
    std::vector<Stretch> next();

    /// The effects of a stretch that `next` returned.
    /// @param effects a number for them, 0 where there are none.
    void take(const Stretch& stretch, std::size_t effects);

    bool done() const { return mDone; }

    /// Whether it is enough to know if a stretch has an effect: a large one, or the last byte of one.
    bool anyEffectDoes(const Stretch& stretch) const;

    /// Bytes about which nothing more will be asked, as far as is known.
    std::size_t settledBytes() const { return mSettled; }

    /// What is known: all bytes, neighbours with the same effects joined.
    std::vector<Range> ranges() const;

  private:
    struct Segment {
        Stretch bytes;
        std::optional<std::size_t> effects;  ///< none: not tried yet
        bool open = true;
        /// Of a stretch with common effects: whether its last byte was tried by itself, and has an effect.
        enum class LastByte { NotTried, Trying, Counts, Idle } lastByte = LastByte::NotTried;
    };
    enum class Fate { Stays, TriesLastByte, Halved };
    std::vector<Fate> fates() const;
    std::vector<Segment>::iterator segmentWith(std::size_t offset);

    std::size_t mStep;
    std::vector<Segment> mSegments;  ///< all bytes, in order
    std::size_t mMissing = 0;        ///< results
    std::size_t mSettled = 0;
    bool mBegun = false;
    bool mDone = false;
};

}  // namespace analysis
