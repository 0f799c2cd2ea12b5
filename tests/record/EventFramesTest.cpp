#include <gmock/gmock.h>

#include "record/internal/EventFrames.h"
#include "tests/record/EventSamples.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Written(const record::Event& event) {
    Bytes bytes;
    record::AppendEvent(bytes, event);
    return bytes;
}

TEST(EventFrames, AreReadAsTheyWereWritten) {
    for (const record::Event& event : EventSamples()) {
        EXPECT_TRUE(record::ReadEvent(Written(event)) == event) << event.index();
    }
}

/// Cut anywhere, prolonged or with any byte changed, they are refused, or are another event that has a
/// writing.
TEST(EventFrames, DamagedOnesDoNoHarm) {
    for (const record::Event& event : EventSamples()) {
        const Bytes good = Written(event);
        Bytes longer = good;
        longer.push_back(0);
        EXPECT_EQ(record::ReadEvent(longer), std::nullopt);
        for (std::size_t at = 0; at < good.size(); ++at) {
            EXPECT_EQ(record::ReadEvent(std::span(good).first(at)), std::nullopt) << at;
            for (int byte = 0; byte < 256; ++byte) {
                Bytes bytes = good;
                bytes[at] = static_cast<std::uint8_t>(byte);
                if (const std::optional<record::Event> other = record::ReadEvent(bytes)) {
                    EXPECT_EQ(Written(*other), bytes);
                }
            }
        }
    }
}

}  // namespace
