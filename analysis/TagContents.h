#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formats/FakeSatSize.h"
#include "formats/SatPayload.h"
#include "formats/ZoomScale.h"
#include "record/TagValues.h"

/// What stands inside a tag whose layout is known.
namespace analysis {

/// One row of a stream list.
struct StreamRow {
    std::int64_t format = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::optional<std::int64_t> direction;    ///< none in lists of durations, which are about outputs
    std::optional<std::int64_t> minDuration;  ///< of a frame, nanoseconds
    std::optional<std::int64_t> stall;        ///< nanoseconds

    friend bool operator==(const StreamRow&, const StreamRow&) = default;
};

/// The rows of a stream list; none for other tags, and for a list that ends in the middle of a row.
std::optional<std::vector<StreamRow>> StreamRowsOf(const record::Tag& tag);

/// Width times height, to compare sizes by: a list may hold any numbers, and no integer their product.
double AreaOf(const StreamRow& row);

/// What a device offers to applications.
struct OfferedStream {
    StreamRow row;       ///< with the durations of an output
    bool again = false;  ///< the same format, size and direction stands further up

    friend bool operator==(const OfferedStream&, const OfferedStream&) = default;
};

/// The configurations of a metadata set with their durations: the n-th of a format and size has the n-th
/// durations of that format and size. Empty where the set has none.
std::vector<OfferedStream> OfferedStreamsOf(const record::TagSet& metadata);

/// "IMPLEMENTATION_DEFINED", or the number of a format without a name.
std::string FormatName(std::int64_t format);
/// The format that a person names: its name or number in any case, or JPEG, YUV, PRIVATE, RAW.
std::optional<std::int64_t> FormatNamed(std::string_view name);
/// The names by which a format is found.
std::vector<std::string> FormatNames();
/// "OUTPUT", "INPUT", or the number.
std::string DirectionName(std::int64_t direction);

/// The SAT device's calibration block and what stands before it.
struct SatPayload {
    formats::SatPayloadHeader header;
    std::span<const std::uint8_t> block;
};
std::optional<SatPayload> SatPayloadOf(const record::Tag& tag);

/// Zoom scales; empty for other tags, and for a blob that holds no whole number of them.
std::vector<formats::ZoomScaleRecord> ZoomScalesOf(const record::Tag& tag);

std::vector<formats::FakeSatSize> FakeSatSizesOf(const record::Tag& tag);

/// What a block is made of, so far as it can be told: one byte all over, or many.
struct BlockContent {
    std::size_t size = 0;
    std::optional<std::uint8_t> filledWith;
};
BlockContent ContentOf(std::span<const std::uint8_t> block);

/// The persist file that a calibration tool is told of, without its filler; empty for other tags.
std::string CalibrationFileNameOf(const record::Tag& tag);

}  // namespace analysis
