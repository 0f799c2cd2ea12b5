#include "record/internal/EventFrames.h"

#include "record/RecordBytes.h"
#include "record/internal/Frames.h"

namespace record {

void AppendEvent(std::vector<std::uint8_t>& bytes, const Event& event) {
    FrameWriter(bytes).put(event);
}

std::optional<Event> ReadEvent(std::span<const std::uint8_t> bytes) {
    return ReadFrame<Event>(bytes);
}

bool ReadEvent(std::span<const std::uint8_t> bytes, Event& event) {
    FrameReader reader(bytes);
    return reader.get(event) && reader.atEnd();
}

std::string RecordBytes(const BootRecord& boot) {
    std::vector<std::uint8_t> bytes;
    FrameWriter(bytes).put(boot);
    return {bytes.begin(), bytes.end()};
}

std::optional<BootRecord> ReadRecordBytes(std::string_view bytes) {
    return ReadFrame<BootRecord>({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

}  // namespace record
