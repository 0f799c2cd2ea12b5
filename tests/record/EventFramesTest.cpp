#include <gmock/gmock.h>

#include "record/RecordBytes.h"
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

/// A record crosses whole, and what is cut is none.
TEST(RecordBytes, AreReadAsTheyWereWritten) {
    const record::BootRecord boot{.phone = "p",
                                  .plugin = record::PluginIdentity{.path = "/lib.so", .buildId = "ab"},
                                  .events = EventSamples(),
                                  .files = {{.path = "/a", .mode = 0600, .bytes = {1, 2}}},
                                  .rewritten = {{.path = "/b", .mode = 0644, .bytes = {3}}},
                                  .foreignFiles = 3,
                                  .troubles = {"one", "two"},
                                  .ended = record::Ended{.how = record::Ended::How::Timeout,
                                                         .what = "w",
                                                         .signal = 9,
                                                         .exitStatus = 4,
                                                         .seconds = 0.5,
                                                         .step = "S"},
                                  .description = "{}",
                                  .ordered = false};
    const std::string bytes = record::RecordBytes(boot);
    const record::BootRecord read = record::ReadRecordBytes(bytes).value();
    EXPECT_EQ(record::RecordBytes(read), bytes);
    EXPECT_EQ(read.plugin, boot.plugin);
    EXPECT_TRUE(read.events == boot.events);
    EXPECT_EQ(read.files, boot.files);
    EXPECT_EQ(read.rewritten, boot.rewritten);
    EXPECT_EQ(read.foreignFiles, boot.foreignFiles);
    EXPECT_EQ(read.ended, boot.ended);
    EXPECT_EQ(read.troubles, boot.troubles);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(record::ReadRecordBytes(bytes.substr(0, size))) << size;
    }
}

}  // namespace
