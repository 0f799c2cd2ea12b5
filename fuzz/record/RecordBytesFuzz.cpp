// Any bytes as a record, and as an event, that another process sent. What is read comes back as the same
// bytes.

#include "fuzz/support/Fuzzing.h"
#include "record/RecordBytes.h"
#include "record/internal/EventFrames.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FuzzBytes bytes(data, size);
    if (const auto boot = record::ReadRecordBytes(TextOf(bytes))) {
        Require(record::RecordBytes(*boot) == TextOf(bytes));
    }
    if (const auto event = record::ReadEvent(bytes)) {
        std::vector<std::uint8_t> again;
        record::AppendEvent(again, *event);
        Require(std::equal(again.begin(), again.end(), bytes.begin(), bytes.end()));
    }
    return 0;
}
