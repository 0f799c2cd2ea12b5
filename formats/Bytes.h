#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

#include "formats/Crc16.h"

namespace formats {

/// Bytes of a CRC at a file's end, high byte first.
inline constexpr std::size_t kCrcSize = 2;

inline void AppendBytes(std::vector<std::uint8_t>& to, std::span<const std::uint8_t> bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

/// A fuse id behind its length byte.
/// @param fuseId at most 255 bytes.
inline void AppendFuseId(std::vector<std::uint8_t>& to, std::span<const std::uint8_t> fuseId) {
    to.push_back(static_cast<std::uint8_t>(fuseId.size()));
    AppendBytes(to, fuseId);
}

/// The CRC of all bytes so far.
inline void AppendCrc(std::vector<std::uint8_t>& to) {
    const unsigned crc = Crc16Kermit(to);
    to.push_back(static_cast<std::uint8_t>(crc >> 8));
    to.push_back(static_cast<std::uint8_t>(crc & 0xFF));
}

/// Records that lie back to back as they lie in memory; what is less than a record at the end is left out.
template <typename Record>
std::vector<Record> ReadRecords(std::span<const std::uint8_t> bytes) {
    static_assert(std::is_trivially_copyable_v<Record>);
    std::vector<Record> records(bytes.size() / sizeof(Record));
    if (!records.empty()) {
        std::memcpy(records.data(), bytes.data(), records.size() * sizeof(Record));
    }
    return records;
}

}  // namespace formats
